// Looks at the first 54 bytes of a file and says whether they are a plain Windows bitmap, of what size and
// depth. Decodes nothing.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "base/Truth.h"

namespace varnoth::BmpMod {

/// The two records at the start of a bitmap file, in the public layout.
struct BITMAPFILEHEADER {
    std::array<std::uint8_t, 2> bfType{};
    std::int32_t bfSize = 0;
    std::int16_t bfReserved1 = 0;
    std::int16_t bfReserved2 = 0;
    std::int32_t bfOffBits = 0;
};

struct BITMAPINFOHEADER {
    std::int32_t biSize = 0;
    std::int32_t biWidth = 0;
    std::int32_t biHeight = 0;
    std::int16_t biPlanes = 0;
    std::int16_t biBitCount = 0;
    std::uint32_t biCompression = 0;
    std::int32_t biSizeImage = 0;
    std::int32_t biXPelsPerMeter = 0;
    std::int32_t biYPelsPerMeter = 0;
    std::int32_t biClrUsed = 0;
    std::int32_t biClrImportant = 0;
};

/// The records of the last file that had them whole; kept between calls.
extern BITMAPFILEHEADER FileHeader;
extern BITMAPINFOHEADER InfoHeader;

/// True, with the four results set, for a bottom-up bitmap with a 40-byte information header. False
/// otherwise, also for a file of fewer than 54 bytes, and all four results are -1. Depth and compression are
/// told, not judged. The file's failures when it cannot be opened; Overflow for a compression above 32767,
/// after the three other results are set.
Truth ProbeBmp(const std::string& fileName, std::int32_t& width, std::int32_t& height, std::int16_t& bitCount,
               std::int16_t& compression);

} // namespace varnoth::BmpMod
