// Makes Qt send accessibility events as if assistive technology were running.
#pragma once

namespace varnoth::test {

/// Enables accessibility events. Further calls have no effect.
void switch_accessibility_on();

} // namespace varnoth::test
