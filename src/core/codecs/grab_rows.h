// Shared by the PCX and TGA writers: the size of a surface in pixels and its visible content as 24-bit rows.
#pragma once

#include <cstdint>

#include "core/base/ByteArray.h"
#include "core/image/PictureSurface.h"

namespace varnoth {

/// A width and a height in pixels.
struct PixelSize {
    std::int32_t width = 0;
    std::int32_t height = 0;
};

/// The inner size in pixels. The scale modes of the surface and its container are changed and restored.
PixelSize size_in_pixels(PictureSurface& picture);

/// Bytes of a 24-bit row, rounded up to a multiple of 4. Overflow beyond 32 bits.
std::int32_t stride_of_24_bits(std::int32_t width);

/// Which row of the picture comes first in the array.
enum class FirstRow { Top, Bottom };

/// The top left `size` of the picture as rows of blue, green, red, padded with zeros to stride_of_24_bits().
/// SubscriptOutOfRange for a picture without pixels, Overflow from 2 GiB on.
ByteArray grab_rows(PictureSurface& picture, const PixelSize& size, FirstRow first);

} // namespace varnoth
