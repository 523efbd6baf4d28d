#include "walkthrough/Camera.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>

#include "base/RunTimeFailure.h"

namespace varnoth::walkthrough {

namespace {

// While one lives, no control has the keyboard. When a window gets it is the display's affair, and the caret
// blinks.
class WithoutKeyboard {
  public:
    WithoutKeyboard() : holder_(QApplication::focusWidget()) {
        if (holder_ != nullptr) {
            holder_->clearFocus();
        }
    }

    ~WithoutKeyboard() {
        if (holder_ != nullptr) {
            holder_->setFocus();
        }
    }

    WithoutKeyboard(const WithoutKeyboard&) = delete;
    WithoutKeyboard& operator=(const WithoutKeyboard&) = delete;

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
    const WithoutKeyboard meanwhile;
    if (!window.grab().save(path)) {
        fail(Failure::DeviceIo);
    }
    report_("wrote", path.toStdString());
}

} // namespace varnoth::walkthrough
