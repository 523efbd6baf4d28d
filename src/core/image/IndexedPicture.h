// A picture of up to 256 colours, as the writers of indexed formats take it.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace varnoth {

struct IndexedPicture {
    std::int32_t width = 0;
    std::int32_t height = 0;

    /// `width` times `height` palette indices, top row first, without padding.
    std::span<const std::uint8_t> indices;

    /// Alpha, red, green and blue from the highest byte to the lowest.
    std::array<std::uint32_t, 256> colours{};
};

} // namespace varnoth
