#include "desktop/controls/parts/MarkControl.h"

#include "desktop/controls/parts/accessible.h"
#include "desktop/theme/theme.h"

namespace varnoth {

namespace {

constexpr double least_width_in_twips = 500;

const std::vector<ControlProperty>& persisted() {
    static const std::vector<ControlProperty> properties{
        {"BackColor", sets<&SkinnedControl::SetBackColor>, look::window_background},
        {"BackColor2", sets<&MarkControl::SetBackColor2>, look::field_background},
        {"CheckedColor", sets<&MarkControl::SetCheckedColor>, look::highlight},
        {"UncheckedColor", sets<&MarkControl::SetUncheckedColor>, look::light_text},
        {"OverColor", sets<&MarkControl::SetOverColor>, look::over},
        {"Enabled", sets<&SkinnedControl::SetEnabled>, true},
        {"Caption", sets<&MarkControl::SetCaption>, QStringLiteral("Caption")},
        {"Value", sets<&MarkControl::SetValue>, false},
        {"Color3DLight", sets<&SkinnedControl::SetColor3DLight>, look::edge_light},
        {"Color3DDark", sets<&SkinnedControl::SetColor3DDark>, look::window_text},
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

MarkControl::MarkControl(const QString& name, QWidget* parent, double caption_left, double caption_top)
    : SkinnedControl(name, parent, persisted()), caption_(caption_left, caption_top) {
    caption_.set_auto_size();
    set_minimum_width(least_width_in_twips);
}

void MarkControl::SetBackColor2(Colour colour) {
    back_colour2_ = colour;
    show_back_colour2();
    changed("BackColor2");
}

void MarkControl::SetCheckedColor(Colour colour) {
    checked_colour_ = colour;
    update_look();
    changed("CheckedColor");
}

void MarkControl::SetUncheckedColor(Colour colour) {
    unchecked_colour_ = colour;
    update_look();
    changed("UncheckedColor");
}

void MarkControl::SetOverColor(Colour colour) {
    over_colour_ = colour;
    changed("OverColor");
}

void MarkControl::SetCaption(const QString& caption) {
    caption_.SetCaption(caption);
    caption_changed();
}

void MarkControl::SetValue(bool value) {
    keep_value(value);
    update_look();
    if (!reading()) {
        tell_checked_changed(*this);
    }
    changed("Value");
}

void MarkControl::set_over_state() {
    if (!Value() && caption_.text.ForeColor != over_colour_) {
        caption_.text.ForeColor = over_colour_;
        update();
    }
}

void MarkControl::update_look() {
    caption_.text.ForeColor = Value() ? checked_colour_ : unchecked_colour_;
    update();
}

void MarkControl::part_pressed(Part* /*part*/, const MouseArguments& mouse) {
    emit MouseDown(mouse.Button, mouse.Shift, mouse.x, mouse.y);
}

void MarkControl::part_moved(Part* /*part*/, const MouseArguments& mouse) {
    emit MouseMove(mouse.Button, mouse.Shift, mouse.x, mouse.y);
}

void MarkControl::part_released(Part* /*part*/, const MouseArguments& mouse) {
    emit MouseUp(mouse.Button, mouse.Shift, mouse.x, mouse.y);
}

} // namespace varnoth
