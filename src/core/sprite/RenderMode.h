// The render modes of a sprite header.
#pragma once

#include <cstdint>

namespace varnoth {

/// A header from a damaged file may have other values.
enum class RenderMode : std::int32_t { Normal = 0, Additive = 1, IndexAlpha = 2, AlphaTest = 3 };

/// In AlphaTest, transparent pixels have this index and no others do.
inline constexpr std::uint8_t transparent_index = 255;

/// In IndexAlpha, all pixels have the colour of this palette entry, and their index is their alpha.
inline constexpr std::uint8_t colour_index = 255;

} // namespace varnoth
