#include "cli/command.h"

namespace varnoth::cli {

void add_check(CLI::App& program) {
    program.add_subcommand("check", "Lists everything that is wrong with sprites.");
}

} // namespace varnoth::cli
