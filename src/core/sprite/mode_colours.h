// What the game makes of palette entries in each render mode, as colours with alpha.
#pragma once

#include <array>
#include <cstdint>

#include "core/sprite/SpriteDocument.h"

namespace varnoth {

inline constexpr std::int32_t mode_normal = 0;
inline constexpr std::int32_t mode_additive = 1;
inline constexpr std::int32_t mode_index_alpha = 2;
inline constexpr std::int32_t mode_alpha_test = 3;

/// The index of transparent pixels in ALPHATEST; in INDEXALPHA, the entry whose colour all pixels have.
inline constexpr std::uint8_t special_index = 255;

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
IndexColours mode_colours(const PaletteRecord& palette, std::int32_t render_mode);

/// The colours over an opaque background, as the mode draws them: ADDITIVE adds up to 255 for each channel.
/// The highest byte of the background is ignored.
IndexColours colours_over(const PaletteRecord& palette, std::int32_t render_mode, std::uint32_t background);

} // namespace varnoth
