// Colours as numbers, and the four-byte entries of palettes.
#pragma once

#include <cstdint>

namespace varnoth {

/// 0x00BBGGRR, red in the low byte; with the top bit set, a reference to a system colour.
using Colour = std::int32_t;

/// The result of reading a pixel outside a surface. It equals no colour.
inline constexpr Colour no_colour = -1;

/// A plain colour from its three channels.
constexpr Colour make_colour(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    return red | (green << 8) | (blue << 16);
}

/// The red of a plain colour.
constexpr std::uint8_t red_of(Colour colour) {
    return static_cast<std::uint8_t>(colour & 0xFF);
}

/// The green of a plain colour.
constexpr std::uint8_t green_of(Colour colour) {
    return static_cast<std::uint8_t>((colour >> 8) & 0xFF);
}

/// The blue of a plain colour.
constexpr std::uint8_t blue_of(Colour colour) {
    return static_cast<std::uint8_t>((colour >> 16) & 0xFF);
}

/// One entry of a palette or colour table, and one 32-bit pixel.
struct RGBQUAD {
    std::uint8_t rgbBlue = 0;
    std::uint8_t rgbGreen = 0;
    std::uint8_t rgbRed = 0;
    std::uint8_t rgbReserved = 0;

    friend constexpr bool operator==(const RGBQUAD&, const RGBQUAD&) = default;
};

static_assert(sizeof(RGBQUAD) == 4);

/// An entry as a plain colour.
constexpr Colour colour_of(const RGBQUAD& entry) {
    return make_colour(entry.rgbRed, entry.rgbGreen, entry.rgbBlue);
}

/// A plain colour as an entry; its fourth byte is 0.
constexpr RGBQUAD quad_of(Colour colour) {
    return {blue_of(colour), green_of(colour), red_of(colour), 0};
}

/// Resolves a system-colour reference (top bit set, number in the low byte) to its colour in the classic
/// scheme, black for unknown numbers. Plain colours are returned unchanged.
Colour translate_colour(Colour colour);

} // namespace varnoth
