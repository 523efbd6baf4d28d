// The kind of BMP file that nearly all pictures are: 24 bits a pixel, not compressed, whole. It is unpacked
// here straight from the file; every other kind is left to Qt, which takes ten times as long.
#pragma once

#include <optional>

#include "base/files.h"
#include "platform/Bitmap.h"

namespace varnoth {

/// The picture as Qt reads it: 32 bits a pixel, top row first. Nothing, and the file at any position, when
/// the file is of another kind (BITMAPINFOHEADER, BI_RGB with 24 bits is the one taken), when it does not
/// bring all of its pixels, and for more than QtPictureLoader::most_pixels.
std::optional<Bitmap> read_plain_bmp(InputFile& file);

} // namespace varnoth
