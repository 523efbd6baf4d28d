// The frame: a sunken rectangle that contains other controls.
#pragma once

#include "desktop/controls/parts/EdgeLines.h"
#include "desktop/controls/parts/ForwardingControl.h"

namespace varnoth {

/// Parts: `LineA(0)` top, `LineA(1)` left, `LineB(0)` right, `LineB(1)` bottom.
class elframe final : public ForwardingControl {
    Q_OBJECT
    Q_PROPERTY(int BackColor READ BackColor)
    Q_PROPERTY(bool Enabled READ Enabled)
    Q_PROPERTY(int Color3DLight READ Color3DLight)
    Q_PROPERTY(int Color3DDark READ Color3DDark)

  public:
    elframe(const QString& name, QWidget* parent);

  private:
    void resized() override;
    void show_light() override;
    void show_dark() override;

    EdgeLines edges_{0};
};

} // namespace varnoth
