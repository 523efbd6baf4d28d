// The checked state of a control, such as Stop, Play or a colour picker: it stays checked until another
// control or a second click unchecks it. The colour of its text shows the state; this file reports it to
// assistive technology.
#pragma once

#include <QAccessible>

class QWidget;

namespace varnoth {

/// Makes a control checkable and sets its checked state. Notifies assistive technology of a change.
void set_checked_state(QWidget& control, bool checked);

/// Adds checkable and checked to an accessible state. Does nothing for a control that was never passed to
/// set_checked_state.
void add_checked_state(const QWidget& control, QAccessible::State& state);

} // namespace varnoth
