// Runs the walkthrough from the command line: one line an event on standard output; exit status 0 when it
// went through, 64 for a wrong option, 70 when a failure of the program is fatal.

#include <cstdio>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include <QCoreApplication>
#include <QLoggingCategory>

#include "base/RunTimeFailure.h"
#include "platform/qt/QtPictureLoader.h"
#include "walkthrough/Walkthrough.h"

namespace {

constexpr int exit_wrong_option = 64;
constexpr int exit_run_time_failure = 70;

int end_fatally(std::string_view name) {
    std::cerr << "run-time error: " << name << std::endl;
    return exit_run_time_failure;
}

} // namespace

int main(int argument_count, char** arguments) {
    const QCoreApplication application(argument_count, arguments);
    // A picture that does not decode is told once, as the failure that it is.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.gui.imageio*=false"));
    const std::vector<std::string> words(arguments + 1, arguments + argument_count);
    try {
        varnoth::QtPictureLoader loader;
        varnoth::walkthrough::walk(
            varnoth::walkthrough::parse(words),
            [](std::string_view kind, std::string_view text) {
                std::cout << kind << ": " << text << std::endl;
            },
            loader);
        return 0;
    } catch (const varnoth::walkthrough::WrongOption& wrong) {
        std::cerr << wrong.what() << "\n\n" << varnoth::walkthrough::usage;
        return exit_wrong_option;
    } catch (const varnoth::RunTimeFailure& failure) {
        return end_fatally(failure.name());
    } catch (const std::bad_alloc&) {
        return end_fatally(varnoth::name_of(varnoth::Failure::OutOfMemory));
    }
}
