// The arithmetic of the ordered dither for many pixels at a time, in a form that compilers turn into vectors.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace varnoth {

/// How many pixels a call takes.
inline constexpr std::size_t dithered_at_once = 64;

using DitheredPixels = std::span<const std::uint8_t, 4 * dithered_at_once>; ///< blue, green, red, not used
using DitheredPlaces = std::array<std::uint32_t, dithered_at_once>; ///< one index into the lookup a pixel

/// What the dither matrix adds to the bytes of four neighbouring pixels, the first of them in its column 0.
using MatrixRow = std::array<std::uint8_t, 16>;

/// Where each pixel stands in a lookup of 16 levels a channel, (blue * 16 + green) * 16 + red. The level of a
/// channel value is (value + added) / 17 in whole numbers; `added` is at most 16.
void places_of_16_levels(DitheredPixels pixels, const MatrixRow& added, DitheredPlaces& places);

/// The same for 6 levels a channel, of steps of 51; `added` is at most 50.
void places_of_6_levels(DitheredPixels pixels, const MatrixRow& added, DitheredPlaces& places);

} // namespace varnoth
