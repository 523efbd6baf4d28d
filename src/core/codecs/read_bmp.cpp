// Supported variants:
//
//   headers        12 bytes (BITMAPCOREHEADER), 40 (BITMAPINFOHEADER), 64 (OS/2 2.0), 108 (BITMAPV4HEADER),
//                  124 (BITMAPV5HEADER)
//   1, 4, 8 bits   indices into a colour table of at most 256 entries; 4 bits also as BI_RLE4, 8 bits as
//                  BI_RLE8
//   16 bits        5 bits per channel, or BI_BITFIELDS with any masks
//   24 bits        blue, green, red
//   32 bits        blue, green, red and an unused byte, or BI_BITFIELDS with any masks
//   rows           bottom row first; with a negative height, top row first
//
// Alpha is dropped. Not supported: embedded JPEG and PNG files, BI_ALPHABITFIELDS, OS/2 compressions.
#include "core/codecs/read_bmp.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "core/base/RunTimeFailure.h"
#include "core/base/bytes.h"
#include "core/base/numbers.h"
#include "core/image/BmpHeaders.h"
#include "core/image/packed_indices.h"

namespace varnoth {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t core_header_size = 12;
constexpr std::size_t os2_header_size = 64;
constexpr std::size_t v4_header_size = 108;
constexpr std::size_t v5_header_size = 124;

enum Compression : std::uint32_t { uncompressed = 0, rle8 = 1, rle4 = 2, bit_fields = 3 };

/// The codes after a run length of 0. A higher number is the count of literal indices that follow.
enum RunCode : std::uint8_t { end_of_row = 0, end_of_picture = 1, jump = 2 };

void require(bool holds) {
    if (!holds) {
        fail(Failure::InvalidPicture);
    }
}

/// A value of at most 8 bits, widened to 8 by repeating its highest bits.
std::uint8_t widen(unsigned value, int bits) {
    unsigned widened = value << (8 - bits);
    for (int filled = bits; filled > 0 && filled < 8; filled *= 2) {
        widened |= widened >> filled;
    }
    return static_cast<std::uint8_t>(widened);
}

/// The bits of a pixel that hold one colour channel. If there are more than 8, only the highest 8 count.
class Channel {
  public:
    Channel() = default;

    explicit Channel(std::uint32_t mask) : mask_(mask) {
        const int end = 32 - std::countl_zero(mask);
        shift_ = mask == 0 ? 0 : std::max(std::countr_zero(mask), end - 8);
        const int bits = end - shift_;
        for (unsigned value = 0; value < 1U << bits; ++value) {
            widened_[value] = widen(value, bits);
        }
    }

    std::uint8_t of(std::uint32_t pixel) const { return widened_[(pixel & mask_) >> shift_]; }

  private:
    std::uint32_t mask_ = 0;
    int shift_ = 0;
    std::array<std::uint8_t, 256> widened_{};
};

class Parser {
  public:
    explicit Parser(Bytes file) : file_size_(file.size()), rest_(file) {}

    Bitmap parse(std::int64_t max_pixels) {
        read_file_header();
        read_info_header();
        check_size(max_pixels);
        if (info_.biBitCount <= 8) {
            read_colour_table();
        } else if (info_.biBitCount != 24) {
            read_channels();
        }
        skip_to_pixels();
        create_picture();
        read_pixels();
        return std::move(picture_);
    }

  private:
    Bytes take(std::size_t count) {
        require(count <= rest_.size());
        const Bytes taken = rest_.first(count);
        rest_ = rest_.subspan(count);
        return taken;
    }

    void read_file_header() {
        const auto header =
            BITMAPFILEHEADER::from_bytes(take(BITMAPFILEHEADER::size).first<BITMAPFILEHEADER::size>());
        require(header.is_bmp() && header.bfOffBits >= 0);
        pixels_at_ = static_cast<std::size_t>(header.bfOffBits);
    }

    void read_info_header() {
        require(rest_.size() >= 4);
        const std::size_t size = get_u32(rest_, 0);
        require(size == core_header_size || size == BITMAPINFOHEADER::size || size == os2_header_size ||
                size == v4_header_size || size == v5_header_size);
        header_ = take(size);
        info_ = size == core_header_size
                    ? from_core_header(header_)
                    : BITMAPINFOHEADER::from_bytes(header_.first<BITMAPINFOHEADER::size>());
        require(info_.biPlanes == 1 && is_supported(info_.biBitCount, info_.biCompression));
    }

    static BITMAPINFOHEADER from_core_header(Bytes header) {
        BITMAPINFOHEADER info;
        info.biWidth = get_i16(header, 4);
        info.biHeight = get_i16(header, 6);
        info.biPlanes = get_i16(header, 8);
        info.biBitCount = get_i16(header, 10);
        return info;
    }

    static bool is_supported(int bits, std::uint32_t compression) {
        switch (compression) {
        case uncompressed:
            return bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
        case rle8:
            return bits == 8;
        case rle4:
            return bits == 4;
        case bit_fields:
            return bits == 16 || bits == 32;
        default:
            return false;
        }
    }

    void check_size(std::int64_t max_pixels) {
        const std::int64_t height = std::abs(std::int64_t{info_.biHeight});
        require(info_.biWidth > 0 && height > 0);
        if (info_.biWidth * height > max_pixels) {
            fail(Failure::OutOfMemory);
        }
        width_ = static_cast<std::size_t>(info_.biWidth);
        height_ = static_cast<std::size_t>(height);
    }

    void read_colour_table() {
        const std::int32_t count = info_.biClrUsed == 0 ? 1 << info_.biBitCount : info_.biClrUsed;
        require(count >= 1 && count <= 256);
        const std::size_t entry_size = header_.size() == core_header_size ? 3 : 4;
        for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
            const Bytes entry = take(entry_size);
            colours_[i] = {entry[0], entry[1], entry[2], 0};
        }
    }

    void read_channels() {
        if (info_.biCompression == bit_fields) {
            const bool has_masks = header_.size() >= v4_header_size;
            const Bytes masks = has_masks ? header_.subspan(BITMAPINFOHEADER::size) : take(12);
            set_channels(get_u32(masks, 0), get_u32(masks, 4), get_u32(masks, 8));
        } else if (info_.biBitCount == 16) {
            set_channels(0x7C00, 0x03E0, 0x001F);
        } else {
            set_channels(0xFF0000, 0x00FF00, 0x0000FF);
        }
    }

    void set_channels(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
        red_ = Channel(red);
        green_ = Channel(green);
        blue_ = Channel(blue);
    }

    /// An offset that points into the headers or the colour table is ignored.
    void skip_to_pixels() {
        const std::size_t position = file_size_ - rest_.size();
        take(std::max(pixels_at_, position) - position);
    }

    /// Clears the picture only when some pixels may not be written.
    void create_picture() {
        const auto height = narrow<std::int32_t>(height_);
        const bool has_all_rows = !is_run_length_encoded() && rest_.size() / row_size() >= height_;
        picture_ = has_all_rows ? Bitmap::for_overwrite(info_.biWidth, height, 32, Bitmap::Rows::Surface)
                                : Bitmap(info_.biWidth, height, 32, Bitmap::Rows::Surface);
    }

    bool is_run_length_encoded() const { return info_.biCompression == rle8 || info_.biCompression == rle4; }

    std::size_t row_size() const {
        return (width_ * static_cast<std::size_t>(info_.biBitCount) + 31) / 32 * 4;
    }

    void read_pixels() {
        if (is_run_length_encoded()) {
            return read_runs();
        }
        switch (info_.biBitCount) {
        case 1:
            return read_rows(&Parser::read_indices<1>);
        case 4:
            return read_rows(&Parser::read_indices<4>);
        case 8:
            return read_rows(&Parser::read_indices<8>);
        case 16:
            return read_rows(&Parser::read_words<16>);
        case 24:
            return read_rows(&Parser::read_triples);
        default:
            return read_rows(&Parser::read_words<32>);
        }
    }

    using RowReader = void (Parser::*)(Bytes from, std::size_t count, std::uint8_t* to) const;

    void read_rows(RowReader read_row) {
        const auto bits = static_cast<std::size_t>(info_.biBitCount);
        for (std::size_t number = 0; number < height_ && !rest_.empty(); ++number) {
            const Bytes from = take(std::min(row_size(), rest_.size()));
            const std::size_t whole_pixels = std::min(from.size() * 8 / bits, width_);
            (this->*read_row)(from, whole_pixels, row(number));
        }
    }

    /// The row of the picture that is row `number` in the file.
    std::uint8_t* row(std::size_t number) {
        const std::size_t y = info_.biHeight < 0 ? number : height_ - 1 - number;
        return picture_.row(static_cast<std::int32_t>(y));
    }

    template <int bits>
    void read_indices(Bytes from, std::size_t count, std::uint8_t* to) const {
        for (std::size_t x = 0; x < count; ++x) {
            put(to, x, colours_[get_packed_index(from.data(), x, bits)]);
        }
    }

    template <int bits>
    void read_words(Bytes from, std::size_t count, std::uint8_t* to) const {
        for (std::size_t x = 0; x < count; ++x) {
            const std::uint32_t pixel = bits == 16 ? get_u16(from, 2 * x) : get_u32(from, 4 * x);
            put(to, x, {blue_.of(pixel), green_.of(pixel), red_.of(pixel), 0});
        }
    }

    void read_triples(Bytes from, std::size_t count, std::uint8_t* to) const {
        constexpr auto colour_bytes = std::bit_cast<std::uint32_t>(RGBQUAD{255, 255, 255, 0});
        std::size_t x = 0;
        // Four pixels at a time, as 4-byte reads; the last pixel may have no byte after it.
        for (; x + 4 < count; x += 4) {
            for (std::size_t i = x; i < x + 4; ++i) {
                std::uint32_t pixel = 0;
                std::memcpy(&pixel, &from[3 * i], sizeof pixel);
                pixel &= colour_bytes;
                std::memcpy(to + 4 * i, &pixel, sizeof pixel);
            }
        }
        for (; x < count; ++x) {
            put(to, x, {from[3 * x], from[3 * x + 1], from[3 * x + 2], 0});
        }
    }

    static void put(std::uint8_t* to, std::size_t x, const RGBQUAD& colour) {
        std::memcpy(to + 4 * x, &colour, sizeof colour);
    }

    void read_runs() {
        const int bits = info_.biBitCount;
        while (run_row_ < height_ && rest_.size() >= 2 && rest_.size() >= command_size()) {
            const Bytes command = take(command_size());
            const std::uint8_t length = command[0];
            const std::uint8_t code = command[1];
            if (length > 0) {
                put_run(command.subspan(1), length, static_cast<std::size_t>(8 / bits));
            } else if (code == end_of_row) {
                skip_to(0, run_row_ + 1);
            } else if (code == end_of_picture) {
                skip_to(0, height_);
            } else if (code == jump) {
                skip_to(run_column_ + command[2], run_row_ + command[3]);
            } else {
                put_run(command.subspan(2), code, code);
            }
        }
    }

    /// Two bytes: a run (length and index), or 0 and a code. Data of the code follow, padded to 2 bytes.
    std::size_t command_size() const {
        const std::uint8_t code = rest_[1];
        if (rest_[0] > 0 || code < jump) {
            return 2;
        }
        const auto bits = static_cast<std::size_t>(info_.biBitCount);
        return code == jump ? 4 : 2 + (code * bits + 15) / 16 * 2;
    }

    /// Writes `length` pixels whose indices repeat after `period`; drops those beyond the end of the row.
    void put_run(Bytes indices, std::size_t length, std::size_t period) {
        std::uint8_t* to = row(run_row_);
        for (std::size_t i = 0; i < length && run_column_ < width_; ++i, ++run_column_) {
            put(to, run_column_, colours_[get_packed_index(indices.data(), i % period, info_.biBitCount)]);
        }
    }

    /// Skipped pixels get index 0.
    void skip_to(std::size_t column, std::size_t row_number) {
        while (run_row_ < height_ && run_row_ < row_number) {
            skip_in_row(width_);
            run_column_ = 0;
            ++run_row_;
        }
        if (run_row_ < height_) {
            skip_in_row(column);
        }
    }

    void skip_in_row(std::size_t column) {
        std::uint8_t* to = row(run_row_);
        for (; run_column_ < std::min(column, width_); ++run_column_) {
            put(to, run_column_, colours_[0]);
        }
    }

    std::size_t file_size_;
    Bytes rest_; ///< bytes not read yet

    std::size_t pixels_at_ = 0;
    Bytes header_;
    BITMAPINFOHEADER info_;
    std::array<RGBQUAD, 256> colours_{}; ///< black beyond the file's table
    Channel red_;
    Channel green_;
    Channel blue_;

    Bitmap picture_; ///< black where no pixel is read
    std::size_t width_ = 0;
    std::size_t height_ = 0;
    std::size_t run_column_ = 0; ///< where the next run begins
    std::size_t run_row_ = 0;    ///< in the order of the file
};

} // namespace

Bitmap read_bmp(Bytes file, std::int64_t max_pixels) {
    return Parser(file).parse(max_pixels);
}

} // namespace varnoth
