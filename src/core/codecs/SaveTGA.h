// The TGA writer: writes the visible content of a surface as a TGA file of 24 bits, bottom row first, plain
// or run-length encoded. The encoder loses pixels and exceeds the format's limits in defined ways; see
// EncodeRle.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "core/base/ByteArray.h"
#include "core/base/Truth.h"
#include "core/image/PictureSurface.h"

namespace varnoth {

class SaveTGA {
  public:
    /// Replaces an existing file without asking. `Compress` is True or False. Fails with SubscriptOutOfRange
    /// for a picture without pixels and Overflow for a side above 32767, both before the old file is deleted;
    /// with Overflow from EncodeRle after that; and with the failures of files when the file cannot be
    /// deleted or written. The surface and its container keep their scale modes.
    void SaveTGAinFile(const std::string& filename, PictureSurface& ThePicture, Truth Compress);

    /// Encodes 3-byte pixels, `width` to a row, as run-length packets; a run has at most 128 pixels. Decoding
    /// is only sure to restore the picture when every row ends in 2 or more equal pixels, not one more than a
    /// multiple of 128, and no more than 128 pixels in a row differ from their successor. The reasons:
    /// - The last pixel of a row belongs neither to a raw packet that ends there nor to a full run of 128
    ///   before it. It is omitted when the next row, or the zero pixel after the picture, begins with an
    ///   equal pixel.
    /// - Otherwise it begins a raw packet that continues into the next row. If that packet has more than one
    ///   pixel, no further row end is detected.
    /// - Raw packets are not limited: 129 to 256 pixels get the length byte of a run, more are an Overflow.
    /// - A run may include the zero pixel after the picture.
    /// The result is empty when everything is omitted, as for a black picture one pixel wide. DivisionByZero
    /// for a width of 0, Overflow from about 1 GiB on.
    static ByteArray EncodeRle(std::span<const std::uint8_t> bytes, std::int32_t width);

  private:
    void WriteTgaFile(const std::string& filename, std::span<const std::uint8_t> rows) const;

    Truth compress_ = False;
    std::int32_t height_ = 0;
    std::int32_t width_ = 0;
};

} // namespace varnoth
