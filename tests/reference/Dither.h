// The reduction to 8 bits with every copy made and every pixel worked out from the matrices, for the shipped
// dither to be held equal to.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "platform/Colour.h"
#include "platform/PictureSurface.h"

namespace varnoth::reference {

/// Mode 1 takes the picture's own palette, mode 0 the colour cube.
bool transform_to_8bit(std::int32_t dither_mode, PictureSurface& source, PictureSurface& target);

/// 4096 plain searches for the nearest of the entries; the first among equals.
std::array<std::uint8_t, 4096> color_lookup(std::span<const RGBQUAD> entries);

/// Level of a channel value at a place of the matrix, column phase + 4 * row phase: of 16 and of 6 levels.
std::int32_t lookup_level(std::int32_t channel, std::size_t place);
std::int32_t cube_level(std::int32_t channel, std::size_t place);

} // namespace varnoth::reference
