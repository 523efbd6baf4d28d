// Writes what a picture area shows as a Truevision TGA file: 24 bits, bottom row first, plain or run-length
// encoded. The encoder loses pixels and breaks the format's limits in ways that are part of it; see
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
    /// `Compress` is True or False. An old file of the name is replaced without a question. Fails with
    /// SubscriptOutOfRange for a picture without pixels and Overflow for a side above 32767, both before the
    /// old file is touched; with Overflow from EncodeRle after it has been deleted; PermissionDenied and the
    /// like when the file cannot be deleted or written. The surface and its container keep their scale modes.
    void SaveTGAinFile(const std::string& filename, PictureSurface& ThePicture, Truth Compress);

    /// Run-length packets of pixels of 3 bytes, `width` pixels a row; a run holds at most 128 pixels. A
    /// decoder is sure to get the picture back only where every row closes with 2 or more equal pixels, not
    /// one more than a multiple of 128, and no more than 128 pixels in turn differ from their next. For:
    /// - the last pixel of a row belongs neither to a raw packet that ends there nor to a full run of 128
    ///   before it. It is left out of the stream when the next row, or the zeros behind the picture, begin
    ///   with its equal;
    /// - otherwise it begins a raw packet that goes on into the next row; when that packet holds more than
    ///   this pixel, no row end is seen from there on;
    /// - raw packets know no limit: 129 to 256 pixels get the length byte of a run, more are an Overflow;
    /// - a run may take in the one zero pixel behind the picture.
    /// The result is empty when everything is left out, as in a black picture one pixel wide. DivisionByZero
    /// for a width of 0, Overflow from about 1 GiB on.
    static ByteArray EncodeRle(std::span<const std::uint8_t> bytes, std::int32_t width);

  private:
    void WriteTgaFile(const std::string& filename, std::span<const std::uint8_t> rows) const;

    Truth compress_ = False;
    std::int32_t height_ = 0;
    std::int32_t width_ = 0;
};

} // namespace varnoth
