// Helpers for tests of the picture readers: building files from bytes, and the decoded picture as colours.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <numeric>
#include <span>
#include <vector>

#include "core/base/ByteArray.h"
#include "core/base/Truth.h"
#include "core/codecs/CBitmap.h"
#include "core/image/Bitmap.h"

namespace varnoth::test {

using Bytes = std::vector<std::uint8_t>;

inline Bytes joined(std::initializer_list<Bytes> pieces) {
    Bytes all;
    for (const Bytes& piece : pieces) {
        all.insert(all.end(), piece.begin(), piece.end());
    }
    return all;
}

template <typename Header>
Bytes bytes_of(const Header& header) {
    const auto bytes = header.to_bytes();
    return {bytes.begin(), bytes.end()};
}

inline Bytes bytes_of(const ByteArray& array) {
    return {array.bytes().begin(), array.bytes().end()};
}

/// 1, 2, 3 and so on.
inline Bytes counting(std::size_t count) {
    Bytes bytes(count);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{1});
    return bytes;
}

/// The answer of a probe and the values that it reports.
struct Info {
    Truth answer = 77;
    std::int32_t width = 77;
    std::int32_t height = 77;
    std::int16_t bpp = 77;

    friend bool operator==(const Info&, const Info&) = default;
};

/// The colours of the last decoded picture, rows from the top; empty if there is none.
inline std::vector<Colour> decoded_colours() {
    std::vector<Colour> colours;
    if (const auto picture = CBitmap::CurrentBitmap) {
        for (std::int32_t y = 0; y < picture->height(); ++y) {
            for (std::int32_t x = 0; x < picture->width(); ++x) {
                colours.push_back(picture->pixel(x, y));
            }
        }
    }
    return colours;
}

/// Makes a picture of one pixel current, so that a test can see whether it was replaced.
inline std::shared_ptr<const Bitmap> put_old_picture() {
    const Bytes pixel{9, 8, 7, 0};
    CBitmap::CreateBitmap32(pixel, 1, 1, 0);
    return CBitmap::CurrentBitmap;
}

} // namespace varnoth::test
