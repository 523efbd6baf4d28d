// The two records at the start of a Windows bitmap file, in the public BMP layout: 14 and 40 bytes,
// little-endian.
#pragma once

#include <array>
#include <cstdint>

namespace varnoth {

/// The first 14 bytes: the letters "BM", the file's length and where the pixels begin.
struct BITMAPFILEHEADER {
    std::array<std::uint8_t, 2> bfType{};
    std::int32_t bfSize = 0;
    std::int16_t bfReserved1 = 0;
    std::int16_t bfReserved2 = 0;
    std::int32_t bfOffBits = 0;
};

/// The 40 bytes behind them: size, depth and compression of the picture. A negative height tells that the top
/// row comes first.
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

static_assert(sizeof(BITMAPINFOHEADER) == 40);

} // namespace varnoth
