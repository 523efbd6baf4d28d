#include "cli/palette_file.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <unordered_set>
#include <vector>

#include "cli/command.h"
#include "cli/pictures.h"
#include "core/base/RunTimeFailure.h"
#include "core/sprite/SpriteDocument.h"

namespace varnoth::cli {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t most_colours = 256;

bool is_sprite(Bytes file) {
    const auto& ident = SpriteHeaderRecord::sprite_ident;
    return file.size() >= ident.size() && std::equal(ident.begin(), ident.end(), file.begin());
}

PaletteColours read_sprite_palette(Bytes file) {
    constexpr std::size_t end = SpriteHeaderRecord::file_size + PaletteRecord::file_size;
    if (file.size() < end) {
        fail(Failure::InvalidPicture);
    }
    PaletteColours palette;
    const PaletteRecord record =
        palette_from_bytes(file.subspan<SpriteHeaderRecord::file_size, PaletteRecord::file_size>());
    for (const PaletteColour& colour : record.Colours) {
        palette.colours.push_back({colour.blue, colour.green, colour.red, 0});
    }
    return palette;
}

/// Stops after one colour too many.
std::vector<RGBQUAD> colours_in(const RgbaPicture& picture) {
    std::vector<RGBQUAD> colours;
    std::unordered_set<std::uint32_t> seen;
    for (const std::uint32_t pixel : picture.pixels) {
        if (pixel >> 24 != 0 && colours.size() <= most_colours && seen.insert(pixel & 0xFFFFFF).second) {
            colours.push_back({static_cast<std::uint8_t>(pixel), static_cast<std::uint8_t>(pixel >> 8),
                               static_cast<std::uint8_t>(pixel >> 16), 0});
        }
    }
    return colours;
}

PaletteColours read_picture_palette(const std::string& path) {
    PictureReader reader;
    const PictureSource first = reader.list(path).front();
    PaletteColours palette{reader.colour_table(first), std::nullopt};
    if (palette.colours.empty()) {
        palette.colours = colours_in(reader.read(first));
    }
    return palette;
}

PaletteColours read_any(const std::string& path, Bytes file) {
    if (is_sprite(file)) {
        return read_sprite_palette(file);
    }
    if (const auto palette = read_palette(file)) {
        return *palette;
    }
    if (!is_picture(file)) {
        if (const auto palette = read_raw_palette(file)) {
            return *palette;
        }
        throw CommandError(display_name(path), "neither a palette nor a picture");
    }
    return read_picture_palette(path);
}

} // namespace

PaletteColours read_palette_file(const std::string& path) {
    const auto file = read_picture_file(path);
    PaletteColours palette;
    try {
        palette = read_any(path, *file);
    } catch (const RunTimeFailure&) {
        throw CommandError(display_name(path), "the palette is damaged");
    }
    if (palette.colours.empty()) {
        throw CommandError(display_name(path), "the palette is empty");
    }
    if (palette.colours.size() > most_colours) {
        throw CommandError(display_name(path), "has more than 256 colours");
    }
    return palette;
}

} // namespace varnoth::cli
