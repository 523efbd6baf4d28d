// The PCX writer: writes the visible content of a surface as a PCX file (ZSoft, version 5) of three 8-bit
// planes, plain or run-length encoded. It never writes a palette.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "core/base/ByteArray.h"
#include "core/base/Truth.h"
#include "core/image/PictureSurface.h"

namespace varnoth {

class SavePCX {
  public:
    /// Replaces an existing file without asking. `Compress` is True or False; with any other value the header
    /// is that of a plain file, followed by what the object compressed last, if anything. Fails with
    /// SubscriptOutOfRange for a picture without pixels and Overflow for a width above 32766 or a height
    /// above 32767, both before the old file is deleted, and with the failures of files when the file cannot
    /// be deleted or written. The surface and its container keep their scale modes.
    void SavePCXinFile(const std::string& filename, PictureSurface& ThePicture, Truth Compress);

    /// Splits each row of blue, green, red pixels into a red, a green and a blue line of `bytesPerLine`
    /// bytes. `rows` holds height * width pixels; width is at most bytesPerLine.
    static ByteArray SplitPlanes(std::span<const std::uint8_t> rows, std::int32_t width, std::int32_t height,
                                 std::int32_t bytesPerLine);

    /// Encodes a run of up to 63 equal bytes, or a single byte from 192 on, as 192 + length and the byte.
    /// Runs cross line ends. `bytesPerLine` only affects the buffer size; DivisionByZero when it is 0,
    /// Overflow from about 1 GiB on.
    static ByteArray EncodeRle(std::span<const std::uint8_t> bytes, std::int32_t bytesPerLine);

  private:
    void WritePcxFile(const std::string& filename, std::span<const std::uint8_t> rows);

    std::int32_t height_ = 0;
    std::int32_t width_ = 0;
    ByteArray packed_; // of the last call with Compress True
    Truth compress_ = False;
    std::int32_t even_width_ = 0;
};

} // namespace varnoth
