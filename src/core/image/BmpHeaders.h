// The two headers of a BMP file, 14 and 40 bytes, little-endian.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "core/base/bytes.h"

namespace varnoth {

/// The first 14 bytes: the letters "BM", the file's length and the offset of the pixels.
struct BITMAPFILEHEADER {
    static constexpr std::size_t size = 14;

    std::array<std::uint8_t, 2> bfType{};
    std::int32_t bfSize = 0;
    std::int16_t bfReserved1 = 0;
    std::int16_t bfReserved2 = 0;
    std::int32_t bfOffBits = 0;

    bool is_bmp() const { return bfType == std::array<std::uint8_t, 2>{'B', 'M'}; }

    /// Decodes the little-endian fields.
    static BITMAPFILEHEADER from_bytes(std::span<const std::uint8_t, size> bytes) {
        return {{bytes[0], bytes[1]},
                get_i32(bytes, 2),
                get_i16(bytes, 6),
                get_i16(bytes, 8),
                get_i32(bytes, 10)};
    }

    std::array<std::uint8_t, size> to_bytes() const {
        std::array<std::uint8_t, size> bytes{bfType[0], bfType[1]};
        put_i32(bytes, 2, bfSize);
        put_i16(bytes, 6, bfReserved1);
        put_i16(bytes, 8, bfReserved2);
        put_i32(bytes, 10, bfOffBits);
        return bytes;
    }

    friend bool operator==(const BITMAPFILEHEADER&, const BITMAPFILEHEADER&) = default;
};

/// The next 40 bytes: size, depth and compression of the picture. A negative height means top row first.
struct BITMAPINFOHEADER {
    static constexpr std::size_t size = 40;

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

    /// Decodes the little-endian fields.
    static BITMAPINFOHEADER from_bytes(std::span<const std::uint8_t, size> bytes) {
        return {get_i32(bytes, 0),  get_i32(bytes, 4),  get_i32(bytes, 8),  get_i16(bytes, 12),
                get_i16(bytes, 14), get_u32(bytes, 16), get_i32(bytes, 20), get_i32(bytes, 24),
                get_i32(bytes, 28), get_i32(bytes, 32), get_i32(bytes, 36)};
    }

    std::array<std::uint8_t, size> to_bytes() const {
        std::array<std::uint8_t, size> bytes{};
        put_i32(bytes, 0, biSize);
        put_i32(bytes, 4, biWidth);
        put_i32(bytes, 8, biHeight);
        put_i16(bytes, 12, biPlanes);
        put_i16(bytes, 14, biBitCount);
        put_u32(bytes, 16, biCompression);
        put_i32(bytes, 20, biSizeImage);
        put_i32(bytes, 24, biXPelsPerMeter);
        put_i32(bytes, 28, biYPelsPerMeter);
        put_i32(bytes, 32, biClrUsed);
        put_i32(bytes, 36, biClrImportant);
        return bytes;
    }

    friend bool operator==(const BITMAPINFOHEADER&, const BITMAPINFOHEADER&) = default;
};

static_assert(sizeof(BITMAPINFOHEADER) == BITMAPINFOHEADER::size);

} // namespace varnoth
