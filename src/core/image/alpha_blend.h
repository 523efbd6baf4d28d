// Copies a rectangle between drawing contexts with a constant alpha.
#pragma once

#include <cstdint>

#include "core/image/DrawingContext.h"

namespace varnoth {

/// Only SourceConstantAlpha is used: 0 leaves the destination unchanged, 255 copies the source.
struct BLENDFUNCTION {
    std::uint8_t BlendOp = 0;
    std::uint8_t BlendFlags = 0;
    std::uint8_t SourceConstantAlpha = 0;
    std::uint8_t AlphaFormat = 0;
};

/// The four bytes as one number, the first one lowest.
constexpr std::uint32_t packed(const BLENDFUNCTION& blend) {
    return static_cast<std::uint32_t>(blend.BlendOp) | static_cast<std::uint32_t>(blend.BlendFlags) << 8 |
           static_cast<std::uint32_t>(blend.SourceConstantAlpha) << 16 |
           static_cast<std::uint32_t>(blend.AlphaFormat) << 24;
}

/// Blends the source from (source_x, source_y) on into the rectangle `to` of the destination, clipped to both
/// bitmaps. Each byte becomes (source * alpha + destination * (255 - alpha) + 127) / 255: all four bytes of
/// 32-bit pixels, the three colours at other depths. Returns 1, or 0 when a context has no bitmap.
std::int32_t alpha_blend(DrawingContext& destination, const Rectangle& to, const DrawingContext& source,
                         std::int32_t source_x, std::int32_t source_y, std::uint32_t blend_function);

} // namespace varnoth
