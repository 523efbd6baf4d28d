// Helpers to create and inspect cDIBs as colours.
#pragma once

#include <algorithm>
#include <cstdint>

#include <gtest/gtest.h>

#include "core/image/cDIB.h"
#include "support/TemporaryFolder.h"
#include "support/lists.h"

namespace varnoth::test {

/// Makes the DIB a 32-bit picture of these pixels, rows from the visible top.
inline void fill_dib(cDIB& dib, std::int32_t width, std::int32_t height, const Colours& colours) {
    dib.Create(width, height, 32);
    for (std::int32_t y = 0; y < height; ++y) {
        for (std::int32_t x = 0; x < width; ++x) {
            dib.hDIBDC()->bitmap()->set_pixel(x, y, colours.at(static_cast<std::size_t>(y * width + x)));
        }
    }
}

/// The colours of a DIB, rows from the visible top.
inline Colours colours_of(const cDIB& dib) {
    Colours colours;
    for (std::int32_t y = 0; y < dib.Height(); ++y) {
        for (std::int32_t x = 0; x < dib.Width(); ++x) {
            colours.push_back(dib.hDIB()->pixel(x, y));
        }
    }
    return colours;
}

/// The bytes of a DIB in buffer order.
inline Bytes bytes_of(const cDIB& dib) {
    return {dib.lpBits(), dib.lpBits() + dib.Size()};
}

/// The colour table of a DIB in buffer order; empty without one.
inline Bytes palette_of(const cDIB& dib) {
    Bytes palette;
    dib.GetPalette(palette);
    return palette;
}

/// A picture of a given depth. Entry i of its colour table, if any, is (i, 2 i, 3 i) in blue, green, red.
inline Picture indexed_picture(std::int32_t width, std::int32_t height, std::int32_t bits,
                               const Bytes& pixels) {
    Bitmap bitmap(width, height, bits, Bitmap::Rows::Surface);
    for (std::size_t i = 0; i < bitmap.colour_table().size(); ++i) {
        bitmap.colour_table()[i] = {static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(2 * i),
                                    static_cast<std::uint8_t>(3 * i), 0};
    }
    std::ranges::copy(pixels, bitmap.bytes().begin());
    return make_picture(std::move(bitmap));
}

/// An empty DIB, and a folder for its files.
class CDib : public testing::Test {
  protected:
    cDIB dib;
    TemporaryFolder folder;
};

/// Expects the DIB to hold no picture.
inline void expect_empty(cDIB& dib) {
    EXPECT_EQ(dib.hDIB(), nullptr);
    EXPECT_EQ(dib.hDIBDC(), nullptr);
    EXPECT_EQ(dib.lpBits(), nullptr);
    EXPECT_EQ(dib.Width(), 0);
    EXPECT_EQ(dib.Height(), 0);
    EXPECT_EQ(dib.Bpp(), 0);
    EXPECT_EQ(dib.BytesPerScanline(), 0);
    EXPECT_EQ(dib.Size(), 0);
}

} // namespace varnoth::test
