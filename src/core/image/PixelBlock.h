// The pixels of a surface as a three-dimensional byte array (channel, x, y), channel varying fastest, for
// ProcessPicture1 and mixpals. Bytes are copied linearly; row padding is not taken into account.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "core/base/ByteArray.h"
#include "core/base/RunTimeFailure.h"
#include "core/image/Bitmap.h"
#include "core/image/PictureSurface.h"

namespace varnoth {

/// Channel 0 is blue, 1 green, 2 red; channel 3, if any, is unused. A new block has no elements.
class PixelBlock {
  public:
    /// Resizes the block to the bitmap that the record describes, all elements zero. The last channel index
    /// is bmWidthBytes / bmWidth - 1 rounded to nearest, ties to even; a 24-bit picture one pixel wide, whose
    /// row is padded to 4 bytes, therefore gets 4 channels. DivisionByZero for a width of 0,
    /// SubscriptOutOfRange when a dimension would be empty, OutOfMemory; a failure leaves the block
    /// unchanged.
    void size_for(const BITMAP& info);

    /// Resizes the block to the single element (0, 0, 0), which is zero.
    void shrink();

    /// Copies bytes linearly between the block and the surface's bitmap, as many as both have. At 24 bits and
    /// odd widths above 1, rows of the bitmap have a padding byte that the block lacks, so each row is
    /// shifted by one more byte.
    void read(const PictureSurface& surface);
    void write(PictureSurface& surface) const;

    std::int32_t channels() const { return channels_; }

    std::int32_t width() const { return width_; }

    std::int32_t height() const { return height_; }

    /// All width() * channels() bytes of row y; SubscriptOutOfRange outside the bounds.
    std::span<const std::uint8_t> row(std::int32_t y) const {
        check_subscript(y, height_);
        return bytes_.bytes().subspan(static_cast<std::size_t>(y) * row_bytes(), row_bytes());
    }

    /// The same, writable.
    std::span<std::uint8_t> row(std::int32_t y) {
        check_subscript(y, height_);
        return bytes().subspan(static_cast<std::size_t>(y) * row_bytes(), row_bytes());
    }

    /// The whole block, row after row.
    std::span<const std::uint8_t> bytes() const { return bytes_.bytes(); }

    std::span<std::uint8_t> bytes() { return bytes_.bytes(); }

    // Interface: not used by the editor itself.

    /// One element; SubscriptOutOfRange outside the bounds.
    std::uint8_t at(std::int32_t channel, std::int32_t x, std::int32_t y) const {
        check_subscript(channel, channels_);
        return pixel(x, y)[static_cast<std::size_t>(channel)];
    }

    /// The channels of one pixel; SubscriptOutOfRange outside the bounds.
    std::span<const std::uint8_t> pixel(std::int32_t x, std::int32_t y) const {
        check_subscript(x, width_);
        return row(y).subspan(static_cast<std::size_t>(x) * pixel_bytes(), pixel_bytes());
    }

  private:
    std::size_t pixel_bytes() const { return static_cast<std::size_t>(channels_); }

    std::size_t row_bytes() const { return static_cast<std::size_t>(width_) * pixel_bytes(); }

    ByteArray bytes_;
    std::int32_t channels_ = 0;
    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
};

} // namespace varnoth
