#include "desktop/controls/parts/CheckableControl.h"

#include "desktop/theme/theme.h"
#include "desktop/widgets/accessible.h"

namespace varnoth {

namespace {

constexpr double least_width_in_twips = 500;

const std::vector<ControlProperty>& persisted() {
    static const std::vector<ControlProperty> properties{
        {"BackColor", sets<&SkinnedControl::SetBackColor>, theme::window_background},
        {"BackColor2", sets<&CheckableControl::SetBackColor2>, theme::field_background},
        {"CheckedColor", sets<&CheckableControl::SetCheckedColor>, theme::highlight},
        {"UncheckedColor", sets<&CheckableControl::SetUncheckedColor>, theme::light_text},
        {"OverColor", sets<&CheckableControl::SetOverColor>, theme::over},
        {"Enabled", sets<&SkinnedControl::SetEnabled>, true},
        {"Caption", sets<&CheckableControl::SetCaption>, QStringLiteral("Caption")},
        {"Value", sets<&CheckableControl::SetValue>, false},
        {"Color3DLight", sets<&SkinnedControl::SetColor3DLight>, theme::edge_light},
        {"Color3DDark", sets<&SkinnedControl::SetColor3DDark>, theme::window_text},
        {"Font", sets<&SkinnedControl::SetFont>},
        {"FontName", sets<&SkinnedControl::SetFontName>},
        {"FontSize", sets<&SkinnedControl::SetFontSize>},
        {"FontItalic", sets<&SkinnedControl::SetFontItalic>},
        {"FontUnderline", sets<&SkinnedControl::SetFontUnderline>},
        {"DropShadow", sets<&SkinnedControl::SetDropShadow>, false},
    };
    return properties;
}

} // namespace

CheckableControl::CheckableControl(const QString& name, QWidget* parent, double caption_left,
                                   double caption_top)
    : SkinnedControl(name, parent, persisted()), caption_(caption_left, caption_top) {
    caption_.set_auto_size();
    set_minimum_width(least_width_in_twips);
}

void CheckableControl::SetBackColor2(Colour colour) {
    back_colour2_ = colour;
    show_back_colour2();
    changed("BackColor2");
}

void CheckableControl::SetCheckedColor(Colour colour) {
    checked_colour_ = colour;
    update_appearance();
    changed("CheckedColor");
}

void CheckableControl::SetUncheckedColor(Colour colour) {
    unchecked_colour_ = colour;
    update_appearance();
    changed("UncheckedColor");
}

void CheckableControl::SetOverColor(Colour colour) {
    over_colour_ = colour;
    changed("OverColor");
}

void CheckableControl::SetCaption(const QString& caption) {
    caption_.SetCaption(caption);
    caption_changed();
}

void CheckableControl::SetValue(bool value) {
    store_value(value);
    update_appearance();
    if (!reading()) {
        notify_checked_changed(*this);
    }
    changed("Value");
}

void CheckableControl::set_over_state() {
    if (!Value() && caption_.text.ForeColor != over_colour_) {
        caption_.text.ForeColor = over_colour_;
        update();
    }
}

void CheckableControl::update_appearance() {
    caption_.text.ForeColor = Value() ? checked_colour_ : unchecked_colour_;
    update();
}

void CheckableControl::part_pressed(Part* /*part*/, const MouseArguments& mouse) {
    emit MouseDown(mouse.Button, mouse.Shift, mouse.x, mouse.y);
}

void CheckableControl::part_moved(Part* /*part*/, const MouseArguments& mouse) {
    emit MouseMove(mouse.Button, mouse.Shift, mouse.x, mouse.y);
}

void CheckableControl::part_released(Part* /*part*/, const MouseArguments& mouse) {
    emit MouseUp(mouse.Button, mouse.Shift, mouse.x, mouse.y);
}

} // namespace varnoth
