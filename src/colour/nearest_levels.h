// Nearest palette entries for the 16 by 16 by 16 evenly spaced colours, all at once.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "platform/Colour.h"

namespace varnoth {

/// For red level i, green level j, blue level k, each 0 to 15 and standing for the value level * 17, entry
/// (k * 16 + j) * 16 + i is the index of the nearest palette entry: squared Euclidean distance over red,
/// green and blue, the lowest index among equals, as GetNearestPaletteIndex has it. 1 to 256 entries.
std::array<std::uint8_t, 4096> nearest_to_levels(std::span<const RGBQUAD> entries);

} // namespace varnoth
