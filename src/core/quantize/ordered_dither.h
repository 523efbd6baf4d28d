// The arithmetic of the ordered dither for blocks of pixels, written so that compilers vectorise it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace varnoth {

/// The number of pixels per call.
inline constexpr std::size_t dither_block_size = 64;

using DitheredPixels = std::span<const std::uint8_t, 4 * dither_block_size>; ///< blue, green, red, unused
using DitheredIndices = std::array<std::uint32_t, dither_block_size>;        ///< one lookup index per pixel

/// The dither matrix values for the bytes of four adjacent pixels, beginning with column 0 of the matrix.
using MatrixRow = std::array<std::uint8_t, 16>;

/// Finds the index of each pixel in a lookup table of 16 levels per channel: (blue * 16 + green) * 16 + red.
/// The level of a channel value is (value + added) / 17, rounded down; `added` is at most 16.
void dither_to_16_levels(DitheredPixels pixels, const MatrixRow& added, DitheredIndices& indices);

/// The same for 6 levels per channel in steps of 51; `added` is at most 50.
void dither_to_6_levels(DitheredPixels pixels, const MatrixRow& added, DitheredIndices& indices);

} // namespace varnoth
