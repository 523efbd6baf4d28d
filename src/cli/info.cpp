#include "cli/command.h"

namespace varnoth::cli {

void add_info(CLI::App& program) {
    program.add_subcommand("info", "Prints the facts of sprites.");
}

} // namespace varnoth::cli
