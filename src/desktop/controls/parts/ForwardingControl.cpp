#include "desktop/controls/parts/ForwardingControl.h"

namespace varnoth {

void ForwardingControl::part_pressed(Part* part, const MouseArguments& mouse) {
    if (forwards(part)) {
        emit MouseDown(mouse.Button, mouse.Shift, mouse.x, mouse.y);
    }
}

void ForwardingControl::part_moved(Part* part, const MouseArguments& mouse) {
    if (forwards(part)) {
        emit MouseMove(mouse.Button, mouse.Shift, mouse.x, mouse.y);
    }
}

void ForwardingControl::part_released(Part* part, const MouseArguments& mouse) {
    if (forwards(part)) {
        emit MouseUp(mouse.Button, mouse.Shift, mouse.x, mouse.y);
    }
}

void ForwardingControl::part_clicked(Part* part) {
    if (forwards(part)) {
        emit Click();
    }
}

bool ForwardingControl::part_double_clicked(Part* part) {
    if (forwards(part)) {
        emit DblClick();
    }
    return forwards(part);
}

} // namespace varnoth
