// The editor: starts in its main window and runs until the window's close box is clicked.

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include <QApplication>

#include "desktop/controls/parts/accessible.h"
#include "desktop/forms/FormCoordinator.h"
#include "desktop/services/QtEventQueue.h"
#include "desktop/services/QtFileChooser.h"
#include "desktop/services/QtMessageBoxes.h"
#include "desktop/services/no_settings.h"
#include "desktop/theme/theme.h"
#include "qt/QtPictureLoader.h"

namespace {

/// Opens the main window and runs until it is closed. Returns the exit status.
int run_editor() {
    varnoth::QtMessageBoxes message_boxes;
    varnoth::QtEventQueue event_queue;
    varnoth::QtPictureLoader picture_loader;
    varnoth::QtFileChooser file_chooser;
    const varnoth::ServicesInstallation services(
        {&message_boxes, &event_queue, &picture_loader, &file_chooser});

    varnoth::FormCoordinator coordinator;
    QObject::connect(&coordinator, &varnoth::FormCoordinator::ended, [] { QCoreApplication::exit(0); });
    coordinator.start();
    return QApplication::exec();
}

} // namespace

int main(int argument_count, char** arguments) {
    varnoth::keep_no_settings();
    // Qt gets only the program name: it would act on -style, -stylesheet, -reverse and others.
    argument_count = std::min(argument_count, 1);
    QApplication application(argument_count, arguments);
    varnoth::theme::apply(application);
    varnoth::install_accessible_controls();

    const int status = run_editor();
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
        // ~QApplication can hang: it stops the two threads that read from the compositor one after the other.
        // If the first is stopped just after it woke up, the other waits for its read for ever.
        std::fflush(nullptr);
        std::_Exit(status);
    }
    return status;
}
