// Runs the walkthrough from the command line: one line an event on standard output; exit status 0 when it
// went through, 64 for a wrong option, 70 when a failure of the program is fatal. Without a platform told in
// the environment it needs no display.

#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include <QApplication>
#include <QLoggingCategory>

#include "controls/parts/accessible.h"
#include "platform/qt/QtPictureLoader.h"
#include "platform/qt/event_edge.h"
#include "platform/qt/look.h"
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
    // The walk itself writes files and can fail as the windows do.
    varnoth::at_event_edge([&] {
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
    // A picture that does not decode is told once, as the failure that it is; and what a platform without a
    // display cannot do is nobody's concern.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.gui.imageio*=false\ndefault.warning=false"));
    QApplication application(argument_count, arguments);
    varnoth::look::apply(application);
    varnoth::install_accessible_controls();
    const varnoth::FatalEndInstallation fatal_end(
        [](std::string_view name, std::string_view /*words*/) { end_fatally(name); });
    return walk({arguments + 1, arguments + argument_count});
}
