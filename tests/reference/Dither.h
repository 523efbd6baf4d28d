// Reference implementation of the reduction to 8 bits: makes every copy and computes every pixel from the
// dither matrices.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "core/image/Colour.h"
#include "core/image/PictureSurface.h"

namespace varnoth::reference {

/// Mode 1 uses the picture's own palette, mode 0 the colour cube.
bool transform_to_8bit(std::int32_t dither_mode, PictureSurface& source, PictureSurface& target);

/// The nearest entry for each of 4096 colours, by linear search; the first one if several are equally near.
std::array<std::uint8_t, 4096> color_lookup(std::span<const RGBQUAD> entries);

/// The level of a channel value, of 16 or of 6, at a matrix position: column phase + 4 * row phase.
std::int32_t lookup_level(std::int32_t channel, std::size_t place);
std::int32_t cube_level(std::int32_t channel, std::size_t place);

} // namespace varnoth::reference
