// Shows one window and ends as soon as it has been painted, without taking anything down: "editor" the main
// window, made as the program makes it, "empty" a plain window of Qt of the same size, "line" one with a line
// of text, for which Qt loads its fonts. For timing from outside.
#include <cstdlib>
#include <string_view>
#include <type_traits>

#include <QApplication>
#include <QLabel>
#include <QTimer>
#include <QWidget>

#include "controls/parts/accessible.h"
#include "platform/Services.h"
#include "platform/qt/QtEventQueue.h"
#include "platform/qt/QtFileChooser.h"
#include "platform/qt/QtMessageBoxes.h"
#include "platform/qt/QtPictureLoader.h"
#include "platform/qt/look.h"
#include "workbench/Desk.h"

namespace {

/// Ends the program behind the first paint of what it watches.
class FirstPaint : public QObject {
  public:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            watched->removeEventFilter(this);
            // An empty window reads the list of fonts when it is taken down: Qt asks for it to give it back.
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
    varnoth::look::apply(application);
    varnoth::install_accessible_controls();
    varnoth::QtMessageBoxes message_boxes;
    varnoth::QtEventQueue event_queue;
    varnoth::QtPictureLoader picture_loader;
    varnoth::QtFileChooser file_chooser;
    const varnoth::ServicesInstallation services(
        {&message_boxes, &event_queue, &picture_loader, &file_chooser});
    varnoth::Desk desk;
    desk.form1().elpanel1.installEventFilter(&first_paint); // it covers the whole form
    desk.start();
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
