#include "cli/command.h"

namespace varnoth::cli {

void add_extract(CLI::App& program) {
    program.add_subcommand("extract", "Writes the frames of a sprite as pictures.");
}

} // namespace varnoth::cli
