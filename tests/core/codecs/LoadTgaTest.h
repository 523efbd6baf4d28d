// Helpers for the LoadTGA tests: headers, parts of files, and a fixture with a reader and a temporary folder.
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "support/readers.h"

namespace varnoth::test::tga {

/// Top row first, so that pixels are drawn in file order.
inline TgaHeader header_of(int type, int depth, int width, int height) {
    TgaHeader header;
    header.ImageType = static_cast<std::uint8_t>(type);
    header.PixelDepth = static_cast<std::uint8_t>(depth);
    header.ImageWidth = static_cast<std::int16_t>(width);
    header.ImageHeight = static_cast<std::int16_t>(height);
    header.ImageDescriptor = 32;
    return header;
}

inline TgaHeader with_map(TgaHeader header, int entries, int depth) {
    header.ColorMapType = 1;
    header.ColorMapLength = static_cast<std::int16_t>(entries);
    header.ColorMapDepth = static_cast<std::uint8_t>(depth);
    return header;
}

inline TgaHeader with_origin(TgaHeader header, int x, int y) {
    header.XOrigin = static_cast<std::int16_t>(x);
    header.YOrigin = static_cast<std::int16_t>(y);
    return header;
}

/// Entries of blue i, green 2i, red 3i, modulo 256.
inline Bytes map24(int entries) {
    Bytes bytes;
    for (int i = 0; i < entries; ++i) {
        for (const int factor : {1, 2, 3}) {
            bytes.push_back(static_cast<std::uint8_t>(factor * i));
        }
    }
    return bytes;
}

inline Colour map_colour(int i) {
    return make_colour(static_cast<std::uint8_t>(3 * i), static_cast<std::uint8_t>(2 * i),
                       static_cast<std::uint8_t>(i));
}

inline Colours map_colours(const std::vector<int>& entries) {
    Colours colours;
    std::ranges::transform(entries, std::back_inserter(colours), map_colour);
    return colours;
}

/// The whole array, including the zeros that are not stored.
inline Bytes whole(const LoadTGA::Expansion& expansion) {
    Bytes bytes = bytes_of(expansion.held);
    EXPECT_LE(static_cast<std::int64_t>(bytes.size()), expansion.length);
    bytes.resize(static_cast<std::size_t>(expansion.length));
    return bytes;
}

class LoadTga : public ReaderTest<LoadTGA, TgaHeader> {
  protected:
    /// Makes the object read a 24-bit map, from an 8-bit picture of one pixel.
    void read_map24(int entries) { load(with_map(header_of(1, 8, 1, 1), entries, 24), map24(entries)); }
};

} // namespace varnoth::test::tga
