#include "desktop/controls/elcheck.h"

#include "desktop/widgets/accessible.h"

namespace varnoth {

namespace {

constexpr double height_in_twips = 270;
constexpr double box_size = 12;
constexpr Colour box_light = 0x809188;

} // namespace

elcheck::elcheck(const QString& name, QWidget* parent)
    : CheckableControl(name, parent, 19, 0), box_edges_(box_size) {
    picture2_.Top = 3;
    picture2_.Width = box_size;
    picture2_.Height = box_size;
    picture2_.contents = {&label1_, &box_edges_.top, &box_edges_.left, &box_edges_.right, &box_edges_.bottom};
    label1_.Width = box_size;
    label1_.Height = box_size;
    label1_.set_symbol();
    label1_.SetCaption("b");
    box_edges_.set_width(box_size);
    // Color3DLight does not affect the other two edges of the box.
    box_edges_.colour_bottom_right(box_light);
    add_part("Picture2", picture2_);
    name_part("Label1", label1_);
    name_part("Line1", box_edges_.left);
    name_part("Line2", box_edges_.top);
    name_part("Line3", box_edges_.bottom);
    name_part("Line4", box_edges_.right);
    add_part("shadow1", caption().shadow);
    add_part("Label2", caption().text);
    fix_height(height_in_twips);
    ReadProperties({});
}

void elcheck::update_appearance() {
    if (Value()) {
        label1_.ForeColor = CheckedColor();
    }
    CheckableControl::update_appearance();
}

void elcheck::show_back_colour2() {
    picture2_.BackColor = BackColor2();
}

void elcheck::show_dark() {
    box_edges_.colour_top_left(Color3DDark());
}

void elcheck::part_clicked(Part* part) {
    if (part == nullptr) {
        return; // clicks on the surface beside the caption are ignored
    }
    store_value(!Value());
    update_appearance();
    notify_checked_changed(*this);
    emit Click();
}

} // namespace varnoth
