#include "desktop/controls/elboton.h"

#include "desktop/theme/theme.h"

namespace varnoth {

namespace {

constexpr double height_in_twips = 360;
constexpr double least_width_in_twips = 500;
constexpr double caption_left = 6; ///< unless the caption is centred

const std::vector<ControlProperty>& persisted() {
    static const std::vector<ControlProperty> properties{
        {"ForeColor", sets<&SkinnedControl::SetForeColor>, theme::white},
        {"BackColor", sets<&SkinnedControl::SetBackColor>, theme::window_background},
        {"Enabled", sets<&SkinnedControl::SetEnabled>, true},
        {"Caption", sets<&elboton::SetCaption>, QStringLiteral("Boton")},
        {"Color3DLight", sets<&SkinnedControl::SetColor3DLight>, theme::edge_light},
        {"Color3DDark", sets<&SkinnedControl::SetColor3DDark>, theme::window_text},
        {"Font", sets<&SkinnedControl::SetFont>},
        {"FontName", sets<&SkinnedControl::SetFontName>},
        {"FontSize", sets<&SkinnedControl::SetFontSize>},
        {"FontItalic", sets<&SkinnedControl::SetFontItalic>},
        {"FontUnderline", sets<&SkinnedControl::SetFontUnderline>},
        {"DropShadow", sets<&SkinnedControl::SetDropShadow>, false},
        {.name = "CenterCaption",
         .set = sets<&elboton::SetCenterCaption>,
         .fallback = false,
         .loaded_first = true},
    };
    return properties;
}

} // namespace

elboton::elboton(const QString& name, QWidget* parent)
    : SkinnedControl(name, parent, persisted()), caption_(caption_left, 3) {
    caption_.set_auto_size();
    add_part("shadow1", caption_.shadow);
    add_part("label", caption_.text);
    add_part("lineA(0)", edges_.top);
    add_part("lineA(1)", edges_.left);
    add_part("lineB(0)", edges_.right);
    add_part("lineB(1)", edges_.bottom);
    set_background_edge(1);
    fix_height(height_in_twips);
    set_minimum_width(least_width_in_twips);
    ReadProperties({});
}

void elboton::SetCaption(const QString& caption) {
    caption_.SetCaption(caption);
    caption_changed();
}

void elboton::SetCenterCaption(bool center) {
    center_caption_ = center;
    layout_step();
    changed("CenterCaption");
}

void elboton::resized() {
    edges_.set_width(width_in_pixels());
    layout_step();
}

void elboton::layout_step() {
    caption_.set_left(center_caption_ ? width_in_pixels() / 2 - caption_.text.Width / 2 : caption_left);
    caption_.centre_in(ScaleHeight());
}

void elboton::show_fore_colour() {
    caption_.text.ForeColor = ForeColor();
}

void elboton::show_light() {
    edges_.colour_top_left(Color3DLight());
}

void elboton::show_dark() {
    edges_.colour_bottom_right(Color3DDark());
}

void elboton::show_font() {
    caption_.SetFont(Font());
}

void elboton::show_shadow() {
    caption_.set_shadow(DropShadow());
}

void elboton::sink() {
    edges_.colour_top_left(Color3DDark());
    edges_.colour_bottom_right(Color3DLight());
    update();
}

void elboton::raise_again() {
    edges_.colour_bottom_right(Color3DDark());
    edges_.colour_top_left(Color3DLight());
    update();
}

void elboton::part_pressed(Part* /*part*/, const MouseArguments& mouse) {
    if (mouse.Button == left_button) {
        sink();
    }
    emit MouseDown(mouse.Button, mouse.Shift, mouse.x, mouse.y);
}

void elboton::part_moved(Part* part, const MouseArguments& mouse) {
    if (part == &caption_.text) {
        emit MouseMove(mouse.Button, mouse.Shift, mouse.x, mouse.y);
    }
}

void elboton::part_released(Part* /*part*/, const MouseArguments& mouse) {
    if (mouse.Button == left_button) {
        raise_again();
    }
    emit MouseUp(mouse.Button, mouse.Shift, mouse.x, mouse.y);
}

void elboton::part_abandoned(Part* /*part*/) {
    raise_again();
}

void elboton::part_clicked(Part* /*part*/) {
    emit Click();
}

} // namespace varnoth
