#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <numeric>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Error.hpp>
#include <CLI/Validators.hpp>

#include "cli/command.h"
#include "cli/console.h"
#include "cli/files.h"
#include "cli/sprite_values.h"
#include "cli/sprites.h"
#include "cli/written_pictures.h"
#include "core/base/RunTimeFailure.h"
#include "core/base/files.h"
#include "core/sprite/mode_colours.h"

namespace varnoth::cli {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t fewest_digits = 3;

const std::map<std::string, PictureFormat> formats = {{"png", PictureFormat::Png},
                                                      {"bmp", PictureFormat::Bmp},
                                                      {"tga", PictureFormat::Tga},
                                                      {"pcx", PictureFormat::Pcx},
                                                      {"gif", PictureFormat::Gif}};

struct Arguments {
    std::string file;
    std::string folder;
    std::string format = "png";
    std::string frames;
    bool alpha = false;
    bool force = false;
    bool quiet = false;
};

std::string stem_of(const std::string& path) {
    if (path == "-") {
        return "frame";
    }
    const std::u8string stem = native_path(path).stem().u8string(); // UTF-8 on Windows, else the bytes
    return {stem.begin(), stem.end()};
}

/// The target of each frame. All numbers have the same length, so that the names sort.
class Targets {
  public:
    Targets(const Arguments& arguments, std::size_t frame_count)
        : prefix_(join_path(arguments.folder, stem_of(arguments.file) + "_")),
          suffix_("." + arguments.format),
          digits_(std::max(fewest_digits, std::to_string(frame_count - 1).size())) {}

    std::string of(std::size_t frame) const {
        const std::string number = std::to_string(frame);
        return prefix_ + std::string(digits_ - number.size(), '0') + number + suffix_;
    }

  private:
    std::string prefix_;
    std::string suffix_;
    std::size_t digits_;
};

void make_folder(const std::string& path) {
    std::error_code error;
    fs::create_directories(native_path(path), error);
    if (error) {
        throw CommandError(path, error.message());
    }
}

std::vector<std::uint8_t> encode_frame(const SpriteFile& sprite, std::size_t number,
                                       const Arguments& arguments) {
    const SpriteFrame& frame = sprite.frames[number];
    const PictureFormat format = formats.at(arguments.format);
    IndexedPicture picture{frame.header.FrameWidth, frame.header.FrameHeight, frame.indices.bytes(), {}};
    if (!arguments.alpha) {
        picture.colours = plain_colours(sprite.palette);
        return encode(picture, format);
    }
    picture.colours = mode_colours(sprite.palette, sprite.mode());
    return encode(with_colours(picture), format);
}

/// The chosen frames in ascending order, each once. All of them if none is chosen.
std::vector<std::size_t> select(std::vector<std::size_t> frames, std::size_t count, const std::string& file) {
    if (frames.empty()) {
        frames.resize(count);
        std::iota(frames.begin(), frames.end(), std::size_t{0});
    }
    std::ranges::sort(frames);
    frames.erase(std::unique(frames.begin(), frames.end()), frames.end());
    const auto missing = std::ranges::lower_bound(frames, count);
    if (missing != frames.end()) {
        throw CommandError(file, "there is no frame " + std::to_string(*missing) + "; the last is " +
                                     std::to_string(count - 1));
    }
    return frames;
}

void extract(const Arguments& arguments) {
    std::vector<std::size_t> frames;
    if (!arguments.frames.empty()) {
        frames = parse_value("--frames", arguments.frames, parse_frames);
    }
    const SpriteFile sprite = read_sprite_file(arguments.file);
    const std::vector<std::size_t> chosen =
        select(std::move(frames), sprite.frames.size(), name_of_input(arguments.file));
    const Targets targets(arguments, sprite.frames.size());
    make_folder(arguments.folder);
    for (const std::size_t number : chosen) {
        require_new(targets.of(number), arguments.force);
    }
    Progress progress("Extracting", chosen.size(), arguments.quiet);
    for (const std::size_t number : chosen) {
        const std::string target = targets.of(number);
        try {
            write_output(target, encode_frame(sprite, number, arguments), arguments.force);
        } catch (const RunTimeFailure& failure) {
            const bool too_large = failure.failure() == Failure::Overflow;
            throw CommandError(target, too_large ? "the frame is too large for the format"
                                                 : std::string(failure.words()));
        }
        progress.advance();
    }
}

} // namespace

void add_extract(CLI::App& program) {
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* const command = program.add_subcommand("extract", "Writes the frames of a sprite as pictures.");
    command->add_option("FILE", arguments->file, "The sprite; - is standard input.")->required();
    command->add_option("DIR", arguments->folder, "The folder for the pictures; created if it is missing.")
        ->required();
    command->add_option("--format", arguments->format, "png, bmp, tga, pcx or gif; png by default.")
        ->transform(CLI::IsMember(formats, CLI::ignore_case));
    command->add_option("--frames", arguments->frames, "Only these frames, counted from 0, such as 0-3,7.");
    command->add_flag("--alpha", arguments->alpha,
                      "Write alpha as the render mode means it, in 32-bit PNG or TGA. Without it, pictures\n"
                      "have the sprite's palette and indices.");
    command->add_flag("--force", arguments->force, "Replace existing files.");
    command->add_flag("-q,--quiet", arguments->quiet, "Show no progress.");
    command->callback([arguments] {
        if (arguments->alpha && arguments->format != "png" && arguments->format != "tga") {
            throw CLI::ValidationError("--alpha", "needs --format png or tga");
        }
        extract(*arguments);
    });
}

} // namespace varnoth::cli
