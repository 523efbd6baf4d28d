// The records of the edited sprite in memory, and their conversion to and from the file layout:
// little-endian, unaligned.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "core/base/ByteArray.h"

namespace varnoth {

/// 40 bytes in the file, in this order.
struct SpriteHeaderRecord {
    static constexpr std::size_t file_size = 40;
    static constexpr std::array<char, 4> sprite_ident{'I', 'D', 'S', 'P'};

    std::array<char, 4> Ident{}; ///< sprite_ident in every valid document
    std::int32_t Version = 0;    ///< 2 in a new sprite
    std::int32_t SpriteType = 0; ///< orientation, 0 to 4; hlspr::sprite_type_name has the names
    std::int32_t RenderMode = 0; ///< 0 to 3; hlspr::render_mode_name has the names
    float BoundingRadius = 0;    ///< pixels, from the centre to a corner
    std::int32_t Width = 0;      ///< pixels
    std::int32_t Height = 0;     ///< pixels
    std::int32_t FrameCount = 0;
    float BeamLength = 0;      ///< 0 in a new sprite
    std::int32_t SyncType = 0; ///< 1 in a new sprite
};

/// One colour of the document's palette, red first as in the file. Other palettes (RGBQUAD) are blue first.
struct PaletteColour {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    friend bool operator==(const PaletteColour&, const PaletteColour&) = default;
};

/// 770 bytes in the file: always 256 colours, regardless of the count.
struct PaletteRecord {
    static constexpr std::size_t file_size = 770;
    static constexpr std::int16_t sprite_colours = 256;

    std::int16_t ColourCount = 0; ///< sprite_colours in every valid document
    std::array<PaletteColour, 256> Colours{};
};

/// 20 bytes in the file, before every frame.
struct FrameHeaderRecord {
    static constexpr std::size_t file_size = 20;

    std::int32_t FrameType = 0;   ///< 0 in a new sprite
    std::int32_t OriginX = 0;     ///< pixels from the centre to the left edge: -width / 2
    std::int32_t OriginY = 0;     ///< pixels from the centre to the top edge: height / 2
    std::int32_t FrameWidth = 0;  ///< pixels
    std::int32_t FrameHeight = 0; ///< pixels
};

struct SpriteDocument {
    SpriteHeaderRecord SpriteHeader;
    PaletteRecord Palette;

    /// One record for all frames: loading keeps the last frame's, saving writes it before every frame.
    FrameHeaderRecord FrameHeader;

    /// Palette indices of each stored frame: one byte per pixel, top row first, no padding. A sprite without
    /// frames has one slot, which must not be read.
    std::vector<ByteArray> FrameStore;

    /// The index into FrameStore for each display position.
    std::vector<std::int16_t> FrameOrder;

    /// Replaces the frames by empty ones and their order by zeros. Frees the memory of the old frames; keeps
    /// them when allocation fails.
    void replace_frames(std::size_t slots);
};

std::array<std::uint8_t, SpriteHeaderRecord::file_size> to_bytes(const SpriteHeaderRecord& header);
std::array<std::uint8_t, PaletteRecord::file_size> to_bytes(const PaletteRecord& palette);
std::array<std::uint8_t, FrameHeaderRecord::file_size> to_bytes(const FrameHeaderRecord& header);

SpriteHeaderRecord
sprite_header_from_bytes(std::span<const std::uint8_t, SpriteHeaderRecord::file_size> bytes);
PaletteRecord palette_from_bytes(std::span<const std::uint8_t, PaletteRecord::file_size> bytes);
FrameHeaderRecord frame_header_from_bytes(std::span<const std::uint8_t, FrameHeaderRecord::file_size> bytes);

} // namespace varnoth
