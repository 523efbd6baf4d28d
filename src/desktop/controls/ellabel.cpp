#include "desktop/controls/ellabel.h"

#include "desktop/theme/theme.h"

namespace varnoth {

namespace {

constexpr double height_in_twips = 300;

const std::vector<ControlProperty>& persisted() {
    static const std::vector<ControlProperty> properties{
        {"BackColor", sets<&SkinnedControl::SetBackColor>, theme::field_background},
        {"ForeColor", sets<&SkinnedControl::SetForeColor>, theme::light_text},
        {"Enabled", sets<&SkinnedControl::SetEnabled>, true},
        {"Caption", sets<&ellabel::SetCaption>, QStringLiteral("Caption")},
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

ellabel::ellabel(const QString& name, QWidget* parent) : ForwardingControl(name, parent, persisted()) {
    caption_.set_auto_size();
    add_part("shadow1", caption_.shadow);
    add_part("Label2", caption_.text);
    fix_height(height_in_twips);
    ReadProperties({});
}

void ellabel::SetCaption(const QString& caption) {
    caption_.SetCaption(caption);
    caption_changed();
}

void ellabel::resized() {
    layout_step();
}

void ellabel::layout_step() {
    caption_.centre_in(ScaleHeight());
}

void ellabel::show_fore_colour() {
    caption_.text.ForeColor = ForeColor();
}

void ellabel::show_font() {
    caption_.SetFont(Font());
}

void ellabel::show_shadow() {
    caption_.set_shadow(DropShadow());
}

} // namespace varnoth
