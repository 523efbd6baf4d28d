// The radio button: a drawn circle and a caption. It does not know the other buttons of its group: the window
// keeps the choice exclusive.
#pragma once

#include "desktop/controls/parts/CheckableControl.h"

namespace varnoth {

/// Parts: `Picture1`, the circle's surface; `Label1`, the caption; `shadow1`. Always 285 twips high and at
/// least 500 wide. Every part of it can be clicked, also when it is already checked.
class elradio final : public CheckableControl {
    Q_OBJECT

  public:
    elradio(const QString& name, QWidget* parent);

    bool Value() const override { return value_; }

  private:
    /// The circle in whole screen pixels, on a copy of the control's background. Later drawing on the control
    /// shows around the circle only after the next redraw.
    class Circle final : public BoxPart {
      public:
        explicit Circle(const elradio& control) : control_(control) {}

        void paint(QPainter& painter) const override;

      private:
        const elradio& control_;
    };

    void store_value(bool value) override { value_ = value; }

    /// Redraws the circle on a new copy of the background.
    void update_appearance() override;

    void show_back_colour() override { update_appearance(); }

    void part_clicked(Part* part) override;

    Circle picture1_{*this};
    bool value_ = false;
};

} // namespace varnoth
