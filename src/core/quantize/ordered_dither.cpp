#include "core/quantize/ordered_dither.h"

#include <bit>
#include <cstring>
#include <limits>

namespace varnoth {

namespace {

// The levels of a channel: value / step, computed by a multiplication and a shift.
struct Levels {
    std::uint16_t count;
    std::uint16_t step;
    std::uint16_t factor;
    int shift;

    constexpr std::uint8_t level_of(std::uint16_t value) const {
        return static_cast<std::uint8_t>(static_cast<std::uint16_t>(value * factor) >> shift);
    }
};

constexpr Levels levels16{.count = 16, .step = 17, .factor = 241, .shift = 12};
constexpr Levels levels6{.count = 6, .step = 51, .factor = 161, .shift = 13};

consteval bool divides_exactly(const Levels& levels) {
    for (unsigned value = 0; value < 255U + levels.step; ++value) {
        const bool fits = value * levels.factor <= std::numeric_limits<std::uint16_t>::max();
        const unsigned level = levels.level_of(static_cast<std::uint16_t>(value));
        if (!fits || level != value / levels.step || level >= levels.count) {
            return false;
        }
    }
    return true;
}

static_assert(divides_exactly(levels16) && divides_exactly(levels6));

// The shift of a channel's byte in a pixel that is read as one number.
constexpr int shift_of(int channel) {
    return std::endian::native == std::endian::little ? 8 * channel : 24 - 8 * channel;
}

template <const Levels& levels>
[[gnu::always_inline]] inline void dither(DitheredPixels pixels, const MatrixRow& added,
                                          DitheredIndices& indices) {
    std::array<std::uint8_t, 4 * dither_block_size> channels;
    for (std::size_t i = 0; i < channels.size(); i += added.size()) {
        for (std::size_t k = 0; k < added.size(); ++k) {
            channels[i + k] = levels.level_of(static_cast<std::uint16_t>(pixels[i + k] + added[k]));
        }
    }
    for (std::size_t x = 0; x < indices.size(); ++x) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, &channels[4 * x], sizeof pixel);
        const std::uint32_t blue = pixel >> shift_of(0) & 0xFF;
        const std::uint32_t green = pixel >> shift_of(1) & 0xFF;
        const std::uint32_t red = pixel >> shift_of(2) & 0xFF;
        indices[x] = (blue * levels.count + green) * levels.count + red;
    }
}

} // namespace

void dither_to_16_levels(DitheredPixels pixels, const MatrixRow& added, DitheredIndices& indices) {
    dither<levels16>(pixels, added, indices);
}

void dither_to_6_levels(DitheredPixels pixels, const MatrixRow& added, DitheredIndices& indices) {
    dither<levels6>(pixels, added, indices);
}

} // namespace varnoth
