// Builds sprite files byte by byte for tests, and resets the state of the sprite and of palette mixing.
#pragma once

#include <bit>
#include <cstdint>
#include <string>

#include "core/quantize/mixpals.h"
#include "core/sprite/hlspr.h"
#include "support/lists.h"

namespace varnoth::test {

inline void append_i16(Bytes& bytes, std::uint32_t value) {
    bytes.push_back(static_cast<std::uint8_t>(value & 0xFF));
    bytes.push_back(static_cast<std::uint8_t>((value >> 8) & 0xFF));
}

inline void append_i32(Bytes& bytes, std::int32_t value) {
    const auto bits = static_cast<std::uint32_t>(value);
    append_i16(bytes, bits & 0xFFFF);
    append_i16(bytes, bits >> 16);
}

struct FileFrame {
    std::int32_t width = 1;
    std::int32_t height = 1;
    Bytes pixels{0};
    std::int32_t type = 0;
    std::int32_t origin_x = 0;
    std::int32_t origin_y = 0;
};

/// The fields of a sprite file as they are written; nothing keeps them consistent.
struct SpriteFile {
    std::string ident = "IDSP";
    std::int32_t version = 2;
    std::int32_t sprite_type = 2;
    std::int32_t render_mode = 1;
    std::uint32_t bounding_radius_bits = 0;
    std::int32_t width = 1;
    std::int32_t height = 1;
    std::int32_t frame_count = 0;
    std::uint32_t beam_length_bits = 0;
    std::int32_t sync_type = 1;
    std::uint16_t colour_count = 256;
    Bytes palette = Bytes(768);
    std::vector<FileFrame> frames;

    void add(FileFrame frame) {
        frames.push_back(std::move(frame));
        ++frame_count;
    }

    Bytes bytes() const {
        Bytes result(ident.begin(), ident.end());
        append_i32(result, version);
        append_i32(result, sprite_type);
        append_i32(result, render_mode);
        append_i32(result, std::bit_cast<std::int32_t>(bounding_radius_bits));
        append_i32(result, width);
        append_i32(result, height);
        append_i32(result, frame_count);
        append_i32(result, std::bit_cast<std::int32_t>(beam_length_bits));
        append_i32(result, sync_type);
        append_i16(result, colour_count);
        result.insert(result.end(), palette.begin(), palette.end());
        for (const FileFrame& frame : frames) {
            append_i32(result, frame.type);
            append_i32(result, frame.origin_x);
            append_i32(result, frame.origin_y);
            append_i32(result, frame.width);
            append_i32(result, frame.height);
            result.insert(result.end(), frame.pixels.begin(), frame.pixels.end());
        }
        return result;
    }
};

/// Resets the sprite module to the state at program start, with a document of zeros.
inline void reset_sprite() {
    hlspr::document() = SpriteDocument{};
    hlspr::UnnamedSprite = false;
    hlspr::SpriteDirty = false;
    hlspr::ExtractFolder.clear();
}

/// Resets palette mixing to the state at program start.
inline void reset_mixpals() {
    mixpals::InitColorTable();
    mixpals::ColorTable.clear();
    mixpals::ImportPalette.fill({});
    mixpals::hLookupPalette.reset();
    mixpals::MixInfo = {};
    mixpals::MixBits = {};
}

/// A stored frame of these indices.
inline ByteArray indices(const Bytes& values) {
    ByteArray result(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        result[i] = values[i];
    }
    return result;
}

/// The indices of a stored frame.
inline Bytes indices_of(const ByteArray& frame) {
    return {frame.bytes().begin(), frame.bytes().end()};
}

} // namespace varnoth::test
