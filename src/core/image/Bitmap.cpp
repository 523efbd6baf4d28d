#include "core/image/Bitmap.h"

#include <algorithm>
#include <cstring>

#include "core/base/numbers.h"
#include "core/image/nearest_colour.h"
#include "core/image/packed_indices.h"

namespace varnoth {

namespace {

bool is_known_depth(std::int32_t bits) {
    return bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
}

std::int32_t bytes_of_row(std::int32_t width, std::int32_t bits, Bitmap::Rows rows) {
    const std::int64_t row_bits = std::int64_t{width} * bits;
    const std::int64_t unit = rows == Bitmap::Rows::Section ? 32 : bits == 24 ? 16 : 8;
    return narrow<std::int32_t>((row_bits + unit - 1) / unit * (unit / 8));
}

RGBQUAD quad_of_word(std::uint16_t word) {
    return {widen_5_bits(word & 31U), widen_5_bits((word >> 5) & 31U), widen_5_bits((word >> 10) & 31U), 0};
}

std::uint16_t word_of_quad(const RGBQUAD& pixel) {
    return static_cast<std::uint16_t>((pixel.rgbRed >> 3) << 10 | (pixel.rgbGreen >> 3) << 5 |
                                      (pixel.rgbBlue >> 3));
}

} // namespace

Bitmap::Bitmap(std::int32_t width, std::int32_t height, std::int32_t bits_per_pixel, Rows rows, WithoutBytes)
    : width_(width), height_(height), bits_per_pixel_(bits_per_pixel), rows_(rows) {
    if (width < 0 || height < 0 || !is_known_depth(bits_per_pixel)) {
        fail(Failure::InvalidPropertyValue);
    }
    row_bytes_ = bytes_of_row(width, bits_per_pixel, rows);
}

std::size_t Bitmap::byte_count() const {
    return static_cast<std::size_t>(checked_multiply(row_bytes_, height_));
}

Bitmap::Bitmap(std::int32_t width, std::int32_t height, std::int32_t bits_per_pixel, Rows rows)
    : Bitmap(width, height, bits_per_pixel, rows, WithoutBytes()) {
    bytes_ = ByteArray(byte_count());
}

Bitmap Bitmap::for_overwrite(std::int32_t width, std::int32_t height, std::int32_t bits_per_pixel,
                             Rows rows) {
    Bitmap bitmap(width, height, bits_per_pixel, rows, WithoutBytes());
    bitmap.bytes_ = ByteArray::for_overwrite(bitmap.byte_count());
    return bitmap;
}

BITMAP Bitmap::description() const {
    BITMAP result;
    result.bmWidth = width_;
    result.bmHeight = height_;
    result.bmWidthBytes = row_bytes_;
    result.bmPlanes = 1;
    result.bmBitsPixel = static_cast<std::uint16_t>(bits_per_pixel_);
    return result;
}

Colour Bitmap::pixel(std::int32_t x, std::int32_t y) const {
    if (!contains(x, y)) {
        return no_colour;
    }
    RGBQUAD pixel;
    read_pixels(*this, x, y, {&pixel, 1});
    return colour_of(pixel);
}

void Bitmap::set_pixel(std::int32_t x, std::int32_t y, Colour colour) {
    if (contains(x, y)) {
        const RGBQUAD pixel = quad_of(colour);
        write_pixels(*this, x, y, {&pixel, 1});
    }
}

void Bitmap::fill(Colour colour) {
    if (width_ == 0 || height_ == 0) {
        return;
    }
    fill_rectangle(0, 0, width_ - 1, 0, colour);
    for (std::int32_t y = 1; y < height_; ++y) {
        std::memcpy(row(y), row(0), static_cast<std::size_t>(row_bytes_));
    }
}

void Bitmap::fill_rectangle(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom,
                            Colour colour) {
    std::array<RGBQUAD, 64> run;
    run.fill(quad_of(colour));
    const std::int32_t end = std::min(right, width_ - 1) + 1;
    for (std::int32_t y = std::max(top, 0); y <= std::min(bottom, height_ - 1); ++y) {
        for (std::int32_t x = std::max(left, 0); x < end;) {
            const std::size_t count = std::min(static_cast<std::size_t>(end - x), run.size());
            write_pixels(*this, x, y, {run.data(), count});
            x += static_cast<std::int32_t>(count);
        }
    }
}

void read_pixels(const Bitmap& bitmap, std::int32_t x, std::int32_t y, std::span<RGBQUAD> pixels) {
    if (pixels.empty()) {
        return; // a bitmap without pixels has no bytes to point at
    }
    const std::uint8_t* row = bitmap.row(y);
    const auto first = static_cast<std::size_t>(x);
    const std::size_t count = pixels.size();
    switch (bitmap.bits_per_pixel()) {
    case 32:
        std::memcpy(pixels.data(), row + first * 4, count * 4);
        break;
    case 24:
        for (std::size_t i = 0; i < count; ++i) {
            const std::uint8_t* from = row + (first + i) * 3;
            pixels[i] = {from[0], from[1], from[2], 0};
        }
        break;
    case 16:
        for (std::size_t i = 0; i < count; ++i) {
            const std::uint8_t* from = row + (first + i) * 2;
            pixels[i] = quad_of_word(static_cast<std::uint16_t>(from[0] | (from[1] << 8)));
        }
        break;
    case 8:
        for (std::size_t i = 0; i < count; ++i) {
            pixels[i] = bitmap.colour_table()[row[first + i]];
        }
        break;
    default:
        for (std::size_t i = 0; i < count; ++i) {
            pixels[i] = bitmap.colour_table()[get_packed_index(row, first + i, bitmap.bits_per_pixel())];
        }
    }
}

void write_pixels(Bitmap& bitmap, std::int32_t x, std::int32_t y, std::span<const RGBQUAD> pixels) {
    if (pixels.empty()) {
        return; // a bitmap without pixels has no bytes to point at
    }
    std::uint8_t* row = bitmap.row(y);
    const auto first = static_cast<std::size_t>(x);
    const std::size_t count = pixels.size();
    switch (bitmap.bits_per_pixel()) {
    case 32:
        std::memcpy(row + first * 4, pixels.data(), count * 4);
        break;
    case 24:
        for (std::size_t i = 0; i < count; ++i) {
            std::memcpy(row + (first + i) * 3, &pixels[i], 3);
        }
        break;
    case 16:
        for (std::size_t i = 0; i < count; ++i) {
            const std::uint16_t word = word_of_quad(pixels[i]);
            row[(first + i) * 2] = static_cast<std::uint8_t>(word & 0xFF);
            row[(first + i) * 2 + 1] = static_cast<std::uint8_t>(word >> 8);
        }
        break;
    default:
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t index = nearest_entry(bitmap.colour_table(), pixels[i]);
            put_packed_index(row, first + i, bitmap.bits_per_pixel(), static_cast<unsigned>(index));
        }
    }
}

} // namespace varnoth
