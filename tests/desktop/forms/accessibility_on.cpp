#include "desktop/forms/accessibility_on.h"

// Only the platform can be told that somebody listens, and Qt shows it to nobody outside.
#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

namespace varnoth::test {

void switch_accessibility_on() {
    QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(true);
}

} // namespace varnoth::test
