// Pixels in memory with a layout that the program's own code relies on byte for byte.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "core/base/ByteArray.h"
#include "core/image/Colour.h"

namespace varnoth {

/// The description of a bitmap as the picture code asks for it.
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

/// Pixels of 1, 4 or 8 bits are indices into the colour table, most significant bits leftmost; of 16 bits
/// a word of 5 bits red, green, blue; of 24 bits blue, green, red; of 32 bits blue, green, red and a byte
/// that is not used. Coordinates count from the top left pixel as seen, whatever the order of the rows.
/// A copy has pixels of its own. A pointer to pixels stays valid until the bitmap is assigned to or
/// destroyed.
class Bitmap {
  public:
    /// The two ways in which rows are laid out.
    enum class Rows {
        Surface, ///< top row first; rows of 24 bits rounded up to 2 bytes, of 16 and 32 bits to their own
                 ///< size
        Section, ///< bottom row first, every row rounded up to 4 bytes
    };

    Bitmap() = default;

    /// All bytes and the colour table zero. Overflow when the pixels need 2 GiB or more, OutOfMemory when
    /// they cannot be had, InvalidPropertyValue for a negative size or an unknown depth.
    Bitmap(std::int32_t width, std::int32_t height, std::int32_t bits_per_pixel, Rows rows);

    /// The same, but the bytes have any value, for whoever writes every one of them before it is read.
    static Bitmap for_overwrite(std::int32_t width, std::int32_t height, std::int32_t bits_per_pixel,
                                Rows rows);

    std::int32_t width() const { return width_; }

    std::int32_t height() const { return height_; }

    std::int32_t bits_per_pixel() const { return bits_per_pixel_; }

    /// Bytes from one row to the next.
    std::int32_t row_bytes() const { return row_bytes_; }

    Rows rows() const { return rows_; }

    std::span<std::uint8_t> bytes() { return bytes_.bytes(); }

    std::span<const std::uint8_t> bytes() const { return bytes_.bytes(); }

    /// The bytes of row y, counted from the top as seen.
    std::uint8_t* row(std::int32_t y) { return bytes_.data() + row_offset(y); }

    /// The same, to read only.
    const std::uint8_t* row(std::int32_t y) const { return bytes_.data() + row_offset(y); }

    /// 2, 16 or 256 entries in use at 1, 4 or 8 bits; none otherwise.
    std::span<RGBQUAD> colour_table() { return {colour_table_.data(), colour_table_size()}; }

    std::span<const RGBQUAD> colour_table() const { return {colour_table_.data(), colour_table_size()}; }

    /// Its sizes and depth as a record; bmType and bmBits are 0.
    BITMAP description() const;

    /// The colour at x, y, or no_colour outside.
    Colour pixel(std::int32_t x, std::int32_t y) const;

    /// Sets the pixel to the colour, or to the nearest that the depth has. Outside, nothing happens.
    void set_pixel(std::int32_t x, std::int32_t y, Colour colour);

    /// Every pixel to one colour.
    void fill(Colour colour);

    /// The pixels from one corner to the other, both included, to one colour. Outside, nothing happens.
    void fill_rectangle(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom,
                        Colour colour);

    /// Whether a pixel lies inside.
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

/// `count` pixels of a row from column `x` on as 32-bit pixels; all of them must lie inside.
void read_pixels(const Bitmap& bitmap, std::int32_t x, std::int32_t y, std::span<RGBQUAD> pixels);

/// The reverse, to the nearest colours that the depth has.
void write_pixels(Bitmap& bitmap, std::int32_t x, std::int32_t y, std::span<const RGBQUAD> pixels);

/// A 5-bit channel widened to 8 bits.
constexpr std::uint8_t widen_5_bits(unsigned value) {
    return static_cast<std::uint8_t>((value << 3) | (value >> 2));
}

} // namespace varnoth
