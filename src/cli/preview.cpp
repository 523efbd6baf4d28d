#include "cli/command.h"

namespace varnoth::cli {

void add_preview(CLI::App& program) {
    program.add_subcommand("preview", "Shows the frames of a sprite.");
}

} // namespace varnoth::cli
