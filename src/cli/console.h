// What the program prints besides its results: notes, and the progress of long work on a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace varnoth::cli {

/// Whether standard output is a terminal that shows colours: not with NO_COLOR or TERM=dumb.
bool shows_colours();

/// Whether standard output is a terminal.
bool prints_to_terminal();

/// Prints results to standard output. CommandError when it cannot be written.
void print(std::string_view text);

/// A line on standard error.
void print_note(std::string_view text);

/// "varnoth-cli: ERROR" on standard error, for commands that go on with the next file.
void print_error(std::string_view error);

/// A progress bar on standard error while the object exists. Shows nothing if standard error is no terminal,
/// if `quiet` is set, or before half a second has passed.
class Progress {
  public:
    Progress(std::string_view task, std::size_t steps, bool quiet);
    ~Progress();

    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// One step more is done.
    void advance();

  private:
    void show(std::size_t percent);

    std::string task_;
    std::size_t steps_;
    std::size_t done_ = 0;
    bool visible_;
    double started_;
    std::size_t shown_ = 101; ///< the percentage on the screen; 101 is none
};

} // namespace varnoth::cli
