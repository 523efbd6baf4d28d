#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Error.hpp>
#include <CLI/Validators.hpp>

#include "cli/command.h"
#include "cli/console.h"
#include "cli/contact_sheet.h"
#include "cli/files.h"
#include "cli/frame_view.h"
#include "cli/gif_writer.h"
#include "cli/sprite_values.h"
#include "cli/sprites.h"
#include "cli/terminal_view.h"
#include "cli/written_pictures.h"

namespace varnoth::cli {

namespace {

constexpr double default_rate = 10;
constexpr double lowest_rate = 0.01;
constexpr double highest_rate = 100;
constexpr int largest_scale = 64;

struct Arguments {
    std::string file;
    std::string target;
    std::string rate;
    std::string background;
    int scale = 1;
    bool force = false;
    bool quiet = false;
};

double parse_rate(const std::string& text) {
    if (text.empty()) {
        return default_rate;
    }
    double rate = 0;
    const char* const end = text.data() + text.size();
    if (std::from_chars(text.data(), end, rate).ptr != end ||
        !(rate >= lowest_rate && rate <= highest_rate)) {
        throw CLI::ValidationError("--fps", "'" + text + "' is not a number from 0.01 to 100");
    }
    return rate;
}

bool ends_in(const std::string& path, std::string_view ending) {
    return path.size() >= ending.size() &&
           std::equal(ending.rbegin(), ending.rend(), path.rbegin(), [](char expected, char actual) {
               return expected == (actual >= 'A' && actual <= 'Z' ? actual - 'A' + 'a' : actual);
           });
}

bool is_gif(const std::string& target) {
    return target == "-" || ends_in(target, ".gif");
}

/// The hundredths of a second that a GIF shows each frame.
std::uint16_t delay_of(double rate, bool quiet) {
    const auto delay = static_cast<std::uint16_t>(std::lround(100 / rate));
    if (delay * rate != 100 && !quiet) {
        const int hundredths = 10000 / delay;
        const std::string fraction = std::to_string(100 + hundredths % 100).substr(1);
        print_note("GIF counts in hundredths of a second: the rate is " + std::to_string(hundredths / 100) +
                   "." + fraction + " frames per second.");
    }
    return delay;
}

/// The indices and the palette of the sprite, unchanged.
std::vector<std::uint8_t> own_gif(const SpriteFile& sprite, const FrameView& view, GifOptions options,
                                  Progress& progress) {
    options.colours = plain_colours(sprite.palette);
    if (sprite.mode() == RenderMode::AlphaTest) {
        options.transparent = transparent_index;
    }
    GifWriter writer(options);
    for (std::size_t i = 0; i < view.frame_count(); ++i) {
        const FrameHeaderRecord& header = sprite.frames[i].header;
        const std::vector<std::uint8_t> indices = view.magnified_indices(i);
        writer.add({view.left_of(i), view.top_of(i), header.FrameWidth * view.scale(),
                    header.FrameHeight * view.scale(), indices});
        progress.advance();
    }
    return writer.finish();
}

/// The colours of all frames over a background, numbered in the order in which they appear.
class ColourTable {
  public:
    explicit ColourTable(std::string file) : file_(std::move(file)) {}

    std::uint8_t number_of(std::uint32_t colour) {
        const auto [entry, is_new] = numbers_.try_emplace(colour, numbers_.size());
        if (is_new && numbers_.size() > colours_.size()) {
            throw CommandError(file_, "a GIF has too few colours for this background; write a PNG, or give "
                                      "another background");
        }
        if (is_new) {
            colours_[entry->second] = colour;
        }
        return static_cast<std::uint8_t>(entry->second);
    }

    const std::array<std::uint32_t, 256>& colours() const { return colours_; }

  private:
    std::string file_;
    std::map<std::uint32_t, std::size_t> numbers_;
    std::array<std::uint32_t, 256> colours_{};
};

std::vector<std::uint8_t> gif_over_background(const FrameView& view, GifOptions options,
                                              const std::string& file, Progress& progress) {
    // The file begins with the colour table, so all frames are drawn before any is written.
    ColourTable table(file);
    std::vector<std::vector<std::uint8_t>> frames(view.frame_count());
    for (std::size_t i = 0; i < frames.size(); ++i) {
        for (const std::uint32_t colour : view.draw(i).pixels) {
            frames[i].push_back(table.number_of(colour));
        }
        progress.advance();
    }
    options.colours = table.colours();
    GifWriter writer(options);
    for (const std::vector<std::uint8_t>& indices : frames) {
        writer.add({0, 0, view.width(), view.height(), indices});
    }
    return writer.finish();
}

void write_gif(const Arguments& arguments, const SpriteFile& sprite, const FrameView& view) {
    GifOptions options;
    options.width = view.width();
    options.height = view.height();
    options.delay = delay_of(parse_rate(arguments.rate), arguments.quiet);
    Progress progress("Drawing", view.frame_count(), arguments.quiet);
    const std::vector<std::uint8_t> bytes =
        arguments.background.empty()
            ? own_gif(sprite, view, options, progress)
            : gif_over_background(view, options, name_of_input(arguments.file), progress);
    write_output(arguments.target, bytes, arguments.force);
}

void show_in_terminal(const Arguments& arguments, const FrameView& view) {
    if (arguments.rate.empty()) {
        print_frames(view);
        return;
    }
    const std::chrono::duration<double> interval(1 / parse_rate(arguments.rate));
    play_frames(view, std::chrono::duration_cast<std::chrono::nanoseconds>(interval));
}

void check_usage(const Arguments& arguments) {
    parse_rate(arguments.rate);
    if (arguments.target.empty() && !prints_to_terminal()) {
        throw CLI::ValidationError("OUT", "is required unless standard output is a terminal");
    }
    if (ends_in(arguments.target, ".png")) {
        if (!arguments.rate.empty()) {
            throw CLI::ValidationError("--fps", "does not apply to a contact sheet");
        }
    } else if (!arguments.target.empty() && !is_gif(arguments.target)) {
        throw CLI::ValidationError("OUT", "'" + arguments.target + "' does not end in .gif or .png");
    }
}

void preview(const Arguments& arguments) {
    check_usage(arguments);
    std::optional<Background> background;
    if (!arguments.background.empty()) {
        background = parse_value("--background", arguments.background, Background::parse);
    }
    if (!arguments.target.empty()) {
        require_new(arguments.target, arguments.force);
    }
    const SpriteFile sprite = read_sprite_file(arguments.file);
    const std::string name = name_of_input(arguments.file);
    const FrameView view(sprite, background, arguments.scale, name);
    if (arguments.target.empty()) {
        show_in_terminal(arguments, view);
    } else if (is_gif(arguments.target)) {
        write_gif(arguments, sprite, view);
    } else {
        write_output(arguments.target, encode(contact_sheet(view, name), PictureFormat::Png),
                     arguments.force);
    }
}

} // namespace

void add_preview(CLI::App& program) {
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* const command = program.add_subcommand(
        "preview", "Shows a sprite as an animated GIF, as a contact sheet in PNG, or in the terminal.");
    command->add_option("FILE", arguments->file, "The sprite; - is standard input.")->required();
    command->add_option("OUT", arguments->target,
                        "NAME.gif, NAME.png, or - for a GIF on standard output. Without it, the frames are\n"
                        "shown in the terminal.");
    command->add_option(
        "--fps", arguments->rate,
        "Frames per second, 0.01 to 100. A GIF has 10 by default, and rounds the time of a frame\n"
        "to hundredths of a second. In the terminal, the frames are listed without it, and\n"
        "played until Ctrl+C with it.");
    command->add_option("--scale", arguments->scale, "Magnify every pixel, 1 to 64 times.")
        ->check(CLI::Range(1, largest_scale));
    command->add_option("--background", arguments->background,
                        "#RRGGBB or checkers: draw the frames over it, as the render mode means it.\n"
                        "Without it, they have the colours of the palette.");
    command->add_flag("--force", arguments->force, "Replace an existing file.");
    command->add_flag("-q,--quiet", arguments->quiet, "Show neither notes nor progress.");
    command->callback([arguments] { preview(*arguments); });
}

} // namespace varnoth::cli
