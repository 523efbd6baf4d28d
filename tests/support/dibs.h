// cDIBs for tests, written as colours.
#pragma once

#include <cstdint>
#include <vector>

#include "pictures/cDIB.h"

namespace varnoth::test {

/// Makes the DIB a 32-bit picture of these pixels, rows from the top as seen.
inline void fill_dib(cDIB& dib, std::int32_t width, std::int32_t height, const std::vector<Colour>& colours) {
    dib.Create(width, height, 32);
    for (std::int32_t y = 0; y < height; ++y) {
        for (std::int32_t x = 0; x < width; ++x) {
            dib.hDIBDC()->bitmap()->set_pixel(x, y, colours.at(static_cast<std::size_t>(y * width + x)));
        }
    }
}

/// The colours of a DIB, rows from the top as seen.
inline std::vector<Colour> colours_of(const cDIB& dib) {
    std::vector<Colour> colours;
    for (std::int32_t y = 0; y < dib.Height(); ++y) {
        for (std::int32_t x = 0; x < dib.Width(); ++x) {
            colours.push_back(dib.hDIB()->pixel(x, y));
        }
    }
    return colours;
}

/// All bytes of a DIB in the order of the buffer.
inline std::vector<std::uint8_t> bytes_of(const cDIB& dib) {
    return {dib.lpBits(), dib.lpBits() + dib.Size()};
}

} // namespace varnoth::test
