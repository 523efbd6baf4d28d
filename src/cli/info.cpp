#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include <CLI/App.hpp>

#include "cli/command.h"
#include "cli/console.h"
#include "cli/files.h"
#include "cli/sprites.h"
#include "core/sprite/hlspr.h"
#include "core/sprite/mode_colours.h"
#include "qt/path_text.h"

namespace varnoth::cli {

namespace {

constexpr std::int32_t texture_side = 16;

using Indices = std::vector<std::size_t>;

struct PaletteUse {
    Indices unused;               ///< entries that no pixel has
    std::vector<Indices> doubles; ///< entries of the same colour
};

struct Memory {
    std::uint64_t indexed = 0;     ///< one byte per pixel
    std::uint64_t true_colour = 0; ///< four bytes per pixel
};

struct Arguments {
    std::vector<std::string> files;
    bool json = false;
};

PaletteUse palette_use(const SpriteFile& sprite) {
    std::array<bool, 256> used{};
    for (const SpriteFrame& frame : sprite.frames) {
        for (const std::uint8_t index : frame.indices.bytes()) {
            used[index] = true;
        }
    }
    PaletteUse result;
    std::map<std::uint32_t, Indices> entries_of;
    const IndexColours colours = plain_colours(sprite.palette);
    for (std::size_t index = 0; index < used.size(); ++index) {
        if (!used[index]) {
            result.unused.push_back(index);
        }
        entries_of[colours[index]].push_back(index);
    }
    for (const auto& [colour, entries] : entries_of) {
        if (entries.size() > 1) {
            result.doubles.push_back(entries);
        }
    }
    std::ranges::sort(result.doubles);
    return result;
}

Memory memory_of(const SpriteFile& sprite) {
    Memory result;
    for (const SpriteFrame& frame : sprite.frames) {
        result.indexed += frame.indices.size();
    }
    result.true_colour = 4 * result.indexed;
    return result;
}

std::array<std::pair<const char*, std::int32_t>, 2> sides_of(const SpriteHeaderRecord& header) {
    return {{{"Width", header.Width}, {"Height", header.Height}}};
}

bool is_no_multiple(std::int32_t side) {
    return side % texture_side != 0;
}

std::string meaning_of(RenderMode mode) {
    switch (mode) {
    case RenderMode::Normal:
        return "all pixels are opaque";
    case RenderMode::Additive:
        return "colours are added to the background; black is invisible";
    case RenderMode::IndexAlpha:
        return "all pixels have the colour of entry 255; the index is the alpha";
    case RenderMode::AlphaTest:
        return "pixels of index 255 are transparent, all others opaque";
    default:
        return "unknown mode";
    }
}

std::string in_words(std::string_view name, std::int32_t number) {
    return name == "-1" ? "unknown (" + std::to_string(number) + ")"
                        : std::string(name) + " (" + std::to_string(number) + ")";
}

// Independent of the locale, unlike printf.
std::string number_text(float value) {
    char digits[32];
    return {digits, std::to_chars(digits, digits + sizeof digits, value).ptr};
}

std::string size_text(std::int32_t width, std::int32_t height) {
    return std::to_string(width) + " x " + std::to_string(height);
}

/// "0-3, 7"
std::string ranges_text(const Indices& indices) {
    std::string text;
    for (std::size_t first = 0; first < indices.size();) {
        std::size_t last = first;
        while (last + 1 < indices.size() && indices[last + 1] == indices[last] + 1) {
            ++last;
        }
        text += (text.empty() ? "" : ", ") + std::to_string(indices[first]);
        if (last > first) {
            text += "-" + std::to_string(indices[last]);
        }
        first = last + 1;
    }
    return text;
}

auto fields_of(const FrameHeaderRecord& header) {
    return std::tie(header.FrameType, header.FrameWidth, header.FrameHeight, header.OriginX, header.OriginY);
}

/// One line for each run of frames with the same header.
std::string frames_text(const std::vector<SpriteFrame>& frames) {
    std::string text;
    for (std::size_t first = 0; first < frames.size();) {
        const FrameHeaderRecord& header = frames[first].header;
        Indices run{first};
        while (run.back() + 1 < frames.size() &&
               fields_of(frames[run.back() + 1].header) == fields_of(header)) {
            run.push_back(run.back() + 1);
        }
        text += "    " + ranges_text(run) + ": " + size_text(header.FrameWidth, header.FrameHeight) +
                ", origin " + std::to_string(header.OriginX) + ", " + std::to_string(header.OriginY);
        if (header.FrameType != 0) {
            text += ", type " + std::to_string(header.FrameType);
        }
        text += "\n";
        first = run.back() + 1;
    }
    return text;
}

std::string doubles_text(const PaletteUse& use, const PaletteRecord& palette) {
    constexpr const char* digits = "0123456789abcdef";
    std::string text;
    for (const Indices& entries : use.doubles) {
        const PaletteColour& colour = palette.Colours[entries.front()];
        std::string hexadecimal;
        for (const std::uint8_t channel : {colour.red, colour.green, colour.blue}) {
            hexadecimal += {digits[channel >> 4], digits[channel & 15]};
        }
        text += "    #" + hexadecimal + ": " + ranges_text(entries) + "\n";
    }
    return text;
}

std::string sync_text(std::int32_t sync) {
    return sync == 0 ? "synchronized (0)" : sync == 1 ? "random (1)" : in_words("-1", sync);
}

std::string line(std::string_view name, const std::string& value) {
    std::string text = "  " + std::string(name);
    text.resize(22, ' ');
    return text + value + "\n";
}

std::string text_of(const std::string& path, std::size_t bytes, const SpriteParse& parse) {
    const SpriteHeaderRecord& header = parse.sprite.header;
    const PaletteUse use = palette_use(parse.sprite);
    const Memory memory = memory_of(parse.sprite);
    const bool all_frames = parse.sprite.frames.size() == static_cast<std::size_t>(header.FrameCount);
    const std::string name = name_of_input(path);
    std::string text = shows_colours() ? "\x1b[1m" + name + "\x1b[0m\n" : name + "\n";
    text += line("File", std::to_string(bytes) + " bytes, version " + std::to_string(header.Version));
    text += line("Type", in_words(hlspr::sprite_type_name(header.SpriteType), header.SpriteType));
    text += line("Render mode", in_words(hlspr::render_mode_name(header.RenderMode), header.RenderMode));
    text += line("Size", size_text(header.Width, header.Height));
    text += line("Bounding radius", number_text(header.BoundingRadius));
    text += line("Beam length", number_text(header.BeamLength));
    text += line("Synchronisation", sync_text(header.SyncType));
    text += line("Frames", std::to_string(parse.sprite.frames.size()) +
                               (all_frames ? "" : " of " + std::to_string(header.FrameCount)));
    text += frames_text(parse.sprite.frames);
    text += line("Palette", std::to_string(256 - use.unused.size()) + " of 256 entries used");
    text += line("Unused entries", use.unused.empty() ? "none" : ranges_text(use.unused));
    text += line("Double entries", use.doubles.empty() ? "none" : "colours that are in several entries");
    text += doubles_text(use, parse.sprite.palette);
    text += line("In the game", meaning_of(static_cast<RenderMode>(header.RenderMode)));
    for (const auto& [side, length] : sides_of(header)) {
        if (is_no_multiple(length)) {
            text += line("", std::string(side) + " " + std::to_string(length) + " is no multiple of 16");
        }
    }
    text += line("Memory", std::to_string(memory.indexed) + " bytes at 8 bits per pixel, " +
                               std::to_string(memory.true_colour) + " at 32 bits");
    text += line("Trailing bytes", std::to_string(parse.trailing_bytes));
    for (const SpriteFinding& finding : parse.findings) {
        if (finding.severity != Severity::Note) {
            text += line(finding.severity == Severity::Error ? "Error" : "Warning", finding.text);
        }
    }
    return text;
}

QString json_text(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QJsonArray json_of(const Indices& indices) {
    QJsonArray result;
    for (const std::size_t index : indices) {
        result.append(static_cast<int>(index));
    }
    return result;
}

QJsonObject json_of(const SpriteHeaderRecord& header) {
    return {{"version", header.Version},
            {"type", header.SpriteType},
            {"type_name", json_text(hlspr::sprite_type_name(header.SpriteType))},
            {"mode", header.RenderMode},
            {"mode_name", json_text(hlspr::render_mode_name(header.RenderMode))},
            {"bounding_radius", header.BoundingRadius},
            {"width", header.Width},
            {"height", header.Height},
            {"frame_count", header.FrameCount},
            {"beam_length", header.BeamLength},
            {"sync", header.SyncType}};
}

QJsonObject json_of(const PaletteRecord& palette, const PaletteUse& use) {
    QJsonArray colours;
    for (const PaletteColour& colour : palette.Colours) {
        colours.append(QJsonArray{colour.red, colour.green, colour.blue});
    }
    QJsonArray doubles;
    for (const Indices& entries : use.doubles) {
        doubles.append(json_of(entries));
    }
    return {{"colours", colours}, {"unused", json_of(use.unused)}, {"double", doubles}};
}

QJsonArray frames_json(const SpriteParse& parse) {
    QJsonArray result;
    for (std::size_t i = 0; i < parse.sprite.frames.size(); ++i) {
        const FrameHeaderRecord& header = parse.sprite.frames[i].header;
        result.append(QJsonObject{{"offset", static_cast<qint64>(parse.frame_offsets[i])},
                                  {"type", header.FrameType},
                                  {"width", header.FrameWidth},
                                  {"height", header.FrameHeight},
                                  {"origin", QJsonArray{header.OriginX, header.OriginY}}});
    }
    return result;
}

QJsonObject game_json(const SpriteFile& sprite) {
    const Memory memory = memory_of(sprite);
    QJsonArray no_multiples;
    for (const auto& [side, length] : sides_of(sprite.header)) {
        if (is_no_multiple(length)) {
            no_multiples.append(QString(side).toLower());
        }
    }
    const bool is_alpha_test = sprite.mode() == RenderMode::AlphaTest;
    return {{"meaning", json_text(meaning_of(sprite.mode()))},
            {"transparent_index", is_alpha_test ? QJsonValue(transparent_index) : QJsonValue()},
            {"no_multiple_of_16", no_multiples},
            {"bytes_at_8_bits", static_cast<qint64>(memory.indexed)},
            {"bytes_at_32_bits", static_cast<qint64>(memory.true_colour)}};
}

std::string json_text(const std::string& path, std::size_t bytes, const SpriteParse& parse) {
    return line_of({{"file", text_of_path(path)},
                    {"bytes", static_cast<qint64>(bytes)},
                    {"header", json_of(parse.sprite.header)},
                    {"palette", json_of(parse.sprite.palette, palette_use(parse.sprite))},
                    {"frames", frames_json(parse)},
                    {"game", game_json(parse.sprite)},
                    {"trailing_bytes", static_cast<qint64>(parse.trailing_bytes)},
                    {"opens_in_editor", parse.opens_in_editor},
                    {"findings", findings_json(parse.findings)}});
}

void print_info(const std::string& path, bool json) {
    const std::vector<std::uint8_t> bytes = read_input(path);
    const SpriteParse parse = parse_sprite_file(bytes);
    if (parse.sprite.frames.empty()) {
        throw CommandError(name_of_input(path), first_error(parse));
    }
    print(json ? json_text(path, bytes.size(), parse) : text_of(path, bytes.size(), parse));
}

} // namespace

void add_info(CLI::App& program) {
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* const command = program.add_subcommand("info", "Prints the facts of sprites.");
    command->add_option("FILE", arguments->files, "The sprites; - is standard input.")->required();
    command->add_flag("--json", arguments->json, "Print one JSON object per line and file.");
    command->callback([arguments] {
        for_each_file(arguments->files, [&](const std::string& path) { print_info(path, arguments->json); });
    });
}

} // namespace varnoth::cli
