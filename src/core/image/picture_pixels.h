// Access to the pixels of a block as three colour channels, row by row.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "core/base/RunTimeFailure.h"
#include "core/image/Colour.h"
#include "core/image/PixelBlock.h"

namespace varnoth {

/// The three channels that picture operations use; a fourth one is never changed.
struct Pixel {
    std::uint8_t blue = 0;
    std::uint8_t green = 0;
    std::uint8_t red = 0;

    friend constexpr bool operator==(const Pixel&, const Pixel&) = default;
};

/// The pixel as a colour.
constexpr Colour colour_of(const Pixel& pixel) {
    return make_colour(pixel.red, pixel.green, pixel.blue);
}

inline constexpr Pixel pure_red{.blue = 0, .green = 0, .red = 255};
inline constexpr Pixel pure_green{.blue = 0, .green = 255, .red = 0};
inline constexpr Pixel pure_blue{.blue = 255, .green = 0, .red = 0};

/// The channels of a plain colour; Overflow for any other.
inline Pixel SplitColor(Colour colour) {
    if (colour < 0 || colour > 0xFFFFFF) {
        fail(Failure::Overflow);
    }
    return {.blue = blue_of(colour), .green = green_of(colour), .red = red_of(colour)};
}

/// Whether all three channels are equal.
constexpr bool is_grey(const Pixel& pixel) {
    return pixel.blue == pixel.green && pixel.green == pixel.red;
}

/// The first `width` pixels of row y, writable unless the block is const. SubscriptOutOfRange when the block
/// is too small or has fewer than three channels.
template <typename Block>
class PixelRow {
  public:
    PixelRow(Block& block, std::int32_t y, std::int32_t width) {
        if (width > 0) {
            check_subscript(2, block.channels());
            check_subscript(width - 1, block.width());
            bytes_ = block.row(y);
            step_ = static_cast<std::size_t>(block.channels());
        }
    }

    /// The pixel at column `x`, which is not checked.
    Pixel operator[](std::int32_t x) const {
        const std::uint8_t* at = &bytes_[static_cast<std::size_t>(x) * step_];
        return {at[0], at[1], at[2]};
    }

    /// Sets the three channels at column `x`, which is not checked.
    void set(std::int32_t x, const Pixel& pixel) {
        std::uint8_t* at = &bytes_[static_cast<std::size_t>(x) * step_];
        at[0] = pixel.blue;
        at[1] = pixel.green;
        at[2] = pixel.red;
    }

  private:
    decltype(std::declval<Block&>().row(0)) bytes_;
    std::size_t step_ = 0;
};

} // namespace varnoth
