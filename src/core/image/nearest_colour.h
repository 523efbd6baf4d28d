// The definition of "nearest colour": squared Euclidean distance over red, green and blue; the lowest index
// of equally near entries.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

#include "core/image/Colour.h"

namespace varnoth {

/// The index of the entry nearest to the colour; 0 without entries. The reserved byte is ignored.
inline std::size_t nearest_entry(std::span<const RGBQUAD> entries, const RGBQUAD& colour) {
    std::size_t best = 0;
    std::int32_t best_distance = std::numeric_limits<std::int32_t>::max();
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const std::int32_t red = entries[i].rgbRed - colour.rgbRed;
        const std::int32_t green = entries[i].rgbGreen - colour.rgbGreen;
        const std::int32_t blue = entries[i].rgbBlue - colour.rgbBlue;
        const std::int32_t distance = red * red + green * green + blue * blue;
        if (distance < best_distance) {
            best_distance = distance;
            best = i;
        }
    }
    return best;
}

} // namespace varnoth
