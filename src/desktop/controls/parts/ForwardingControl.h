// A control that forwards the five mouse events of one of its parts, or of its surface, as signals and does
// not handle them itself.
#pragma once

#include "desktop/controls/parts/SkinnedControl.h"

namespace varnoth {

class ForwardingControl : public SkinnedControl {
    Q_OBJECT

  signals:
    void Click();

    /// Replaces the second Click of a double click.
    void DblClick();
    void MouseDown(std::int16_t Button, std::int16_t Shift, float x, float y);
    void MouseMove(std::int16_t Button, std::int16_t Shift, float x, float y);
    void MouseUp(std::int16_t Button, std::int16_t Shift, float x, float y);

  protected:
    using SkinnedControl::SkinnedControl;

    /// Whether events of this part are forwarded; null is the surface.
    virtual bool forwards(const Part* part) const { return part == nullptr; }

  private:
    void part_pressed(Part* part, const MouseArguments& mouse) override;
    void part_moved(Part* part, const MouseArguments& mouse) override;
    void part_released(Part* part, const MouseArguments& mouse) override;
    void part_clicked(Part* part) override;
    bool part_double_clicked(Part* part) override;
};

} // namespace varnoth
