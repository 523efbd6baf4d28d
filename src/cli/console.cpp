#include "cli/console.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <system_error>

#include "cli/command.h"
#include "cli/system.h"

namespace varnoth::cli {

namespace {

constexpr double silent_seconds = 0.5;
constexpr std::size_t bar_width = 30;

std::string_view environment(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string_view() : value;
}

double seconds_now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace

bool shows_colours() {
    return prints_to_terminal() && environment("NO_COLOR").empty() && environment("TERM") != "dumb";
}

bool prints_to_terminal() {
    return is_terminal(stdout);
}

void print(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0) {
        throw CommandError("standard output", std::generic_category().message(errno));
    }
}

void print_note(std::string_view text) {
    std::fprintf(stderr, "%.*s\n", static_cast<int>(text.size()), text.data());
}

void print_error(std::string_view error) {
    print_note("varnoth-cli: " + std::string(error));
}

Progress::Progress(std::string_view task, std::size_t steps, bool quiet)
    : task_(task), steps_(steps), visible_(!quiet && is_terminal(stderr)), started_(seconds_now()) {}

Progress::~Progress() {
    if (shown_ <= 100) {
        std::fputs("\r\x1b[K", stderr); // removes the bar
    }
}

void Progress::advance() {
    ++done_;
    if (!visible_ || seconds_now() - started_ < silent_seconds) {
        return;
    }
    const std::size_t percent = std::min<std::size_t>(100, done_ * 100 / std::max<std::size_t>(steps_, 1));
    if (percent != shown_) {
        show(percent);
    }
}

void Progress::show(std::size_t percent) {
    shown_ = percent;
    const std::size_t filled = percent * bar_width / 100;
    const std::string bar = std::string(filled, '#') + std::string(bar_width - filled, '.');
    std::fprintf(stderr, "\r%s [%s] %3zu %%", task_.c_str(), bar.c_str(), percent);
    std::fflush(stderr);
}

} // namespace varnoth::cli
