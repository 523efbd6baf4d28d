#include "cli/command.h"

namespace varnoth::cli {

void add_make(CLI::App& program) {
    program.add_subcommand("make", "Makes a sprite from pictures.");
}

} // namespace varnoth::cli
