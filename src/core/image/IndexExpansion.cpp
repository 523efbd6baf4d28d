#include "core/image/IndexExpansion.h"

#include <bit>
#include <cstddef>
#include <cstring>

#include "core/base/bytes.h"

namespace varnoth {

IndexExpansion::IndexExpansion(std::span<const RGBQUAD, 256> colours) {
    for (std::size_t i = 0; i < colours.size(); ++i) {
        const std::array<RGBQUAD, 2> at_left{colours[i], {}};
        const std::array<RGBQUAD, 2> at_right{RGBQUAD{}, colours[i]};
        left_[i] = std::bit_cast<std::uint64_t>(at_left);
        right_[i] = std::bit_cast<std::uint64_t>(at_right);
    }
}

void IndexExpansion::expand(std::span<const std::uint8_t> indices, std::uint8_t* pixels) const {
    const auto put_pair = [&](std::size_t i) {
        const unsigned pair = get_u16(indices, i);
        const std::uint64_t both = left_[pair & 0xFF] | right_[pair >> 8];
        std::memcpy(pixels + 4 * i, &both, sizeof both);
    };
    const std::size_t count = indices.size();
    std::size_t i = 0;
    for (; i + 8 <= count; i += 8) {
        put_pair(i);
        put_pair(i + 2);
        put_pair(i + 4);
        put_pair(i + 6);
    }
    for (; i < count; ++i) {
        std::memcpy(pixels + 4 * i, &left_[indices[i]], 4);
    }
}

} // namespace varnoth
