// A control that stays in force until another one, or a second click, ends it: Stop or Play, an armed picker.
// The eye knows it by the colour of its text, a screen reader by its state.
#pragma once

#include <QAccessible>

class QWidget;

namespace varnoth {

/// Marks a control as one of that kind, and whether it is in force now. Tells a screen reader of a change.
void set_checked_state(QWidget& control, bool checked);

/// Adds to a control's state what was marked: it can be checked, and is or is not. A control that was never
/// marked keeps its state.
void add_checked_state(const QWidget& control, QAccessible::State& state);

} // namespace varnoth
