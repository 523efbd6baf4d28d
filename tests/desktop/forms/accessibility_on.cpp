#include "desktop/forms/accessibility_on.h"

// Accessibility is enabled through the platform integration, which only Qt's private headers expose.
#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

namespace varnoth::test {

void switch_accessibility_on() {
    QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(true);
}

} // namespace varnoth::test
