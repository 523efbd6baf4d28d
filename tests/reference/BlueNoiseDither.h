// Reference implementation of the blue-noise dither: pixel after pixel in the order of the matrix.
#pragma once

#include <cstdint>
#include <span>

#include "core/image/Colour.h"
#include "core/quantize/map_to_palette.h"

namespace varnoth::reference {

/// Writes the indices of the opaque pixels. The strength is in percent.
void dither_blue_noise(const PixelView& picture, std::span<const RGBQUAD> palette, int strength,
                       std::span<std::uint8_t> indices);

} // namespace varnoth::reference
