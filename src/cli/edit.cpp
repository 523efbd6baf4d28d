#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Error.hpp>

#include "cli/command.h"
#include "cli/edit_sprite.h"
#include "cli/files.h"
#include "cli/picture_options.h"
#include "cli/pictures.h"
#include "cli/save_sprite.h"
#include "cli/sprite_values.h"
#include "cli/sprites.h"
#include "core/sprite/SpriteFile.h"

namespace varnoth::cli {

namespace {

constexpr const char* order_of_edits =
    "Frames are numbered from 0. Options apply in this order, whatever their order on the command line: "
    "--type, "
    "--mode and --sync; --replace and --remove, with the numbers of FILE.spr; --append and --repalette; "
    "--move, "
    "in the order given; --order; --reverse; --origin. Bytes after the last frame are kept.";

FrameMove parse_move(const std::string& text) {
    const auto [from, to] = split(text, '=');
    return {parse_frame(from), parse_frame(to)};
}

FrameReplacement parse_replacement(const std::string& text) {
    const auto [frame, path] = split(text, '=');
    return {parse_frame(frame), {path, 0, path}};
}

/// The options as they are given.
class EditCommand {
  public:
    explicit EditCommand(CLI::App& command);

    void run() const;

  private:
    bool given(const std::string& option) const { return command_.count(option) > 0; }

    void check_options() const;
    SpriteEdits parse() const;
    void list_pictures_of(SpriteEdits& edits) const;

    std::string target() const { return given("--output") ? target_ : source_; }

    CLI::App& command_;
    std::string source_;
    std::string target_;
    std::string remove_;
    std::vector<std::string> moves_;
    std::string order_;
    bool reverse_ = false;
    std::vector<std::string> append_;
    bool repalette_ = false;
    std::vector<std::string> replace_;
    std::string type_;
    std::string mode_;
    std::string sync_;
    std::string origin_;
    PictureOptionTexts texts_;
    bool force_ = false;
};

EditCommand::EditCommand(CLI::App& command) : command_(command) {
    command.footer(order_of_edits);
    command.add_option("FILE.spr", source_, "The sprite; - is standard input.")->required();
    command
        .add_option("-o,--output", target_,
                    "Write this file; FILE.spr is replaced by default. - is standard output.")
        ->type_name("OUT");
    command.add_option("--remove", remove_, "Remove frames.")->type_name("0-3,7");
    command.add_option("--move", moves_, "Move a frame to another place; repeatable.")
        ->type_name("FROM=TO")
        ->allow_extra_args(false);
    command.add_option("--order", order_, "Put the frames into this order; names each once.")
        ->type_name("3,1,2,...");
    command.add_flag("--reverse", reverse_, "Reverse the order of the frames.");
    command.add_option("--append", append_, "Add pictures as frames at the end, in the sprite's palette.")
        ->type_name("PICTURE");
    command.add_flag("--repalette", repalette_, "Make a new palette for the old and the new frames.");
    command.add_option("--replace", replace_, "Replace a frame by a picture; repeatable.")
        ->type_name("N=PICTURE")
        ->allow_extra_args(false);
    command.add_option("--type", type_, "Set the orientation; see make.")->type_name("TYPE");
    command.add_option("--mode", mode_, "Set the render mode; the palette stays as it is. See make.")
        ->type_name("MODE");
    command.add_option("--sync", sync_, "synchronized or random.")->type_name("SYNC");
    command.add_option("--origin", origin_, "Set the origin of all frames; see make.")
        ->type_name("X,Y|center");
    texts_.add_to(command);
    command.add_flag("--force", force_, "Replace an existing OUT. FILE.spr is replaced without it.");
}

void EditCommand::check_options() const {
    const auto any = [this](std::initializer_list<const char*> options) {
        return std::ranges::any_of(options, [this](const char* option) { return given(option); });
    };
    if (!any({"--remove", "--move", "--order", "--reverse", "--append", "--repalette", "--replace", "--type",
              "--mode", "--sync", "--origin"})) {
        throw CLI::ValidationError("nothing to change");
    }
    if (any({"--fit", "--transparent"}) && !any({"--append", "--replace"})) {
        throw CLI::ValidationError("--fit and --transparent: only with --append or --replace");
    }
    if (any({"--dither", "--dither-strength"}) && !any({"--append", "--replace", "--repalette"})) {
        throw CLI::ValidationError("--dither: only with --append, --replace or --repalette");
    }
}

SpriteEdits EditCommand::parse() const {
    check_options();
    SpriteEdits edits;
    edits.pictures = texts_.parse();
    edits.reverse = reverse_;
    edits.repalette = repalette_;
    if (given("--type")) {
        edits.type = parse_value("--type", type_, parse_type);
    }
    if (given("--mode")) {
        edits.mode = parse_value("--mode", mode_, parse_mode);
    }
    if (given("--sync")) {
        edits.sync = parse_value("--sync", sync_, parse_sync);
    }
    if (given("--origin")) {
        edits.origin = parse_value("--origin", origin_, parse_origin);
        edits.centre = !edits.origin;
    }
    if (given("--remove")) {
        edits.remove = parse_value("--remove", remove_, parse_frames);
    }
    if (given("--order")) {
        edits.order = parse_value("--order", order_, parse_frames);
    }
    for (const std::string& text : moves_) {
        edits.moves.push_back(parse_value("--move", text, parse_move));
    }
    for (const std::string& text : replace_) {
        edits.replace.push_back(parse_value("--replace", text, parse_replacement));
    }
    return edits;
}

void EditCommand::list_pictures_of(SpriteEdits& edits) const {
    if (!append_.empty()) {
        edits.append = list_pictures(append_, edits.pictures.threads);
    }
    for (FrameReplacement& replacement : edits.replace) {
        const std::string& path = replacement.picture.path;
        const std::vector<PictureSource> pictures = list_pictures({path});
        if (pictures.size() != 1) {
            throw CommandError(path, "--replace takes one picture, not " + std::to_string(pictures.size()));
        }
        replacement.picture = pictures.front();
    }
}

// Incomplete sprites are refused: rewriting one would hide the damage.
SpriteParse parse_complete(const std::string& name, const std::vector<std::uint8_t>& bytes) {
    SpriteParse parse = parse_sprite_file(bytes);
    const bool has_negative_sides = std::ranges::any_of(
        parse.sprite.frames, [](const SpriteFrame& frame) { return frame.header.FrameWidth < 1; });
    if (!parse.opens_in_editor || parse.missing_pixels > 0 || has_negative_sides) {
        throw CommandError(name, first_error(parse));
    }
    return parse;
}

void EditCommand::run() const {
    SpriteEdits edits = parse();
    const bool replace = force_ || !given("--output");
    require_new(target(), replace);
    const std::string name = name_of_input(source_);
    const std::vector<std::uint8_t> bytes = read_input(source_);
    SpriteParse parse = parse_complete(name, bytes);
    list_pictures_of(edits);
    edit_sprite(parse.sprite, edits, name);
    save_sprite(target(), parse.sprite, replace,
                std::span(bytes).last(static_cast<std::size_t>(parse.trailing_bytes)));
}

} // namespace

void add_edit(CLI::App& program) {
    CLI::App* const command = program.add_subcommand("edit", "Changes a sprite.");
    const auto edit = std::make_shared<EditCommand>(*command);
    command->final_callback([edit] { edit->run(); });
}

} // namespace varnoth::cli
