// Pixels in memory with a defined byte layout.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "core/base/ByteArray.h"
#include "core/image/Colour.h"

namespace varnoth {

/// The size and depth of a bitmap.
struct BITMAP {
    std::int32_t bmType = 0;
    std::int32_t bmWidth = 0;
    std::int32_t bmHeight = 0;
    std::int32_t bmWidthBytes = 0;
    std::uint16_t bmPlanes = 0;
    std::uint16_t bmBitsPixel = 0;
    std::uint32_t bmBits = 0;
};

static_assert(sizeof(BITMAP) == 24);

/// Pixels of 1, 4 or 8 bits are indices into the colour table, most significant bits leftmost; 16 bits are a
/// word of 5 bits red, green, blue; 24 bits are blue, green, red; 32 bits are blue, green, red and an unused
/// byte. Coordinates start at the top left pixel as displayed, regardless of the row order. Copies do not
/// share pixels. A pointer to pixels is valid until the bitmap is assigned to or destroyed.
class Bitmap {
  public:
    /// The layout of rows.
    enum class Rows {
        Surface, ///< top row first; rows padded to 2 bytes at 24 bits, to whole bytes otherwise
        Section, ///< bottom row first; rows padded to 4 bytes
    };

    Bitmap() = default;

    /// All bytes and the colour table are zero. Overflow when the pixels need 2 GiB or more, OutOfMemory when
    /// they cannot be allocated, InvalidPropertyValue for a negative size or an unknown depth.
    Bitmap(std::int32_t width, std::int32_t height, std::int32_t bits_per_pixel, Rows rows);

    /// The same, but the bytes are uninitialised; write every byte before reading.
    static Bitmap for_overwrite(std::int32_t width, std::int32_t height, std::int32_t bits_per_pixel,
                                Rows rows);

    std::int32_t width() const { return width_; }

    std::int32_t height() const { return height_; }

    std::int32_t bits_per_pixel() const { return bits_per_pixel_; }

    /// Bytes per row, including padding.
    std::int32_t row_bytes() const { return row_bytes_; }

    Rows rows() const { return rows_; }

    std::span<std::uint8_t> bytes() { return bytes_.bytes(); }

    std::span<const std::uint8_t> bytes() const { return bytes_.bytes(); }

    /// The bytes of row y, counted from the top as displayed.
    std::uint8_t* row(std::int32_t y) { return bytes_.data() + row_offset(y); }

    /// The same, read-only.
    const std::uint8_t* row(std::int32_t y) const { return bytes_.data() + row_offset(y); }

    /// 2, 16 or 256 entries at 1, 4 or 8 bits; none otherwise.
    std::span<RGBQUAD> colour_table() { return {colour_table_.data(), colour_table_size()}; }

    std::span<const RGBQUAD> colour_table() const { return {colour_table_.data(), colour_table_size()}; }

    /// The size and depth as a record; bmType and bmBits are 0.
    BITMAP description() const;

    /// The colour at (x, y), or no_colour outside the bitmap.
    Colour pixel(std::int32_t x, std::int32_t y) const;

    /// Sets a pixel to the nearest colour that the depth can represent. Does nothing outside the bitmap.
    void set_pixel(std::int32_t x, std::int32_t y, Colour colour);

    /// Sets every pixel to one colour.
    void fill(Colour colour);

    /// Sets the pixels of a rectangle, both corners included, to one colour. Clipped to the bitmap.
    void fill_rectangle(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom,
                        Colour colour);

    /// Whether (x, y) is inside the bitmap.
    bool contains(std::int32_t x, std::int32_t y) const {
        return x >= 0 && y >= 0 && x < width_ && y < height_;
    }

  private:
    struct WithoutBytes {};

    Bitmap(std::int32_t width, std::int32_t height, std::int32_t bits_per_pixel, Rows rows, WithoutBytes);

    std::size_t byte_count() const;

    std::size_t row_offset(std::int32_t y) const {
        const std::int32_t stored = rows_ == Rows::Surface ? y : height_ - 1 - y;
        return static_cast<std::size_t>(stored) * static_cast<std::size_t>(row_bytes_);
    }

    std::size_t colour_table_size() const {
        return bits_per_pixel_ >= 1 && bits_per_pixel_ <= 8 ? std::size_t{1} << bits_per_pixel_ : 0;
    }

    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
    std::int32_t bits_per_pixel_ = 0;
    std::int32_t row_bytes_ = 0;
    Rows rows_ = Rows::Surface;
    ByteArray bytes_;
    std::array<RGBQUAD, 256> colour_table_{};
};

/// Reads pixels of row `y` from column `x` on as 32-bit pixels; all of them must be inside the bitmap.
void read_pixels(const Bitmap& bitmap, std::int32_t x, std::int32_t y, std::span<RGBQUAD> pixels);

/// Writes pixels likewise, as the nearest colours that the depth can represent.
void write_pixels(Bitmap& bitmap, std::int32_t x, std::int32_t y, std::span<const RGBQUAD> pixels);

/// A 5-bit channel widened to 8 bits.
constexpr std::uint8_t widen_5_bits(unsigned value) {
    return static_cast<std::uint8_t>((value << 3) | (value >> 2));
}

} // namespace varnoth
