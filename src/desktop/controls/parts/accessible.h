// What the controls tell a screen reader: their role, name and state, and what can be done with them.
#pragma once

class QWidget;

namespace varnoth {

/// Makes the controls known to screen readers. Further calls change nothing.
void install_accessible_controls();

/// Tells a screen reader that a control was checked or unchecked, has another caption or shows another
/// number.
void tell_checked_changed(QWidget& control);
void tell_name_changed(QWidget& control);
void tell_number_changed(QWidget& control, int number);

} // namespace varnoth
