#include "cli/terminal_view.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <string_view>
#include <thread>

#include "cli/console.h"
#include "cli/system.h"

namespace varnoth::cli {

namespace {

constexpr std::string_view plain = "\x1b[0m";
constexpr std::string_view hidden_cursor = "\x1b[?25l";
constexpr std::string_view visible_cursor = "\x1b[?25h";
constexpr std::string_view upper_half = "▀";
constexpr std::string_view lower_half = "▄";
constexpr std::chrono::milliseconds longest_sleep{50}; // after a signal, the sleep goes on

std::int32_t divide_up(std::int32_t dividend, std::int32_t divisor) {
    return (dividend + divisor - 1) / divisor;
}

bool is_visible(std::uint32_t pixel) {
    return pixel >> 24 != 0;
}

std::string colour_code(std::string_view target, std::uint32_t colour) {
    std::string code = "\x1b[";
    code += target;
    for (const int shift : {16, 8, 0}) {
        code += ";" + std::to_string(colour >> shift & 0xFF);
    }
    return code + "m";
}

// Each cell sets its colours from scratch: plain, foreground, background.
std::string cell_of(std::uint32_t upper, std::uint32_t lower) {
    if (is_visible(upper) && is_visible(lower)) {
        return colour_code("38;2", upper) + colour_code("48;2", lower) + std::string(upper_half);
    }
    if (is_visible(upper)) {
        return std::string(plain) + colour_code("38;2", upper) + std::string(upper_half);
    }
    if (is_visible(lower)) {
        return std::string(plain) + colour_code("38;2", lower) + std::string(lower_half);
    }
    return std::string(plain) + " ";
}

/// One line for two rows of pixels; every `step`th pixel of the picture is shown.
std::string text_of(const RgbaPicture& picture, std::int32_t step) {
    const auto pixel = [&](std::int32_t x, std::int32_t y) {
        return y < picture.height
                   ? picture.pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width) +
                                    static_cast<std::size_t>(x)]
                   : 0;
    };
    std::string text;
    for (std::int32_t y = 0; y < picture.height; y += 2 * step) {
        for (std::int32_t x = 0; x < picture.width; x += step) {
            text += cell_of(pixel(x, y), pixel(x, y + step));
        }
        text += std::string(plain) + "\n";
    }
    return text;
}

volatile std::sig_atomic_t interrupted = 0;

void interrupt(int /*signal*/) {
    interrupted = 1;
}

/// While it exists, the cursor is hidden and signals that end the process only set `interrupted`.
class Playing {
  public:
    Playing() {
        std::signal(SIGINT, interrupt);
        std::signal(SIGTERM, interrupt);
        print(hidden_cursor);
    }

    ~Playing() {
        std::fwrite(visible_cursor.data(), 1, visible_cursor.size(), stdout);
        std::fflush(stdout);
        std::signal(SIGINT, SIG_DFL);
        std::signal(SIGTERM, SIG_DFL);
    }

    Playing(const Playing&) = delete;
    Playing& operator=(const Playing&) = delete;
};

void wait_until(std::chrono::steady_clock::time_point end) {
    while (interrupted == 0) {
        const auto left = end - std::chrono::steady_clock::now();
        if (left <= left.zero()) {
            return;
        }
        std::this_thread::sleep_for(std::min<std::chrono::nanoseconds>(left, longest_sleep));
    }
}

} // namespace

void print_frames(const FrameView& view) {
    const std::int32_t step = divide_up(view.width(), terminal_size().columns);
    for (std::size_t frame = 0; frame < view.frame_count(); ++frame) {
        print(std::to_string(frame) + "\n" + text_of(view.draw(frame), step));
    }
}

void play_frames(const FrameView& view, std::chrono::nanoseconds interval) {
    const TerminalSize size = terminal_size();
    const std::int32_t step = std::max(divide_up(view.width(), size.columns),
                                       divide_up(view.height(), 2 * std::max(size.lines - 1, 1)));
    const std::string back = "\x1b[" + std::to_string(divide_up(view.height(), 2 * step)) + "A\r";
    const Playing playing;
    auto end = std::chrono::steady_clock::now();
    for (std::size_t frame = 0; interrupted == 0; frame = (frame + 1) % view.frame_count()) {
        print(text_of(view.draw(frame), step));
        end += interval;
        wait_until(end);
        if (interrupted == 0) {
            print(back);
        }
    }
}

} // namespace varnoth::cli
