#include <cstdint>
#include <memory>
#include <string>

#include <CLI/App.hpp>
#include <CLI/Error.hpp>
#include <CLI/Validators.hpp>

#include "cli/command.h"
#include "cli/files.h"
#include "cli/sprites.h"
#include "cli/written_pictures.h"
#include "core/image/fit_picture.h"
#include "core/sprite/mode_colours.h"

namespace varnoth::cli {

namespace {

constexpr std::int32_t largest_side = 4096;
constexpr std::size_t most_pixels = std::size_t{1} << 26; // a few bytes can claim far more

struct Arguments {
    std::string file;
    std::string target;
    std::int32_t side = 0;
    bool force = false;
};

void make_thumbnail(const Arguments& arguments) {
    require_new(arguments.target, arguments.force);
    const SpriteFile sprite = read_sprite_file(arguments.file);
    const SpriteFrame& frame = sprite.frames.front();
    if (frame.indices.size() > most_pixels) {
        throw CommandError(name_of_input(arguments.file), "frame 0 is too large for a thumbnail");
    }
    const IndexedPicture picture{frame.header.FrameWidth, frame.header.FrameHeight, frame.indices.bytes(),
                                 mode_colours(sprite.palette, sprite.mode())};
    write_output(arguments.target, encode(fit_picture(picture, arguments.side), PictureFormat::Png),
                 arguments.force);
}

} // namespace

void add_thumbnail(CLI::App& program) {
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* const command = program.add_subcommand(
        "thumbnail",
        "Writes the first frame of a sprite as a small PNG, with alpha as the render mode means it.");
    command->add_option("FILE", arguments->file, "The sprite; - is standard input.")->required();
    command->add_option("OUT", arguments->target, "The PNG file, whatever its name; - is standard output.")
        ->required();
    command->add_option("SIZE", arguments->side, "The largest width and height in pixels, 1 to 4096.")
        ->required()
        ->check(CLI::Range(1, largest_side));
    command->add_flag("--force", arguments->force, "Replace an existing file.");
    command->callback([arguments] { make_thumbnail(*arguments); });
}

} // namespace varnoth::cli
