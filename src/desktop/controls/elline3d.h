// The 3-D line: a groove of two pixels, dark above light.
#pragma once

#include "desktop/controls/parts/ForwardingControl.h"

namespace varnoth {

/// Parts: `Line1` above `Line2`. Always 30 twips high and at least 30 wide. It exposes no drawing
/// context and takes no background.
class elline3d final : public ForwardingControl {
    Q_OBJECT
    Q_PROPERTY(int Color3DLight READ Color3DLight)
    Q_PROPERTY(int Color3DDark READ Color3DDark)

  public:
    elline3d(const QString& name, QWidget* parent);

  private:
    using SkinnedControl::get_the_hdc;
    using SkinnedControl::obtener_imagen_fondo;

    void resized() override;
    void show_light() override;
    void show_dark() override;

    LinePart line1_;
    LinePart line2_;
};

} // namespace varnoth
