// BMP files composed byte by byte, where no tool writes them: single ones, and random ones of every variant.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <random>
#include <span>
#include <stdexcept>
#include <vector>

#include "core/base/bytes.h"
#include "core/image/Bitmap.h"
#include "support/codec_files.h"
#include "support/foreign_tools.h"

namespace varnoth::test {

/// The parts of a BMP file, put together by file().
struct MadeBmp {
    std::int32_t width = 0;
    std::int32_t height = 0; ///< negative for top-down
    std::uint16_t bits = 0;
    std::uint32_t compression = 0;
    Bytes between; ///< masks or colour table
    Bytes data;
    std::size_t header_size = 40;
    std::uint32_t colours_used = 0;
    std::array<std::uint32_t, 3> header_masks{}; ///< red, green and blue of a header of 108 or 124 bytes

    std::size_t pixels_at() const { return 14 + header_size + between.size(); }

    Bytes file() const {
        Bytes bytes(pixels_at());
        bytes[0] = 'B';
        bytes[1] = 'M';
        put_u32(bytes, 2, static_cast<std::uint32_t>(bytes.size() + data.size()));
        put_u32(bytes, 10, static_cast<std::uint32_t>(bytes.size()));
        put_u32(bytes, 14, static_cast<std::uint32_t>(header_size));
        if (header_size == 12) {
            put_u16(bytes, 18, static_cast<std::uint16_t>(width));
            put_u16(bytes, 20, static_cast<std::uint16_t>(height));
            put_u16(bytes, 22, 1);
            put_u16(bytes, 24, bits);
        } else {
            put_i32(bytes, 18, width);
            put_i32(bytes, 22, height);
            put_u16(bytes, 26, 1);
            put_u16(bytes, 28, bits);
            put_u32(bytes, 30, compression);
            put_u32(bytes, 34, static_cast<std::uint32_t>(data.size()));
            put_u32(bytes, 46, colours_used);
        }
        if (header_size >= 108) {
            for (std::size_t i = 0; i < 3; ++i) {
                put_u32(bytes, 54 + 4 * i, header_masks[i]);
            }
        }
        std::ranges::copy(between, bytes.end() - static_cast<std::ptrdiff_t>(between.size()));
        bytes.insert(bytes.end(), data.begin(), data.end());
        return bytes;
    }
};

/// Numbers of 32 bits as bytes: masks and colour-table entries (0x00RRGGBB).
inline Bytes dwords(const std::vector<std::uint32_t>& values) {
    Bytes bytes(values.size() * 4);
    for (std::size_t i = 0; i < values.size(); ++i) {
        put_u32(bytes, i * 4, values[i]);
    }
    return bytes;
}

/// Entry `i` of striking_table().
inline Colour striking_colour(std::size_t i) {
    return make_colour(static_cast<std::uint8_t>(0xFF - 7 * i), static_cast<std::uint8_t>(0xC0 - 5 * i),
                       static_cast<std::uint8_t>(0x80 - 3 * i));
}

inline Colours striking_colours(const std::vector<std::size_t>& indices) {
    Colours colours;
    std::ranges::transform(indices, std::back_inserter(colours), striking_colour);
    return colours;
}

/// A colour table whose first entry is not black, so that index 0 shows.
inline Bytes striking_table(std::size_t entries) {
    Bytes table;
    for (std::size_t i = 0; i < entries; ++i) {
        const Colour colour = striking_colour(i);
        table.insert(table.end(), {blue_of(colour), green_of(colour), red_of(colour), 0});
    }
    return table;
}

/// A decoded picture in the shape in which the foreign tools give theirs. It must be one of 32 bits, top row
/// first, whose fourth bytes are all 0.
inline ForeignPicture picture_of(const Bitmap& bitmap) {
    if (bitmap.bits_per_pixel() != 32 || bitmap.rows() != Bitmap::Rows::Surface) {
        throw std::runtime_error("not a 32-bit bitmap with the top row first");
    }
    ForeignPicture result{bitmap.width(), bitmap.height(), {}};
    const std::span<const std::uint8_t> bytes = bitmap.bytes();
    for (std::size_t at = 0; at < bytes.size(); at += 4) {
        if (bytes[at + 3] != 0) {
            throw std::runtime_error("a pixel's fourth byte is not 0");
        }
        result.colours.push_back(make_colour(bytes[at + 2], bytes[at + 1], bytes[at]));
    }
    return result;
}

/// Whole files of every header, depth and compression, of small pictures with random pixels.
class RandomBmps {
  public:
    explicit RandomBmps(std::uint32_t seed) : random_(seed) {}

    MadeBmp next() {
        MadeBmp bmp;
        bmp.header_size = one_of<std::size_t, 5>({12, 40, 64, 108, 124});
        bmp.bits = one_of<std::uint16_t, 6>({1, 4, 8, 16, 24, 32});
        bmp.compression = any_compression(bmp);
        bmp.width = number(1, 20);
        bmp.height = number(1, 12) * (number(0, 2) == 0 ? -1 : 1);
        add_colours(bmp);
        bmp.data = bmp.compression == 1 || bmp.compression == 2 ? commands(bmp) : rows(bmp);
        return bmp;
    }

    std::int32_t number(std::int32_t lowest, std::int32_t highest) {
        return lowest +
               static_cast<std::int32_t>(random_() % static_cast<std::uint32_t>(highest - lowest + 1));
    }

    std::uint8_t byte() { return static_cast<std::uint8_t>(random_()); }

    Bytes bytes(std::size_t count) {
        Bytes result(count);
        std::ranges::generate(result, [&] { return byte(); });
        return result;
    }

  private:
    template <typename T, std::size_t count>
    T one_of(const std::array<T, count>& values) {
        return values[random_() % count];
    }

    std::uint32_t any_compression(const MadeBmp& bmp) {
        if (bmp.header_size == 12 || number(0, 1) == 0) {
            return 0;
        }
        return bmp.bits == 8 ? 1U : bmp.bits == 4 ? 2U : bmp.bits == 16 || bmp.bits == 32 ? 3U : 0U;
    }

    void add_colours(MadeBmp& bmp) {
        if (bmp.bits <= 8) {
            const std::int32_t most = 1 << bmp.bits;
            bmp.colours_used = bmp.header_size == 12 || number(0, 1) == 0
                                   ? 0
                                   : static_cast<std::uint32_t>(number(0, 9) == 0 ? number(1, 256) : most);
            const std::size_t entries =
                bmp.colours_used == 0 ? static_cast<std::size_t>(most) : bmp.colours_used;
            bmp.between = bytes(entries * (bmp.header_size == 12 ? 3 : 4));
        } else if (bmp.compression == 3) {
            const std::array<std::uint32_t, 3> masks = any_masks(bmp.bits);
            bmp.header_masks = masks;
            bmp.between = bmp.header_size < 108 ? dwords({masks[0], masks[1], masks[2]}) : Bytes();
        }
        const Bytes gap = bytes(static_cast<std::size_t>(number(0, 2) == 0 ? number(1, 20) : 0));
        bmp.between.insert(bmp.between.end(), gap.begin(), gap.end());
    }

    /// Of up to 8 bits each, in any order, with gaps between them.
    std::array<std::uint32_t, 3> any_masks(int bits) {
        std::array<std::size_t, 3> order{0, 1, 2};
        std::ranges::shuffle(order, random_);
        std::array<std::uint32_t, 3> masks{};
        int lowest = 0;
        for (const std::size_t i : order) {
            const int width = std::min(number(0, 8), bits - lowest);
            masks[i] = width == 0 ? 0 : ((1U << width) - 1) << lowest;
            lowest = std::min(lowest + width + number(0, 2), bits);
        }
        return masks;
    }

    Bytes rows(const MadeBmp& bmp) {
        const auto row_bytes = static_cast<std::size_t>((bmp.width * bmp.bits + 31) / 32 * 4);
        return bytes(row_bytes * static_cast<std::size_t>(std::abs(bmp.height)));
    }

    /// Runs, literals and jumps that stay within the picture.
    Bytes commands(const MadeBmp& bmp) {
        Bytes data;
        const std::int32_t height = std::abs(bmp.height);
        for (std::int32_t y = 0; y < height; ++y) {
            add_row(data, bmp, y);
            data.insert(data.end(), {0, 0});
        }
        data.insert(data.end(), {0, 1});
        return data;
    }

    void add_row(Bytes& data, const MadeBmp& bmp, std::int32_t& y) {
        for (std::int32_t x = 0; x < bmp.width && number(0, 15) != 0;) {
            const std::int32_t left = bmp.width - x;
            switch (number(0, 4)) {
            case 0:
            case 1: {
                const std::int32_t length = number(1, left);
                data.insert(data.end(), {static_cast<std::uint8_t>(length), byte()});
                x += length;
                break;
            }
            case 2:
            case 3: {
                const std::int32_t length = number(std::min(left, 3), left);
                if (length >= 3) {
                    data.insert(data.end(), {0, static_cast<std::uint8_t>(length)});
                    const Bytes indices = bytes(static_cast<std::size_t>((length * bmp.bits + 15) / 16 * 2));
                    data.insert(data.end(), indices.begin(), indices.end());
                    x += length;
                }
                break;
            }
            default: {
                const std::int32_t columns = number(0, left - 1);
                const std::int32_t down = number(0, std::min(2, std::abs(bmp.height) - 1 - y));
                data.insert(data.end(),
                            {0, 2, static_cast<std::uint8_t>(columns), static_cast<std::uint8_t>(down)});
                x += columns;
                y += down;
                break;
            }
            }
        }
    }

    std::mt19937 random_;
};

} // namespace varnoth::test
