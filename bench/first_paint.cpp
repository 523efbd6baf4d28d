// Shows one window and exits without cleanup after its first paint, to be timed by another process: "editor"
// is the main window, created as in the program, "empty" an empty Qt window of the same size, "line" one with
// a line of text, for which Qt loads fonts.
#include <cstdlib>
#include <string_view>
#include <type_traits>

#include <QApplication>
#include <QLabel>
#include <QTimer>
#include <QWidget>

#include "core/services/Services.h"
#include "desktop/controls/parts/accessible.h"
#include "desktop/forms/FormCoordinator.h"
#include "desktop/forms/main_window/Form1.h"
#include "desktop/services/QtEventQueue.h"
#include "desktop/services/QtFileChooser.h"
#include "desktop/services/QtMessageBoxes.h"
#include "desktop/theme/theme.h"
#include "qt/QtPictureLoader.h"

namespace {

/// Exits after the first paint of the watched object.
class FirstPaint : public QObject {
  public:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            watched->removeEventFilter(this);
            // No cleanup: destroying an empty window would make Qt load the list of fonts.
            QTimer::singleShot(0, [] { std::_Exit(EXIT_SUCCESS); });
        }
        return false;
    }
};

template <typename Window>
int show_plain(int& argc, char** argv, FirstPaint& first_paint) {
    const QApplication application(argc, argv);
    Window window;
    if constexpr (std::is_same_v<Window, QLabel>) {
        window.setText(QStringLiteral("A line of text"));
    }
    window.setFixedSize(575, 477);
    window.installEventFilter(&first_paint);
    window.show();
    return QApplication::exec();
}

int show_editor(int& argc, char** argv, FirstPaint& first_paint) {
    QApplication application(argc, argv);
    varnoth::theme::apply(application);
    varnoth::install_accessible_controls();
    varnoth::QtMessageBoxes message_boxes;
    varnoth::QtEventQueue event_queue;
    varnoth::QtPictureLoader picture_loader;
    varnoth::QtFileChooser file_chooser;
    const varnoth::ServicesInstallation services(
        {&message_boxes, &event_queue, &picture_loader, &file_chooser});
    varnoth::FormCoordinator coordinator;
    coordinator.form1().elpanel1.installEventFilter(&first_paint); // covers the whole form
    coordinator.start();
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    FirstPaint first_paint;
    const std::string_view window = argc > 1 ? argv[1] : "";
    if (window == "editor") {
        return show_editor(argc, argv, first_paint);
    }
    return window == "line" ? show_plain<QLabel>(argc, argv, first_paint)
                            : show_plain<QWidget>(argc, argv, first_paint);
}
