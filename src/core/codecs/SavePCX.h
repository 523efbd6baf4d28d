// Writes what a picture area shows as a PCX file (ZSoft, version 5): three planes of 8 bits, plain or
// run-length encoded. It writes no palette, however few colours there are.
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
    /// `Compress` is True or False. With any other value the header is that of a plain file, and behind it
    /// stands what the object packed last, if anything. An old file of the name is replaced without a
    /// question. Fails with SubscriptOutOfRange for a picture without pixels and Overflow for a width above
    /// 32766 or a height above 32767, both before the old file is touched; PermissionDenied and the like when
    /// the file cannot be deleted or written. The surface and its container keep their scale modes.
    void SavePCXinFile(const std::string& filename, PictureSurface& ThePicture, Truth Compress);

    /// From rows of blue, green, red pixels to a red, a green and a blue line of `bytesPerLine` bytes each
    /// row. `rows` holds height * width pixels and width is at most bytesPerLine.
    static ByteArray SplitPlanes(std::span<const std::uint8_t> rows, std::int32_t width, std::int32_t height,
                                 std::int32_t bytesPerLine);

    /// Runs of up to 63 equal bytes become 192 + length and the byte, as does a single byte from 192 on. The
    /// bytes are one stream: runs go over line ends. `bytesPerLine` only counts for the room taken at first;
    /// DivisionByZero when it is 0, Overflow from about 1 GiB on.
    static ByteArray EncodeRle(std::span<const std::uint8_t> bytes, std::int32_t bytesPerLine);

  private:
    void WritePcxFile(const std::string& filename, std::span<const std::uint8_t> rows);

    std::int32_t height_ = 0;
    std::int32_t width_ = 0;
    ByteArray packed_; // by the last call with Compress True
    Truth compress_ = False;
    std::int32_t even_width_ = 0;
};

} // namespace varnoth
