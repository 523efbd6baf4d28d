// The 128-byte header of a PCX file. All numbers in the file are little-endian.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "core/base/bytes.h"

namespace varnoth {

struct PcxHeader {
    static constexpr std::size_t size = 128;

    std::uint8_t Manufacturer = 0; ///< 10
    std::uint8_t Version = 0;      ///< 0, 2, 3 or 5
    std::uint8_t Encoding = 0;     ///< 0 plain, 1 run-length
    std::uint8_t BitsPerPixel = 0; ///< per pixel and plane
    std::int16_t XMin = 0;         ///< the picture is XMax - XMin + 1 pixels wide
    std::int16_t YMin = 0;
    std::int16_t XMax = 0;
    std::int16_t YMax = 0;
    std::int16_t HDpi = 0;
    std::int16_t VDpi = 0;
    std::array<std::uint8_t, 48> ColorMap{}; ///< 16 triples of red, green, blue
    std::uint8_t Reserved = 0;
    std::uint8_t NPlanes = 0;      ///< 1, 3 and 4 are decoded
    std::int16_t BytesPerLine = 0; ///< of one line of one plane
    std::array<std::uint8_t, 60> Filler{};

    /// Reads the record from its file layout.
    static PcxHeader from_bytes(std::span<const std::uint8_t, size> bytes) {
        PcxHeader header;
        header.Manufacturer = bytes[0];
        header.Version = bytes[1];
        header.Encoding = bytes[2];
        header.BitsPerPixel = bytes[3];
        header.XMin = get_i16(bytes, 4);
        header.YMin = get_i16(bytes, 6);
        header.XMax = get_i16(bytes, 8);
        header.YMax = get_i16(bytes, 10);
        header.HDpi = get_i16(bytes, 12);
        header.VDpi = get_i16(bytes, 14);
        std::ranges::copy(bytes.subspan<16, 48>(), header.ColorMap.begin());
        header.Reserved = bytes[64];
        header.NPlanes = bytes[65];
        header.BytesPerLine = get_i16(bytes, 66);
        std::ranges::copy(bytes.subspan<68, 60>(), header.Filler.begin());
        return header;
    }

    std::array<std::uint8_t, size> to_bytes() const {
        std::array<std::uint8_t, size> bytes{};
        bytes[0] = Manufacturer;
        bytes[1] = Version;
        bytes[2] = Encoding;
        bytes[3] = BitsPerPixel;
        put_i16(bytes, 4, XMin);
        put_i16(bytes, 6, YMin);
        put_i16(bytes, 8, XMax);
        put_i16(bytes, 10, YMax);
        put_i16(bytes, 12, HDpi);
        put_i16(bytes, 14, VDpi);
        std::ranges::copy(ColorMap, bytes.begin() + 16);
        bytes[64] = Reserved;
        bytes[65] = NPlanes;
        put_i16(bytes, 66, BytesPerLine);
        std::ranges::copy(Filler, bytes.begin() + 68);
        return bytes;
    }

    friend bool operator==(const PcxHeader&, const PcxHeader&) = default;
};

} // namespace varnoth
