// Writes TGA files, uncompressed with the top row first: indices with a colour map of 256 entries (type 1),
// or true colour with alpha (type 2).
#pragma once

#include <cstdint>
#include <vector>

#include "core/image/IndexedPicture.h"
#include "core/image/RgbaPicture.h"

namespace varnoth {

/// 8 bits per pixel, 24 bits per entry of the map. Overflow when a side exceeds 32767 pixels.
std::vector<std::uint8_t> write_tga(const IndexedPicture& picture);

/// 32 bits per pixel. Overflow when a side exceeds 32767 pixels.
std::vector<std::uint8_t> write_tga(const RgbaPicture& picture);

} // namespace varnoth
