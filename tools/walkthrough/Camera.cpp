#include "walkthrough/Camera.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>

#include "core/base/RunTimeFailure.h"

namespace varnoth::walkthrough {

namespace {

// Takes the keyboard focus from its control for this object's lifetime: whether a window has the focus
// depends on the display, and the caret blinks.
class FocusCleared {
  public:
    FocusCleared() : holder_(QApplication::focusWidget()) {
        if (holder_ != nullptr) {
            holder_->clearFocus();
        }
    }

    ~FocusCleared() {
        if (holder_ != nullptr) {
            holder_->setFocus();
        }
    }

    FocusCleared(const FocusCleared&) = delete;
    FocusCleared& operator=(const FocusCleared&) = delete;

  private:
    QWidget* holder_;
};

} // namespace

void Camera::take(QWidget& window, const QString& name) {
    if (!folder_) {
        return;
    }
    ++taken_;
    const QString path = QDir(QString::fromStdString(*folder_))
                             .filePath(QString("%1_%2.png").arg(taken_, 2, 10, QLatin1Char('0')).arg(name));
    const FocusCleared meanwhile;
    if (!window.grab().save(path)) {
        fail(Failure::DeviceIo);
    }
    report_("wrote", path.toStdString());
}

} // namespace varnoth::walkthrough
