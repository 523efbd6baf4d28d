#include "desktop/services/no_settings.h"

#include <QSettings>

namespace varnoth {

void keep_no_settings() {
    // No file can exist below a device file.
    const QString nowhere = QStringLiteral("/dev/null");
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, nowhere);
    QSettings::setPath(QSettings::NativeFormat, QSettings::SystemScope, nowhere);
}

UnchangedRegistry::UnchangedRegistry() = default;

UnchangedRegistry::~UnchangedRegistry() = default;

} // namespace varnoth
