// varnoth-cli: makes, inspects, takes apart and edits sprites from scripts. Parses the command line and runs
// one subcommand. Exit status: 0, 1 when the work could not be done, 2 for wrong usage.

#include <algorithm>
#include <exception>
#include <string>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <QCoreApplication>

#include "cli/command.h"
#include "cli/console.h"
#include "cli/system.h"
#include "core/base/RunTimeFailure.h"

namespace {

constexpr int failed = 1;
constexpr int wrong_usage = 2;

int run(int argument_count, char** arguments) {
    CLI::App program("Makes, inspects, takes apart and edits Half-Life sprites.", "varnoth-cli");
    program.set_version_flag("--version", "varnoth-cli " VARNOTH_VERSION);
    program.require_subcommand(1);
    program.allow_windows_style_options(false); // a path such as /folder/file is not an option
    program.footer("'varnoth-cli COMMAND --help' describes a command.");
    varnoth::cli::add_make(program);
    varnoth::cli::add_info(program);
    varnoth::cli::add_check(program);
    varnoth::cli::add_extract(program);
    varnoth::cli::add_edit(program);
    varnoth::cli::add_preview(program);
    varnoth::cli::add_thumbnail(program);
    try {
        program.parse(argument_count, arguments);
    } catch (const CLI::ParseError& error) {
        return program.exit(error) == 0 ? 0 : wrong_usage;
    }
    return 0;
}

} // namespace

int main(int argument_count, char** arguments) {
    varnoth::cli::prepare_streams();
    // Qt finds its picture formats through the application. It gets only the program name.
    int qt_count = std::min(argument_count, 1);
    const QCoreApplication application(qt_count, arguments);
    try {
        return run(argument_count, arguments);
    } catch (const varnoth::cli::CommandError& error) {
        varnoth::cli::print_error(error.what());
    } catch (const varnoth::cli::ReportedFailure&) {
        return failed;
    } catch (const varnoth::RunTimeFailure& failure) {
        varnoth::cli::print_error(failure.words());
    } catch (const std::bad_alloc&) {
        varnoth::cli::print_error("out of memory");
    } catch (const std::exception& error) {
        varnoth::cli::print_error(error.what());
    }
    return failed;
}
