#include "controls/ellabel.h"

#include <cmath>

#include "controls/parts/accessible.h"
#include "platform/qt/look.h"

namespace varnoth {

namespace {

constexpr double height_in_twips = 300;

const std::vector<PersistedProperty>& persisted() {
    static const std::vector<PersistedProperty> properties{
        {"BackColor", look::field_background},
        {"ForeColor", look::light_text},
        {"Enabled", true},
        {"Caption", QStringLiteral("Caption")},
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

ellabel::ellabel(const QString& name, QWidget* parent) : ForwardingControl(name, parent, persisted()) {
    label2_.set_auto_size();
    shadow1_.Left = 1;
    shadow1_.Top = 1;
    shadow1_.set_shadow_of(label2_);
    shadow1_.set_auto_size();
    add_part("shadow1", shadow1_);
    add_part("Label2", label2_);
    fix_height(height_in_twips);
    ReadProperties({});
}

void ellabel::SetCaption(const QString& caption) {
    label2_.SetCaption(caption);
    shadow1_.SetCaption(caption);
    layout_step();
    if (!reading()) {
        tell_name_changed(*this);
    }
    changed("Caption");
}

void ellabel::resized() {
    layout_step();
}

void ellabel::layout_step() {
    if (label2_.Height < ScaleHeight()) {
        label2_.Top = std::trunc(ScaleHeight() / 2 - text_height(Font()) / 2);
        shadow1_.Top = label2_.Top + 1;
    }
}

void ellabel::show_fore_colour() {
    label2_.ForeColor = ForeColor();
}

void ellabel::show_font() {
    label2_.SetFont(Font());
    shadow1_.SetFont(Font());
}

void ellabel::show_shadow() {
    shadow1_.Visible = DropShadow();
    shadow1_.Enabled = DropShadow();
}

} // namespace varnoth
