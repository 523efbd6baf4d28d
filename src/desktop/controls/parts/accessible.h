// Accessibility of the skinned controls: their role, name, state and actions for screen readers.
#pragma once

namespace varnoth {

/// Makes the controls accessible to screen readers. Further calls have no effect.
void install_accessible_controls();

} // namespace varnoth
