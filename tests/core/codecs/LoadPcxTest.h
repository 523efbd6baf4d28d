// Helpers for the LoadPCX tests: headers, parts of files, and a fixture with a reader and a temporary folder.
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "support/readers.h"

namespace varnoth::test::pcx {

inline PcxHeader header_of(int bits, int planes, int bytes_per_line, int width, int height) {
    PcxHeader header;
    header.Manufacturer = 10;
    header.Version = 5;
    header.BitsPerPixel = static_cast<std::uint8_t>(bits);
    header.NPlanes = static_cast<std::uint8_t>(planes);
    header.BytesPerLine = static_cast<std::int16_t>(bytes_per_line);
    header.XMax = static_cast<std::int16_t>(width - 1);
    header.YMax = static_cast<std::int16_t>(height - 1);
    return header;
}

inline PcxHeader compressed(PcxHeader header) {
    header.Encoding = 1;
    return header;
}

/// A colour map whose entry i is (i, 2i, 3i).
inline PcxHeader with_map(PcxHeader header) {
    for (std::size_t i = 0; i < 48; ++i) {
        header.ColorMap[i] = static_cast<std::uint8_t>(i / 3 * (i % 3 + 1));
    }
    return header;
}

inline Colour map_colour(int i) {
    return make_colour(static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(2 * i),
                       static_cast<std::uint8_t>(3 * i));
}

inline Colours map_colours(const std::vector<int>& entries) {
    Colours colours;
    std::ranges::transform(entries, std::back_inserter(colours), map_colour);
    return colours;
}

inline Colour grey(int value) {
    return value * 0x010101;
}

/// The marker and a palette whose entry i is (255 - i, i, 7).
inline Bytes palette_trailer() {
    Bytes bytes{12};
    for (int i = 0; i < 256; ++i) {
        bytes.insert(bytes.end(), {static_cast<std::uint8_t>(255 - i), static_cast<std::uint8_t>(i), 7});
    }
    return bytes;
}

class LoadPcx : public ReaderTest<LoadPCX, PcxHeader> {};

} // namespace varnoth::test::pcx
