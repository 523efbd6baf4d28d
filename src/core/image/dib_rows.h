// Rows of a cDIB as byte spans. Row 0 is the bottom row of the picture, the first one in the buffer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "core/image/cDIB.h"

namespace varnoth {

/// The pixels of one row of a 32-bit picture: blue, green, red and an unused byte each.
inline std::span<const std::uint8_t> MapPixels(const cDIB& picture, std::int32_t row) {
    const std::size_t start =
        static_cast<std::size_t>(row) * static_cast<std::size_t>(picture.BytesPerScanline());
    return {picture.lpBits() + start, static_cast<std::size_t>(picture.Width()) * 4};
}

/// The same for a 32-bit bitmap of either row order; row 0 is its bottom row.
inline std::span<const std::uint8_t> MapPixels(const Bitmap& picture, std::int32_t row) {
    return {picture.row(picture.height() - 1 - row), static_cast<std::size_t>(picture.width()) * 4};
}

/// The indices of one row of an 8-bit picture.
inline std::span<std::uint8_t> MapBytes(cDIB& picture, std::int32_t row) {
    const std::size_t start =
        static_cast<std::size_t>(row) * static_cast<std::size_t>(picture.BytesPerScanline());
    return {picture.lpBits() + start, static_cast<std::size_t>(picture.Width())};
}

} // namespace varnoth
