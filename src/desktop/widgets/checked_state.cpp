#include "desktop/widgets/checked_state.h"

#include <QVariant>
#include <QWidget>

namespace varnoth {

namespace {

constexpr const char* mark = "checkedState";

} // namespace

void set_checked_state(QWidget& control, bool checked) {
    const bool changes = control.property(mark).toBool() != checked;
    control.setProperty(mark, checked);
    if (changes) {
        QAccessible::State changed;
        changed.checked = true;
        QAccessibleStateChangeEvent event(&control, changed);
        QAccessible::updateAccessibility(&event);
    }
}

void add_checked_state(const QWidget& control, QAccessible::State& state) {
    const QVariant checked = control.property(mark);
    if (checked.isValid()) {
        state.checkable = true;
        state.checked = checked.toBool();
    }
}

} // namespace varnoth
