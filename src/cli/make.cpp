#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Error.hpp>

#include "cli/build_sprite.h"
#include "cli/command.h"
#include "cli/files.h"
#include "cli/import_as_editor.h"
#include "cli/palette_file.h"
#include "cli/picture_options.h"
#include "cli/pictures.h"
#include "cli/save_sprite.h"
#include "cli/sprite_values.h"

namespace varnoth::cli {

namespace {

constexpr const char* best = "best";
constexpr const char* editor = "editor";

std::size_t parse_count(const std::string& text) {
    return static_cast<std::size_t>(parse_integer(text, 2, 256));
}

/// The options as they are given.
class Make {
  public:
    explicit Make(CLI::App& command);

    void run() const;

  private:
    bool given(const std::string& option) const { return command_.count(option) > 0; }

    void refuse(std::initializer_list<const char*> options, const std::string& reason) const;
    RenderMode checked_mode() const;
    SpriteFile make() const;
    SpriteFile make_as_editor() const;
    SpriteOptions sprite_options() const;

    CLI::App& command_;
    std::string target_;
    std::vector<std::string> pictures_;
    std::string size_;
    std::string type_ = "VP_PARALLEL";
    std::string mode_ = "ADDITIVE";
    std::string sync_ = "random";
    std::string origin_ = "center";
    std::string colours_;
    std::string palette_ = best;
    std::string colour_;
    PictureOptionTexts texts_;
    bool force_ = false;
};

Make::Make(CLI::App& command) : command_(command) {
    command.add_option("OUT.spr", target_, "The sprite to write; - is standard output.")->required();
    command
        .add_option(
            "PICTURE", pictures_,
            "Picture files and folders of them; - is standard input. Animations bring all their frames.")
        ->required();
    command.add_option("--size", size_, "Size of the frames; the first picture's by default.")
        ->type_name("WxH");
    texts_.add_to(command);
    command
        .add_option("--type", type_,
                    "Orientation: VP_PARALLEL_UPRIGHT, FACING_UPRIGHT, VP_PARALLEL, "
                    "ORIENTED, VP_PARALLEL_ORIENTED, or 0 to 4.")
        ->capture_default_str()
        ->type_name("TYPE");
    command.add_option("--mode", mode_, "Render mode: NORMAL, ADDITIVE, INDEXALPHA, ALPHATEST, or 0 to 3.")
        ->capture_default_str()
        ->type_name("MODE");
    command
        .add_option("--sync", sync_,
                    "Whether all sprites of a map show the same frame: synchronized or random.")
        ->capture_default_str()
        ->type_name("SYNC");
    command.add_option("--origin", origin_, "Top left corner relative to the sprite's position, y upwards.")
        ->capture_default_str()
        ->type_name("X,Y|center");
    command.add_option("--colors", colours_, "Most colours in the palette, 2 to 256; 256 by default.")
        ->type_name("N");
    command
        .add_option(
            "--palette", palette_,
            "best: a new one for all pictures; editor: the whole import as the editor does it; or the "
            "palette of a file.")
        ->capture_default_str()
        ->type_name("best|editor|FILE");
    command
        .add_option("--color", colour_, "Colour of an INDEXALPHA sprite; that of the pictures by default.")
        ->type_name("#RRGGBB");
    command.add_flag("--force", force_, "Replace an existing file.");
}

void Make::refuse(std::initializer_list<const char*> options, const std::string& reason) const {
    for (const char* option : options) {
        if (given(option)) {
            throw CLI::ValidationError(std::string(option) + ": " + reason);
        }
    }
}

// The render mode, after checking that no given option contradicts another.
RenderMode Make::checked_mode() const {
    const RenderMode checked = parse_value("--mode", mode_, parse_mode);
    if (palette_ == editor) {
        refuse({"--fit", "--sync", "--origin", "--colors", "--dither", "--dither-strength", "--color"},
               "not with --palette editor");
        const bool picks = checked == RenderMode::IndexAlpha || checked == RenderMode::AlphaTest;
        if (given("--transparent") &&
            (!picks || parse_value("--transparent", texts_.transparent, parse_transparency).by !=
                           Transparency::By::Key)) {
            throw CLI::ValidationError("--transparent: with --palette editor only #RRGGBB, in INDEXALPHA and "
                                       "ALPHATEST");
        }
        return checked;
    }
    if (checked == RenderMode::IndexAlpha) {
        refuse({"--colors", "--palette", "--dither", "--dither-strength"}, "not with --mode INDEXALPHA");
    } else {
        refuse({"--color"}, "only with --mode INDEXALPHA");
    }
    if (palette_ != best) {
        refuse({"--colors"}, "only with --palette best");
    }
    return checked;
}

void Make::run() const {
    const SpriteFile sprite = palette_ == editor ? make_as_editor() : make();
    save_sprite(target_, sprite, force_);
}

SpriteFile Make::make() const {
    SpriteOptions options = sprite_options();
    require_new(target_, force_);
    if (palette_ != best) {
        options.palette = read_palette_file(palette_).colours;
    }
    return build_sprite(list_pictures(pictures_, options.pictures.threads), options);
}

SpriteOptions Make::sprite_options() const {
    SpriteOptions options;
    options.mode = checked_mode();
    options.type = parse_value("--type", type_, parse_type);
    options.sync = parse_value("--sync", sync_, parse_sync);
    options.origin = parse_value("--origin", origin_, parse_origin);
    options.pictures = texts_.parse();
    if (given("--size")) {
        options.size = parse_value("--size", size_, parse_size);
    }
    if (given("--colors")) {
        options.colours = parse_value("--colors", colours_, parse_count);
    }
    if (given("--color")) {
        options.colour = parse_value("--color", colour_, parse_colour);
    }
    return options;
}

SpriteFile Make::make_as_editor() const {
    EditorImport options;
    options.mode = checked_mode();
    options.type = parse_value("--type", type_, parse_type);
    options.quiet = texts_.quiet;
    if (given("--size")) {
        options.size = parse_value("--size", size_, parse_size);
    }
    if (given("--transparent")) {
        const std::uint32_t picked =
            parse_value("--transparent", texts_.transparent, parse_transparency).colour;
        options.transparent = PaletteColour{static_cast<std::uint8_t>(picked >> 16),
                                            static_cast<std::uint8_t>(picked >> 8 & 0xFF),
                                            static_cast<std::uint8_t>(picked & 0xFF)};
    }
    require_new(target_, force_);
    return import_as_editor(pictures_, options);
}

} // namespace

void add_make(CLI::App& program) {
    CLI::App* const command = program.add_subcommand("make", "Makes a sprite from pictures.");
    const auto make = std::make_shared<Make>(*command);
    command->final_callback([make] { make->run(); });
}

} // namespace varnoth::cli
