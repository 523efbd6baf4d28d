#include "desktop/controls/elframe.h"

#include "core/image/PictureSurface.h"
#include "desktop/theme/theme.h"

namespace varnoth {

namespace {

const std::vector<ControlProperty>& persisted() {
    static const std::vector<ControlProperty> properties{
        {"BackColor", sets<&SkinnedControl::SetBackColor>, theme::field_background},
        {"Enabled", sets<&SkinnedControl::SetEnabled>, true},
        {"Color3DLight", sets<&SkinnedControl::SetColor3DLight>, theme::edge_light},
        {"Color3DDark", sets<&SkinnedControl::SetColor3DDark>, theme::window_text},
    };
    return properties;
}

} // namespace

elframe::elframe(const QString& name, QWidget* parent) : ForwardingControl(name, parent, persisted()) {
    add_part("LineA(0)", edges_.top);
    add_part("LineA(1)", edges_.left);
    add_part("LineB(0)", edges_.right);
    add_part("LineB(1)", edges_.bottom);
    set_background_edge(1);
    ReadProperties({});
}

void elframe::resized() {
    edges_.set_width(width_in_pixels());
    edges_.set_height(Height() / varnoth::screen().TwipsPerPixelY);
}

void elframe::show_light() {
    edges_.colour_bottom_right(Color3DLight());
}

void elframe::show_dark() {
    edges_.colour_top_left(Color3DDark());
}

} // namespace varnoth
