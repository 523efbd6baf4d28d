#include "platform/qt/plain_bmp.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "base/bytes.h"
#include "platform/qt/QtPictureLoader.h"

namespace varnoth {

namespace {

constexpr std::size_t headers_size = 54;

struct Layout {
    std::int64_t pixels = 0; ///< offset of the first one
    std::int32_t width = 0;
    std::int32_t height = 0;
    bool top_row_first = false;

    std::size_t row_bytes() const { return (static_cast<std::size_t>(width) * 3 + 3) / 4 * 4; }

    std::int64_t end() const { return pixels + static_cast<std::int64_t>(row_bytes()) * height; }
};

std::optional<Layout> layout_of(std::span<const std::uint8_t, headers_size> head) {
    constexpr std::uint32_t info_header = 40;
    constexpr std::uint32_t without_compression = 0;
    const std::int64_t height = get_i32(head, 22);
    const std::int64_t rows = height < 0 ? -height : height;
    const std::int64_t width = get_i32(head, 18);
    const bool is_plain = head[0] == 'B' && head[1] == 'M' && get_u32(head, 10) >= headers_size &&
                          get_u32(head, 14) == info_header && get_u16(head, 26) == 1 &&
                          get_u16(head, 28) == 24 && get_u32(head, 30) == without_compression;
    if (!is_plain || width <= 0 || rows == 0 || width * rows > QtPictureLoader::most_pixels) {
        return std::nullopt;
    }
    return Layout{get_u32(head, 10), static_cast<std::int32_t>(width), static_cast<std::int32_t>(rows),
                  height < 0};
}

// Two pixels at a time. Five more bytes behind the last one must be there to read.
void unpack_row(const std::uint8_t* from, std::uint8_t* to, std::int32_t width) {
    using EightBytes = std::array<std::uint8_t, 8>;
    constexpr auto first = std::bit_cast<std::uint64_t>(EightBytes{255, 255, 255, 0, 0, 0, 0, 0});
    constexpr auto second = std::bit_cast<std::uint64_t>(EightBytes{0, 0, 0, 0, 255, 255, 255, 0});
    const auto two_pixels = [&](std::size_t x) {
        std::uint64_t packed = 0;
        std::memcpy(&packed, from + 3 * x, sizeof packed);
        const std::uint64_t one_byte_on =
            std::endian::native == std::endian::little ? packed << 8 : packed >> 8;
        return (packed & first) | (one_byte_on & second);
    };
    const auto count = static_cast<std::size_t>(width);
    std::size_t x = 0;
    for (; x + 2 <= count; x += 2) {
        const std::uint64_t pixels = two_pixels(x);
        std::memcpy(to + 4 * x, &pixels, 8);
    }
    if (x < count) {
        const std::uint64_t pixels = two_pixels(x);
        std::memcpy(to + 4 * x, &pixels, 4);
    }
}

} // namespace

std::optional<Bitmap> read_plain_bmp(InputFile& file) {
    std::array<std::uint8_t, headers_size> head{};
    if (file.read(head) != head.size()) {
        return std::nullopt;
    }
    const std::optional<Layout> layout = layout_of(head);
    if (!layout || layout->end() > file.length()) {
        return std::nullopt;
    }
    file.seek(layout->pixels);
    // Some rows at a time, which stay in the processor's cache until they are unpacked.
    constexpr std::size_t enough_bytes = 64 * 1024;
    const std::size_t row_bytes = layout->row_bytes();
    const auto most_rows = static_cast<std::int32_t>(std::max<std::size_t>(enough_bytes / row_bytes, 1));
    ByteArray packed = ByteArray::for_overwrite(
        row_bytes * static_cast<std::size_t>(std::min(most_rows, layout->height)) + 5);
    Bitmap picture = Bitmap::for_overwrite(layout->width, layout->height, 32, Bitmap::Rows::Surface);
    for (std::int32_t first = 0; first < layout->height; first += most_rows) {
        const std::int32_t rows = std::min(most_rows, layout->height - first);
        const std::span<std::uint8_t> part = packed.bytes().first(static_cast<std::size_t>(rows) * row_bytes);
        if (file.read(part) != part.size()) {
            return std::nullopt;
        }
        for (std::int32_t i = 0; i < rows; ++i) {
            const std::int32_t y = layout->top_row_first ? first + i : layout->height - 1 - first - i;
            unpack_row(&part[static_cast<std::size_t>(i) * row_bytes], picture.row(y), layout->width);
        }
    }
    return picture;
}

} // namespace varnoth
