// The dithers of map_to_palette(), which checks what it passes.
#pragma once

#include <cstdint>
#include <span>

#include "core/quantize/map_to_palette.h"

namespace varnoth {

/// Pattern dithering with a Bayer matrix.
void dither_ordered(const PixelView& picture, const NearestEntry& nearest, int strength,
                    std::span<std::uint8_t> indices);

/// Error diffusion in the order of the blue-noise matrix.
void dither_blue_noise(const PixelView& picture, const NearestEntry& nearest, int strength,
                       std::span<std::uint8_t> indices, BandListener* listener);

/// Error diffusion row by row, with the weights of Floyd and Steinberg.
void dither_floyd_steinberg(const PixelView& picture, const NearestEntry& nearest, int strength,
                            std::span<std::uint8_t> indices, BandListener* listener);

} // namespace varnoth
