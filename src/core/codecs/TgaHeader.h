// The 18-byte header of a TGA file. All numbers in the file are little-endian; fields are not aligned.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "core/base/bytes.h"

namespace varnoth {

struct TgaHeader {
    static constexpr std::size_t size = 18;

    std::uint8_t IDLength = 0; ///< of the ID field after the header, which the reader does not skip
    std::uint8_t ColorMapType = 0;
    std::uint8_t ImageType = 0; ///< 9, 10 and 11 are the run-length forms of 1, 2 and 3
    std::int16_t ColorMapStart = 0;
    std::int16_t ColorMapLength = 0; ///< in entries
    std::uint8_t ColorMapDepth = 0;  ///< bits per entry
    std::int16_t XOrigin = 0;        ///< subtracted from the width
    std::int16_t YOrigin = 0;        ///< subtracted from the height
    std::int16_t ImageWidth = 0;
    std::int16_t ImageHeight = 0;
    std::uint8_t PixelDepth = 0;      ///< bits: 8, 16, 24 or 32
    std::uint8_t ImageDescriptor = 0; ///< bit 5 set: the first row is the top row

    /// Reads the record from its file layout.
    static TgaHeader from_bytes(std::span<const std::uint8_t, size> bytes) {
        TgaHeader header;
        header.IDLength = bytes[0];
        header.ColorMapType = bytes[1];
        header.ImageType = bytes[2];
        header.ColorMapStart = get_i16(bytes, 3);
        header.ColorMapLength = get_i16(bytes, 5);
        header.ColorMapDepth = bytes[7];
        header.XOrigin = get_i16(bytes, 8);
        header.YOrigin = get_i16(bytes, 10);
        header.ImageWidth = get_i16(bytes, 12);
        header.ImageHeight = get_i16(bytes, 14);
        header.PixelDepth = bytes[16];
        header.ImageDescriptor = bytes[17];
        return header;
    }

    std::array<std::uint8_t, size> to_bytes() const {
        std::array<std::uint8_t, size> bytes{};
        bytes[0] = IDLength;
        bytes[1] = ColorMapType;
        bytes[2] = ImageType;
        put_i16(bytes, 3, ColorMapStart);
        put_i16(bytes, 5, ColorMapLength);
        bytes[7] = ColorMapDepth;
        put_i16(bytes, 8, XOrigin);
        put_i16(bytes, 10, YOrigin);
        put_i16(bytes, 12, ImageWidth);
        put_i16(bytes, 14, ImageHeight);
        bytes[16] = PixelDepth;
        bytes[17] = ImageDescriptor;
        return bytes;
    }

    friend bool operator==(const TgaHeader&, const TgaHeader&) = default;
};

} // namespace varnoth
