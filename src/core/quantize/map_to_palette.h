// Maps pictures to the indices of a palette, with a choice of dithers.
#pragma once

#include <cstdint>
#include <span>

#include "core/quantize/NearestEntry.h"

namespace varnoth {

/// The pixels of one picture, rows from the top without padding.
struct PixelView {
    std::span<const std::uint8_t> pixels; ///< 4 bytes each: blue, green, red, unused
    std::span<const std::uint8_t> opaque; ///< a byte each, 0 for transparent; empty if all are opaque
    std::int32_t width = 0;
    std::int32_t height = 0;

    bool is_opaque(std::size_t pixel) const { return opaque.empty() || opaque[pixel] != 0; }
};

enum class Dither {
    /// The nearest entry of each pixel.
    None,
    /// Pattern dithering with a Bayer matrix of 8 by 8. An index depends on nothing but the pixel's colour
    /// and place, so that what stands still never flickers.
    Ordered,
    /// Error diffusion in the order of a blue-noise matrix instead of row by row. Errors travel a few pixels
    /// only, so that a change in one place leaves the rest of the picture as it was.
    BlueNoise,
    /// Error diffusion row by row. A change can affect everything to its right and below.
    FloydSteinberg,
};

struct Dithering {
    Dither method = Dither::None;
    int strength = 100; ///< in percent; 0 is the same as no dither
};

/// Writes the index of each opaque pixel; indices of transparent pixels stay as they are, and their colours
/// affect no other pixel. The same pixels give the same indices, whatever was mapped before. Threads can map
/// pictures at the same time. InvalidProcedureCall when sizes do not match or the strength is not 0 to 100.
void map_to_palette(const PixelView& picture, const NearestEntry& nearest, const Dithering& dithering,
                    std::span<std::uint8_t> indices);

} // namespace varnoth
