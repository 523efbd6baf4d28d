// Helpers for tests of the picture readers: building files from bytes, and the decoded picture as colours.
#pragma once

#include <cstdint>
#include <memory>

#include "core/base/ByteArray.h"
#include "core/codecs/CBitmap.h"
#include "core/image/Bitmap.h"
#include "support/lists.h"

namespace varnoth::test {

template <typename Header>
Bytes bytes_of(const Header& header) {
    const auto bytes = header.to_bytes();
    return {bytes.begin(), bytes.end()};
}

inline Bytes bytes_of(const ByteArray& array) {
    return {array.bytes().begin(), array.bytes().end()};
}

/// The colours of the last decoded picture, rows from the top; empty if there is none.
inline Colours decoded_colours() {
    Colours colours;
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
