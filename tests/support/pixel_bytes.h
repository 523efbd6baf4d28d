// Colours as 32-bit pixels and as palettes.
#pragma once

#include <cstdint>
#include <vector>

#include "core/image/Colour.h"
#include "support/lists.h"

namespace varnoth::test {

/// Blue, green, red and a byte that nothing may depend on.
inline Bytes pixel_bytes(const Colours& colours) {
    Bytes bytes;
    for (const Colour colour : colours) {
        bytes.insert(bytes.end(), {blue_of(colour), green_of(colour), red_of(colour),
                                   static_cast<std::uint8_t>(bytes.size() * 7)});
    }
    return bytes;
}

inline std::vector<RGBQUAD> palette_of(const Colours& colours) {
    std::vector<RGBQUAD> palette;
    for (const Colour colour : colours) {
        palette.push_back(quad_of(colour));
    }
    return palette;
}

inline Colours colours_of(const std::vector<RGBQUAD>& palette) {
    Colours colours;
    for (const RGBQUAD& entry : palette) {
        colours.push_back(colour_of(entry));
    }
    return colours;
}

inline Colour grey(int value) {
    const auto byte = static_cast<std::uint8_t>(value);
    return make_colour(byte, byte, byte);
}

} // namespace varnoth::test
