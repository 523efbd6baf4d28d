// The picture loader: BMP files by the reader of our own, JPEG files, baseline and progressive, by Qt's. It
// never rotates a picture, never blends with its alpha channel and never looks at a file's ending.
#pragma once

#include <cstdint>
#include <string>

#include "core/image/Picture.h"
#include "core/services/Services.h"

namespace varnoth {

class QtPictureLoader : public PictureLoader {
  public:
    /// A picture of more pixels than this is OutOfMemory: 256 MiB as a picture of 32 bits.
    static constexpr std::int64_t most_pixels = std::int64_t{64} * 1024 * 1024;

    /// A 32-bit picture, top row first, of the file's own size. Its pixels depend on the file alone: those
    /// that a truncated BMP file lacks are black, those that a truncated JPEG file lacks are made up by the
    /// JPEG library. The failures of InputFile when the file cannot be read; InvalidPicture when its content
    /// is neither BMP nor JPEG or does not decode.
    Picture load(const std::string& path) override;
};

} // namespace varnoth
