// Runs the walkthrough from the command line: prints one line per event on standard output; exits with 0 on
// success, 64 for a wrong option, 70 after a fatal error of the program. It needs no display unless
// QT_QPA_PLATFORM selects one.

#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include <QApplication>
#include <QLoggingCategory>

#include "desktop/controls/parts/accessible.h"
#include "desktop/services/exception_barrier.h"
#include "desktop/theme/theme.h"
#include "qt/QtPictureLoader.h"
#include "walkthrough/Walkthrough.h"

namespace {

constexpr int exit_wrong_option = 64;

[[noreturn]] void end_fatally(std::string_view name) {
    std::cerr << "run-time error: " << name << std::endl;
    std::cout.flush();
    std::_Exit(varnoth::exit_run_time_failure);
}

int walk(const std::vector<std::string>& words) {
    int status = 0;
    // The walkthrough itself writes files, so it can fail like an event handler.
    varnoth::guard_event([&] {
        try {
            varnoth::QtPictureLoader loader;
            varnoth::walkthrough::walk(
                varnoth::walkthrough::parse(words),
                [](std::string_view kind, std::string_view text) {
                    std::cout << kind << ": " << text << std::endl;
                },
                loader);
        } catch (const varnoth::walkthrough::WrongOption& wrong) {
            std::cerr << wrong.what() << "\n\n" << varnoth::walkthrough::usage;
            status = exit_wrong_option;
        }
    });
    return status;
}

} // namespace

int main(int argument_count, char** arguments) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
#ifdef Q_OS_WIN
    if (!qEnvironmentVariableIsSet("QT_QPA_FONTDIR")) {
        // The offscreen platform does not ask Windows for its fonts.
        qputenv("QT_QPA_FONTDIR", qgetenv("SystemRoot") + "\\Fonts");
    }
#endif
    // Silence Qt's warnings: the walkthrough itself reports pictures that cannot be decoded, and the
    // limitations of the offscreen platform do not matter.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.gui.imageio*=false\ndefault.warning=false"));
    QApplication application(argument_count, arguments);
    varnoth::theme::apply(application);
    varnoth::install_accessible_controls();
    const varnoth::FatalErrorHandlerInstallation fatal_end(
        [](std::string_view name, std::string_view /*words*/) { end_fatally(name); });
    return walk({arguments + 1, arguments + argument_count});
}
