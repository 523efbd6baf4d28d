// The check box: a box with a check mark, and a caption. The visibility of the check mark is the value.
#pragma once

#include "desktop/controls/parts/CheckableControl.h"
#include "desktop/controls/parts/EdgeLines.h"

namespace varnoth {

/// Parts: `Picture2`, the box, with its edges `Line1` left, `Line2` top, `Line3` bottom and `Line4` right and
/// the check mark `Label1`; `Label2`, the caption; `shadow1`. Always 270 twips high and at least 500 wide.
/// Clicks on the surface beside the caption are ignored.
class elcheck final : public CheckableControl {
    Q_OBJECT

  public:
    elcheck(const QString& name, QWidget* parent);

    bool Value() const override { return label1_.Visible; }

    void perform_click() override { part_clicked(&picture2_); }

  private:
    void store_value(bool value) override { label1_.Visible = value; }

    void update_appearance() override;
    void show_back_colour2() override;
    void show_dark() override;
    void part_clicked(Part* part) override;

    BoxPart picture2_;
    EdgeLines box_edges_;
    TextPart label1_;
};

} // namespace varnoth
