// The radio button: a drawn circle and a caption. It does not know its neighbours: that only one of a group
// is chosen is the window's affair.
#pragma once

#include "desktop/controls/parts/CheckableControl.h"

namespace varnoth {

/// Parts: `Picture1`, the circle's surface; `Label1`, the caption; `shadow1`. Always 285 twips high and at
/// least 500 wide. A click comes from everywhere on it, also when it is chosen already.
class elradio final : public CheckableControl {
    Q_OBJECT

  public:
    elradio(const QString& name, QWidget* parent);

    bool Value() const override { return value_; }

  private:
    /// The circle in whole pixels of the screen, on a copy of the control's background. What is drawn on the
    /// control later shows around the circle only after the next redrawing.
    class Circle final : public BoxPart {
      public:
        explicit Circle(const elradio& control) : control_(control) {}

        void paint(QPainter& painter) const override;

      private:
        const elradio& control_;
    };

    void keep_value(bool value) override { value_ = value; }

    /// The redrawing: also copies the background.
    void update_look() override;

    void show_back_colour() override { update_look(); }

    void part_clicked(Part* part) override;

    Circle picture1_{*this};
    bool value_ = false;
};

} // namespace varnoth
