// A picture with an alpha channel, as programs without windows exchange it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace varnoth {

struct RgbaPicture {
    int width = 0;
    int height = 0;

    /// Alpha, red, green and blue from the highest byte to the lowest, not premultiplied. Top row first,
    /// without padding.
    std::vector<std::uint32_t> pixels;
};

} // namespace varnoth
