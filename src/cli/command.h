// What the subcommands share. Each one adds itself to the command line in a file of its own; main.cpp lists
// them.
#pragma once

#include <stdexcept>
#include <string>

namespace CLI {
class App; // its header takes seconds to compile
}

namespace varnoth::cli {

/// The work could not be done. The text is one line that names the file; the program prints it and exits
/// with 1.
class CommandError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;

    /// "FILE: REASON".
    CommandError(const std::string& file, const std::string& reason)
        : std::runtime_error(file + ": " + reason) {}
};

/// The work could not be done, and all reasons have been printed: the program only exits with 1.
struct ReportedFailure {};

/// Each of these adds a subcommand with its options. The subcommand runs as CLI11's final callback.
void add_make(CLI::App& program);
void add_info(CLI::App& program);
void add_check(CLI::App& program);
void add_extract(CLI::App& program);
void add_edit(CLI::App& program);
void add_preview(CLI::App& program);
void add_thumbnail(CLI::App& program);

} // namespace varnoth::cli
