#include "walkthrough/Camera.h"

#include <QDir>
#include <QPixmap>

#include "base/RunTimeFailure.h"

namespace varnoth::walkthrough {

void Camera::take(QWidget& window, const QString& name) {
    if (!folder_) {
        return;
    }
    ++taken_;
    const QString path = QDir(QString::fromStdString(*folder_))
                             .filePath(QString("%1_%2.png").arg(taken_, 2, 10, QLatin1Char('0')).arg(name));
    if (!window.grab().save(path)) {
        fail(Failure::DeviceIo);
    }
    report_("wrote", path.toStdString());
}

} // namespace varnoth::walkthrough
