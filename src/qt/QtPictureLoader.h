// The picture loader: BMP files through read_bmp, baseline and progressive JPEG files through Qt. It ignores
// EXIF orientation, alpha channels and file extensions.
#pragma once

#include <cstdint>
#include <string>

#include "core/image/Picture.h"
#include "core/services/Services.h"

namespace varnoth {

class QtPictureLoader : public PictureLoader {
  public:
    /// Larger pictures raise OutOfMemory. At 32 bits per pixel this is 256 MiB.
    static constexpr std::int64_t max_pixels = std::int64_t{64} * 1024 * 1024;

    /// Returns a 32-bit picture of the file's size, top row first. Its pixels depend only on the file: those
    /// missing from a truncated BMP file are black, those missing from a truncated JPEG file are what the
    /// JPEG library fills in. Raises InputFile's failures when the file cannot be read, InvalidPicture when
    /// it is neither BMP nor JPEG or does not decode.
    Picture load(const std::string& path) override;
};

} // namespace varnoth
