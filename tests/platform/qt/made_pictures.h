// Picture files for the loader's tests: BMP files composed byte by byte where no tool writes them, and the
// loader's answer in the shape in which the foreign tools give theirs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/bytes.h"
#include "platform/Picture.h"
#include "platform/qt/QtPictureLoader.h"
#include "support/foreign_tools.h"

namespace varnoth::test {

using Bytes = std::vector<std::uint8_t>;

/// The parts of a BMP file with the 40-byte header, put together by file().
struct MadeBmp {
    std::int32_t width = 0;
    std::int32_t height = 0; ///< negative for top-down
    std::uint16_t bits = 0;
    std::uint32_t compression = 0;
    Bytes between; ///< masks or colour table
    Bytes data;

    Bytes file() const {
        const std::size_t offset = 54 + between.size();
        Bytes bytes(offset);
        bytes[0] = 'B';
        bytes[1] = 'M';
        put_u32(bytes, 2, static_cast<std::uint32_t>(offset + data.size()));
        put_u32(bytes, 10, static_cast<std::uint32_t>(offset));
        put_u32(bytes, 14, 40);
        put_i32(bytes, 18, width);
        put_i32(bytes, 22, height);
        put_u16(bytes, 26, 1);
        put_u16(bytes, 28, bits);
        put_u32(bytes, 30, compression);
        put_u32(bytes, 34, static_cast<std::uint32_t>(data.size()));
        put_u32(bytes, 46, bits <= 8 ? static_cast<std::uint32_t>(between.size() / 4) : 0);
        std::copy(between.begin(), between.end(), bytes.begin() + 54);
        bytes.insert(bytes.end(), data.begin(), data.end());
        return bytes;
    }
};

/// Numbers of 32 bits as bytes: masks and colour-table entries (0x00RRGGBB).
inline Bytes dwords(const std::vector<std::uint32_t>& values) {
    Bytes bytes(values.size() * 4);
    for (std::size_t i = 0; i < values.size(); ++i) {
        put_u32(bytes, i * 4, values[i]);
    }
    return bytes;
}

/// Colour tables whose first entry is not black, so that index 0 shows.
inline Bytes striking_table(std::size_t entries) {
    std::vector<std::uint32_t> table;
    for (std::size_t i = 0; i < entries; ++i) {
        table.push_back(static_cast<std::uint32_t>(0xFFC080U - i * 0x070503U));
    }
    return dwords(table);
}

/// What the loader makes of a file. The picture must be one of 32 bits whose fourth bytes are all 0.
inline ForeignPicture load(const std::string& path) {
    QtPictureLoader loader;
    const Picture picture = loader.load(path);
    if (picture.kind != PictureKind::Bitmap || picture.bitmap->bits_per_pixel() != 32 ||
        picture.bitmap->rows() != Bitmap::Rows::Surface) {
        throw std::runtime_error("the loader's picture is not a 32-bit bitmap with the top row first");
    }
    const Bitmap& bitmap = *picture.bitmap;
    ForeignPicture result{bitmap.width(), bitmap.height(), {}};
    for (std::size_t at = 0; at < bitmap.bytes().size(); at += 4) {
        const std::uint32_t pixel = get_u32(bitmap.bytes(), at);
        if (pixel > 0xFFFFFF) {
            throw std::runtime_error("a pixel's fourth byte is not 0");
        }
        result.colours.push_back(
            make_colour(bitmap.bytes()[at + 2], bitmap.bytes()[at + 1], bitmap.bytes()[at]));
    }
    return result;
}

} // namespace varnoth::test
