// Makes Qt tell what changes as if assistive technology listened, which it does nowhere near a test.
#pragma once

namespace varnoth::test {

/// From here on Qt and the program tell of changes. Further calls change nothing.
void switch_accessibility_on();

} // namespace varnoth::test
