// Accessibility of the controls: their role, name, state and actions for screen readers.
#pragma once

class QWidget;

namespace varnoth {

/// Makes the controls accessible to screen readers. Further calls have no effect.
void install_accessible_controls();

/// Notify screen readers that a control was checked or unchecked, or has a new caption or number.
void tell_checked_changed(QWidget& control);
void tell_name_changed(QWidget& control);
void tell_number_changed(QWidget& control, int number);

} // namespace varnoth
