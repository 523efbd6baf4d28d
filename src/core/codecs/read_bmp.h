// The BMP reader: bytes in, picture out. It opens no file.
#pragma once

#include <cstdint>
#include <span>

#include "core/image/Bitmap.h"

namespace varnoth {

/// Decodes a BMP file to 32 bits per pixel, top row first, every fourth byte 0. Pixels missing from a
/// truncated file are black. InvalidPicture when the bytes are not a supported BMP file or end before the
/// pixels; OutOfMemory for more than `max_pixels` pixels.
Bitmap read_bmp(std::span<const std::uint8_t> file, std::int64_t max_pixels);

} // namespace varnoth
