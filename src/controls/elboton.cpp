#include "controls/elboton.h"

#include <cmath>

#include "controls/parts/accessible.h"
#include "platform/qt/look.h"

namespace varnoth {

namespace {

constexpr double height_in_twips = 360;
constexpr double least_width_in_twips = 500;

const std::vector<PersistedProperty>& persisted() {
    static const std::vector<PersistedProperty> properties{
        {"ForeColor", look::white},
        {"BackColor", look::window_background},
        {"Enabled", true},
        {"Caption", QStringLiteral("Boton")},
        {"Color3DLight", look::edge_light},
        {"Color3DDark", look::window_text},
        {"Font"},
        {"FontName"},
        {"FontSize"},
        {"FontItalic"},
        {"FontUnderline"},
        {"DropShadow", false},
        {"CenterCaption", false},
    };
    return properties;
}

} // namespace

elboton::elboton(const QString& name, QWidget* parent) : SkinnedControl(name, parent, persisted()) {
    label_.Left = 6;
    label_.Top = 3;
    label_.set_auto_size();
    shadow1_.Left = 7;
    shadow1_.Top = 4;
    shadow1_.set_shadow_of(label_);
    shadow1_.set_auto_size();
    add_part("shadow1", shadow1_);
    add_part("label", label_);
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
    label_.SetCaption(caption);
    shadow1_.SetCaption(caption);
    layout_step();
    if (!reading()) {
        tell_name_changed(*this);
    }
    changed("Caption");
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
    label_.Left = center_caption_ ? width_in_pixels() / 2 - label_.Width / 2 : 6;
    shadow1_.Left = label_.Left + 1;
    if (label_.Height < ScaleHeight()) {
        label_.Top = std::trunc(ScaleHeight() / 2 - text_height(Font()) / 2);
        shadow1_.Top = label_.Top + 1;
    }
}

void elboton::show_fore_colour() {
    label_.ForeColor = ForeColor();
}

void elboton::show_light() {
    edges_.colour_top_left(Color3DLight());
}

void elboton::show_dark() {
    edges_.colour_bottom_right(Color3DDark());
}

void elboton::show_font() {
    label_.SetFont(Font());
    shadow1_.SetFont(Font());
}

void elboton::show_shadow() {
    shadow1_.Visible = DropShadow();
    shadow1_.Enabled = DropShadow();
}

void elboton::part_pressed(Part* /*part*/, const MouseArguments& mouse) {
    if (mouse.Button == left_button) {
        edges_.colour_top_left(Color3DDark());
        edges_.colour_bottom_right(Color3DLight());
        update();
    }
    emit MouseDown(mouse.Button, mouse.Shift, mouse.x, mouse.y);
}

void elboton::part_moved(Part* part, const MouseArguments& mouse) {
    if (part == &label_) {
        emit MouseMove(mouse.Button, mouse.Shift, mouse.x, mouse.y);
    }
}

void elboton::part_released(Part* /*part*/, const MouseArguments& mouse) {
    if (mouse.Button == left_button) {
        edges_.colour_bottom_right(Color3DDark());
        edges_.colour_top_left(Color3DLight());
        update();
    }
    emit MouseUp(mouse.Button, mouse.Shift, mouse.x, mouse.y);
}

void elboton::part_clicked(Part* /*part*/) {
    emit Click();
}

} // namespace varnoth
