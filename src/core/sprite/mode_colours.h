// What the game makes of palette entries in each render mode, as colours with alpha.
#pragma once

#include <array>
#include <cstdint>

#include "core/sprite/RenderMode.h"
#include "core/sprite/SpriteDocument.h"

namespace varnoth {

/// Alpha, red, green and blue from the highest byte to the lowest, for each palette index.
using IndexColours = std::array<std::uint32_t, 256>;

/// The palette, opaque.
IndexColours plain_colours(const PaletteRecord& palette);

/// The palette with alpha as the mode means it, not premultiplied:
/// - ALPHATEST: index 255 is transparent, with its colour; all others are opaque.
/// - INDEXALPHA: the colour of entry 255, with the index as alpha.
/// - ADDITIVE: the alpha is the brightest channel, and the colour is scaled up, so that over black the entry
///   looks as in the palette. Other backgrounds are approximated: no alpha adds light to them.
/// - NORMAL and unknown modes: opaque.
IndexColours mode_colours(const PaletteRecord& palette, RenderMode mode);

/// The colours over an opaque background, as the mode draws them: ADDITIVE adds up to 255 for each channel.
/// The highest byte of the background is ignored.
IndexColours colours_over(const PaletteRecord& palette, RenderMode mode, std::uint32_t background);

} // namespace varnoth
