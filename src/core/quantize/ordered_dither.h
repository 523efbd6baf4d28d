// The arithmetic of the ordered dither for blocks of pixels, written so that compilers vectorise it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace varnoth {

/// The number of pixels per call.
inline constexpr std::size_t dithered_at_once = 64;

using DitheredPixels = std::span<const std::uint8_t, 4 * dithered_at_once>; ///< blue, green, red, unused
using DitheredPlaces = std::array<std::uint32_t, dithered_at_once>;         ///< one lookup index per pixel

/// The dither matrix values for the bytes of four adjacent pixels, beginning with column 0 of the matrix.
using MatrixRow = std::array<std::uint8_t, 16>;

/// The index of each pixel in a lookup table of 16 levels per channel: (blue * 16 + green) * 16 + red. The
/// level of a channel value is (value + added) / 17, rounded down; `added` is at most 16.
void places_of_16_levels(DitheredPixels pixels, const MatrixRow& added, DitheredPlaces& places);

/// The same for 6 levels per channel in steps of 51; `added` is at most 50.
void places_of_6_levels(DitheredPixels pixels, const MatrixRow& added, DitheredPlaces& places);

} // namespace varnoth
