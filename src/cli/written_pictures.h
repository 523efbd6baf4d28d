// Pictures as the bytes of files.
#pragma once

#include <cstdint>
#include <vector>

#include "core/image/IndexedPicture.h"
#include "core/image/RgbaPicture.h"

namespace varnoth::cli {

enum class PictureFormat { Png, Bmp, Tga, Pcx, Gif };

/// The indices and colours as they are, opaque; in every format 8 bits per pixel and 256 colours. Overflow
/// for a picture that is too large for the format.
std::vector<std::uint8_t> encode(const IndexedPicture& picture, PictureFormat format);

/// With alpha, 32 bits per pixel: PNG or TGA. Overflow for a picture that is too large for the format.
std::vector<std::uint8_t> encode(const RgbaPicture& picture, PictureFormat format);

/// The pixels of an indexed picture.
RgbaPicture with_colours(const IndexedPicture& picture);

} // namespace varnoth::cli
