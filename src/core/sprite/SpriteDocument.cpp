#include "core/sprite/SpriteDocument.h"

#include <utility>

#include "core/base/bytes.h"

namespace varnoth {

void SpriteDocument::replace_frames(std::size_t slots) {
    std::vector<ByteArray> store(slots);
    FrameOrder = std::vector<std::int16_t>(slots);
    FrameStore = std::move(store);
}

std::array<std::uint8_t, SpriteHeaderRecord::file_size> to_bytes(const SpriteHeaderRecord& header) {
    std::array<std::uint8_t, SpriteHeaderRecord::file_size> bytes{};
    for (std::size_t i = 0; i < header.Ident.size(); ++i) {
        bytes[i] = static_cast<std::uint8_t>(header.Ident[i]);
    }
    put_i32(bytes, 4, header.Version);
    put_i32(bytes, 8, header.SpriteType);
    put_i32(bytes, 12, header.RenderMode);
    put_f32(bytes, 16, header.BoundingRadius);
    put_i32(bytes, 20, header.Width);
    put_i32(bytes, 24, header.Height);
    put_i32(bytes, 28, header.FrameCount);
    put_f32(bytes, 32, header.BeamLength);
    put_i32(bytes, 36, header.SyncType);
    return bytes;
}

std::array<std::uint8_t, PaletteRecord::file_size> to_bytes(const PaletteRecord& palette) {
    std::array<std::uint8_t, PaletteRecord::file_size> bytes{};
    put_i16(bytes, 0, palette.ColourCount);
    for (std::size_t i = 0; i < palette.Colours.size(); ++i) {
        bytes[2 + 3 * i] = palette.Colours[i].red;
        bytes[3 + 3 * i] = palette.Colours[i].green;
        bytes[4 + 3 * i] = palette.Colours[i].blue;
    }
    return bytes;
}

std::array<std::uint8_t, FrameHeaderRecord::file_size> to_bytes(const FrameHeaderRecord& header) {
    std::array<std::uint8_t, FrameHeaderRecord::file_size> bytes{};
    put_i32(bytes, 0, header.FrameType);
    put_i32(bytes, 4, header.OriginX);
    put_i32(bytes, 8, header.OriginY);
    put_i32(bytes, 12, header.FrameWidth);
    put_i32(bytes, 16, header.FrameHeight);
    return bytes;
}

SpriteHeaderRecord
sprite_header_from_bytes(std::span<const std::uint8_t, SpriteHeaderRecord::file_size> bytes) {
    SpriteHeaderRecord header;
    for (std::size_t i = 0; i < header.Ident.size(); ++i) {
        header.Ident[i] = static_cast<char>(bytes[i]);
    }
    header.Version = get_i32(bytes, 4);
    header.SpriteType = get_i32(bytes, 8);
    header.RenderMode = get_i32(bytes, 12);
    header.BoundingRadius = get_f32(bytes, 16);
    header.Width = get_i32(bytes, 20);
    header.Height = get_i32(bytes, 24);
    header.FrameCount = get_i32(bytes, 28);
    header.BeamLength = get_f32(bytes, 32);
    header.SyncType = get_i32(bytes, 36);
    return header;
}

PaletteRecord palette_from_bytes(std::span<const std::uint8_t, PaletteRecord::file_size> bytes) {
    PaletteRecord palette;
    palette.ColourCount = get_i16(bytes, 0);
    for (std::size_t i = 0; i < palette.Colours.size(); ++i) {
        palette.Colours[i] = {bytes[2 + 3 * i], bytes[3 + 3 * i], bytes[4 + 3 * i]};
    }
    return palette;
}

FrameHeaderRecord frame_header_from_bytes(std::span<const std::uint8_t, FrameHeaderRecord::file_size> bytes) {
    FrameHeaderRecord header;
    header.FrameType = get_i32(bytes, 0);
    header.OriginX = get_i32(bytes, 4);
    header.OriginY = get_i32(bytes, 8);
    header.FrameWidth = get_i32(bytes, 12);
    header.FrameHeight = get_i32(bytes, 16);
    return header;
}

} // namespace varnoth
