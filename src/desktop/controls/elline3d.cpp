#include "desktop/controls/elline3d.h"

#include "desktop/theme/theme.h"

namespace varnoth {

namespace {

constexpr double height_in_twips = 30;
constexpr double least_width_in_twips = 30;

const std::vector<ControlProperty>& persisted() {
    static const std::vector<ControlProperty> properties{
        {"Color3DLight", sets<&SkinnedControl::SetColor3DLight>, theme::edge_light},
        {"Color3DDark", sets<&SkinnedControl::SetColor3DDark>, theme::edge_dark},
    };
    return properties;
}

} // namespace

elline3d::elline3d(const QString& name, QWidget* parent) : ForwardingControl(name, parent, persisted()) {
    line2_.set_ends(0, 1, 0, 1);
    add_part("Line1", line1_);
    add_part("Line2", line2_);
    fix_height(height_in_twips);
    set_minimum_width(least_width_in_twips);
    ReadProperties({});
}

// The lines are as many pixels long as the control is wide in twips, and are clipped at its edge.
void elline3d::resized() {
    line1_.X2 = Width();
    line2_.X2 = Width();
}

void elline3d::show_light() {
    line2_.BorderColor = Color3DLight();
}

void elline3d::show_dark() {
    line1_.BorderColor = Color3DDark();
}

} // namespace varnoth
