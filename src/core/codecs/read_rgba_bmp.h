// BMP files with their alpha channel.
#pragma once

#include <cstdint>
#include <span>

#include "core/image/RgbaPicture.h"

namespace varnoth {

/// Decodes a BMP file with read_bmp(), and its alpha channel if the header has a mask for it. In addition to
/// the variants of read_bmp(), headers of 52 and 56 bytes, and BI_ALPHABITFIELDS. Pixels missing from a
/// truncated file are transparent if the file has alpha, otherwise black. Fails as read_bmp() does.
RgbaPicture read_rgba_bmp(std::span<const std::uint8_t> file, std::int64_t max_pixels);

} // namespace varnoth
