#include "reference/NearestEntry.h"

namespace varnoth::reference {

namespace {

int squared_distance(const RGBQUAD& entry, Colour colour) {
    const int red = entry.rgbRed - red_of(colour);
    const int green = entry.rgbGreen - green_of(colour);
    const int blue = entry.rgbBlue - blue_of(colour);
    return red * red + green * green + blue * blue;
}

} // namespace

std::uint8_t nearest_entry(std::span<const RGBQUAD> palette, Colour colour) {
    std::size_t best = 0;
    for (std::size_t entry = 1; entry < palette.size(); ++entry) {
        if (squared_distance(palette[entry], colour) < squared_distance(palette[best], colour)) {
            best = entry;
        }
    }
    return static_cast<std::uint8_t>(best);
}

} // namespace varnoth::reference
