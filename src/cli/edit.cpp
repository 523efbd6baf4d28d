#include "cli/command.h"

namespace varnoth::cli {

void add_edit(CLI::App& program) {
    program.add_subcommand("edit", "Changes a sprite.");
}

} // namespace varnoth::cli
