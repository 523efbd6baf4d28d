#include "cli/command.h"

namespace varnoth::cli {

void add_thumbnail(CLI::App& program) {
    program.add_subcommand("thumbnail", "Writes a small picture of a sprite.");
}

} // namespace varnoth::cli
