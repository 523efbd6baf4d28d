#include "core/codecs/read_rgba_bmp.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "core/base/bytes.h"
#include "core/codecs/read_bmp.h"
#include "core/image/BmpHeaders.h"

namespace varnoth {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::uint32_t info_header_size = 40;
constexpr std::uint32_t v2_header_size = 52; // the info header and masks of red, green and blue
constexpr std::uint32_t v3_header_size = 56; // the same and the mask of alpha
constexpr std::uint32_t v4_header_size = 108;

constexpr std::uint32_t bit_fields = 3;
constexpr std::uint32_t alpha_bit_fields = 6; // four masks after the info header

constexpr std::size_t pixels_at = 10;
constexpr std::size_t header_size_at = 14;
constexpr std::size_t compression_at = 30;
constexpr std::size_t red_mask_at = 54;
constexpr std::size_t alpha_mask_at = 66;

/// The size that the header would have with its masks in it: 56 for BI_ALPHABITFIELDS. 0 if the header is
/// truncated.
std::uint32_t full_header_size(Bytes file) {
    if (file.size() < red_mask_at) {
        return 0;
    }
    std::uint32_t size = get_u32(file, header_size_at);
    if (size == info_header_size && get_u32(file, compression_at) == alpha_bit_fields) {
        size = v3_header_size;
    }
    return file.size() - header_size_at < size ? 0 : size;
}

/// The file with a header of 108 bytes instead of one of 52 or 56.
std::vector<std::uint8_t> with_v4_header(Bytes file, std::uint32_t header_size) {
    const std::size_t header_end = header_size_at + header_size;
    const std::uint32_t added = v4_header_size - header_size;
    std::vector<std::uint8_t> longer(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(header_end));
    longer.resize(longer.size() + added);
    longer.insert(longer.end(), file.begin() + static_cast<std::ptrdiff_t>(header_end), file.end());
    put_u32(longer, pixels_at, get_u32(longer, pixels_at) + added);
    put_u32(longer, header_size_at, v4_header_size);
    if (get_u32(longer, compression_at) == alpha_bit_fields) {
        put_u32(longer, compression_at, bit_fields);
    }
    return longer;
}

bool has_alpha(Bytes file) {
    return full_header_size(file) >= v4_header_size && get_u32(file, compression_at) == bit_fields &&
           get_u32(file, alpha_mask_at) != 0;
}

/// The picture of the colours. Alpha is the red channel of the other bitmap, or opaque if there is none.
RgbaPicture joined(const Bitmap& colours, const Bitmap* alphas) {
    constexpr std::uint32_t opaque = 0xFF000000;
    RgbaPicture picture;
    picture.width = colours.width();
    picture.height = colours.height();
    const auto width = static_cast<std::size_t>(colours.width());
    picture.pixels.reserve(width * static_cast<std::size_t>(colours.height()));
    for (std::int32_t y = 0; y < colours.height(); ++y) {
        const Bytes row(colours.row(y), 4 * width);
        for (std::size_t x = 0; x < width; ++x) {
            const std::uint32_t alpha =
                alphas == nullptr ? opaque : std::uint32_t{alphas->row(y)[4 * x + 2]} << 24;
            picture.pixels.push_back(alpha | get_u32(row, 4 * x));
        }
    }
    return picture;
}

} // namespace

RgbaPicture read_rgba_bmp(Bytes file, std::int64_t max_pixels) {
    const std::uint32_t header_size = full_header_size(file);
    std::vector<std::uint8_t> longer;
    if (header_size == v2_header_size || header_size == v3_header_size) {
        longer = with_v4_header(file, header_size);
        file = longer;
    }
    const Bitmap colours = read_bmp(file, max_pixels);
    if (!has_alpha(file)) {
        return joined(colours, nullptr);
    }
    std::vector<std::uint8_t> alpha_as_red(file.begin(), file.end());
    put_u32(alpha_as_red, red_mask_at, get_u32(file, alpha_mask_at));
    const Bitmap alphas = read_bmp(alpha_as_red, max_pixels);
    return joined(colours, &alphas);
}

} // namespace varnoth
