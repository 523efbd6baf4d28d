#include "controls/elcheck.h"

#include <cmath>

#include "controls/parts/accessible.h"
#include "platform/qt/look.h"

namespace varnoth {

namespace {

constexpr double height_in_twips = 270;
constexpr double least_width_in_twips = 500;
constexpr double box_size = 12;
constexpr Colour box_light = 0x809188;

const std::vector<PersistedProperty>& persisted() {
    static const std::vector<PersistedProperty> properties{
        {"BackColor", look::window_background},
        {"BackColor2", look::field_background},
        {"CheckedColor", look::highlight},
        {"UncheckedColor", look::light_text},
        {"OverColor", look::over},
        {"Enabled", true},
        {"Caption", QStringLiteral("Caption")},
        {"Value", false},
        {"Color3DLight", look::edge_light},
        {"Color3DDark", look::window_text},
        {"Font"},
        {"FontName"},
        {"FontSize"},
        {"FontItalic"},
        {"FontUnderline"},
        {"DropShadow", false},
    };
    return properties;
}

} // namespace

elcheck::elcheck(const QString& name, QWidget* parent)
    : SkinnedControl(name, parent, persisted()), box_edges_(box_size) {
    picture2_.Top = 3;
    picture2_.Width = box_size;
    picture2_.Height = box_size;
    picture2_.contents = {&label1_, &box_edges_.top, &box_edges_.left, &box_edges_.right, &box_edges_.bottom};
    label1_.Width = box_size;
    label1_.Height = box_size;
    label1_.set_symbol();
    label1_.SetCaption("b");
    box_edges_.set_width(box_size);
    // The other two edges of the box stay as designed, whatever Color3DLight is.
    box_edges_.colour_bottom_right(box_light);
    label2_.Left = 19;
    label2_.set_auto_size();
    shadow1_.Left = 20;
    shadow1_.Top = 1;
    shadow1_.set_shadow_of(label2_);
    shadow1_.set_auto_size();
    add_part("Picture2", picture2_);
    name_part("Label1", label1_);
    name_part("Line1", box_edges_.left);
    name_part("Line2", box_edges_.top);
    name_part("Line3", box_edges_.bottom);
    name_part("Line4", box_edges_.right);
    add_part("shadow1", shadow1_);
    add_part("Label2", label2_);
    fix_height(height_in_twips);
    set_minimum_width(least_width_in_twips);
    ReadProperties({});
}

void elcheck::SetBackColor2(Colour colour) {
    picture2_.BackColor = colour;
    changed("BackColor2");
}

void elcheck::SetCheckedColor(Colour colour) {
    checked_colour_ = colour;
    update_look();
    changed("CheckedColor");
}

void elcheck::SetUncheckedColor(Colour colour) {
    unchecked_colour_ = colour;
    update_look();
    changed("UncheckedColor");
}

void elcheck::SetOverColor(Colour colour) {
    over_colour_ = colour;
    changed("OverColor");
}

void elcheck::SetCaption(const QString& caption) {
    label2_.SetCaption(caption);
    shadow1_.SetCaption(caption);
    layout_step();
    if (!reading()) {
        tell_name_changed(*this);
    }
    changed("Caption");
}

void elcheck::SetValue(bool value) {
    label1_.Visible = value;
    update_look();
    if (!reading()) {
        tell_checked_changed(*this);
    }
    changed("Value");
}

void elcheck::set_over_state() {
    if (!label1_.Visible && label2_.ForeColor != over_colour_) {
        label2_.ForeColor = over_colour_;
        update();
    }
}

void elcheck::set_normal_state() {
    update_look();
}

void elcheck::update_look() {
    if (label1_.Visible) {
        label1_.ForeColor = checked_colour_;
        label2_.ForeColor = checked_colour_;
    } else {
        label2_.ForeColor = unchecked_colour_;
    }
    update();
}

void elcheck::resized() {
    layout_step();
}

void elcheck::layout_step() {
    if (label2_.Height < ScaleHeight()) {
        label2_.Top = std::trunc(ScaleHeight() / 2 - text_height(Font()) / 2);
        shadow1_.Top = label2_.Top + 1;
    }
}

void elcheck::show_dark() {
    box_edges_.colour_top_left(Color3DDark());
}

void elcheck::show_font() {
    label2_.SetFont(Font());
    shadow1_.SetFont(Font());
}

void elcheck::show_shadow() {
    shadow1_.Visible = DropShadow();
    shadow1_.Enabled = DropShadow();
}

void elcheck::part_pressed(Part* /*part*/, const MouseArguments& mouse) {
    emit MouseDown(mouse.Button, mouse.Shift, mouse.x, mouse.y);
}

void elcheck::part_moved(Part* /*part*/, const MouseArguments& mouse) {
    emit MouseMove(mouse.Button, mouse.Shift, mouse.x, mouse.y);
}

void elcheck::part_released(Part* /*part*/, const MouseArguments& mouse) {
    emit MouseUp(mouse.Button, mouse.Shift, mouse.x, mouse.y);
}

void elcheck::part_clicked(Part* part) {
    if (part == nullptr) {
        return; // the surface beside the caption takes no click
    }
    label1_.Visible = !label1_.Visible;
    update_look();
    tell_checked_changed(*this);
    emit Click();
}

} // namespace varnoth
