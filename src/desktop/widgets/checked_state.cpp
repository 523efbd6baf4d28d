#include "desktop/widgets/checked_state.h"

#include <QVariant>
#include <QWidget>

namespace varnoth {

namespace {

constexpr const char* mark = "inForce";

} // namespace

void set_in_force(QWidget& control, bool in_force) {
    const bool changes = control.property(mark).toBool() != in_force;
    control.setProperty(mark, in_force);
    if (changes) {
        QAccessible::State changed;
        changed.checked = true;
        QAccessibleStateChangeEvent event(&control, changed);
        QAccessible::updateAccessibility(&event);
    }
}

void add_in_force(const QWidget& control, QAccessible::State& state) {
    const QVariant in_force = control.property(mark);
    if (in_force.isValid()) {
        state.checkable = true;
        state.checked = in_force.toBool();
    }
}

} // namespace varnoth
