#include "desktop/widgets/checked_state.h"

#include <QVariant>
#include <QWidget>

#include "desktop/widgets/accessible.h"

namespace varnoth {

namespace {

constexpr const char* property_name = "checkedState";

} // namespace

void set_checked_state(QWidget& control, bool checked) {
    const bool changes = control.property(property_name).toBool() != checked;
    control.setProperty(property_name, checked);
    if (changes) {
        notify_checked_changed(control);
    }
}

void add_checked_state(const QWidget& control, QAccessible::State& state) {
    const QVariant checked = control.property(property_name);
    if (checked.isValid()) {
        state.checkable = true;
        state.checked = checked.toBool();
    }
}

} // namespace varnoth
