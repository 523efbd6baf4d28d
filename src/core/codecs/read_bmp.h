// The reader of BMP files: bytes in, picture out. It opens no file.
#pragma once

#include <cstdint>
#include <span>

#include "core/image/Bitmap.h"

namespace varnoth {

/// A bitmap of 32 bits a pixel, top row first, whose fourth bytes are 0. Pixels that a truncated file lacks
/// are black. InvalidPicture when the bytes are no BMP file of a supported variant or end before the pixels
/// begin, OutOfMemory for more than `most_pixels` pixels.
Bitmap read_bmp(std::span<const std::uint8_t> file, std::int64_t most_pixels);

} // namespace varnoth
