#include "core/image/alpha_blend.h"

#include <algorithm>
#include <vector>

namespace varnoth {

namespace {

std::uint8_t mix(std::uint8_t source, std::uint8_t destination, std::uint32_t alpha) {
    return static_cast<std::uint8_t>((source * alpha + destination * (255 - alpha) + 127) / 255);
}

RGBQUAD mix(const RGBQUAD& source, const RGBQUAD& destination, std::uint32_t alpha) {
    return {mix(source.rgbBlue, destination.rgbBlue, alpha),
            mix(source.rgbGreen, destination.rgbGreen, alpha), mix(source.rgbRed, destination.rgbRed, alpha),
            mix(source.rgbReserved, destination.rgbReserved, alpha)};
}

// The part of a run of pixels that is inside both bitmaps: offsets of its first pixel and one past its last.
struct Span {
    std::int64_t begin;
    std::int64_t end;
};

Span shared(std::int64_t length, std::int64_t to, std::int64_t to_size, std::int64_t from,
            std::int64_t from_size) {
    return {std::max({std::int64_t{0}, -to, -from}), std::min({length, to_size - to, from_size - from})};
}

} // namespace

std::int32_t alpha_blend(DrawingContext& destination, const Rectangle& to, const DrawingContext& source,
                         std::int32_t source_x, std::int32_t source_y, std::uint32_t blend_function) {
    if (destination.bitmap() == nullptr || source.bitmap() == nullptr) {
        return 0;
    }
    Bitmap& target = *destination.bitmap();
    const Bitmap& picture = *source.bitmap();
    const std::uint32_t alpha = (blend_function >> 16) & 0xFF;
    const Span columns = shared(to.width, to.x, target.width(), source_x, picture.width());
    const Span rows = shared(to.height, to.y, target.height(), source_y, picture.height());
    if (columns.begin >= columns.end) {
        return 1;
    }
    const auto count = static_cast<std::size_t>(columns.end - columns.begin);
    std::vector<RGBQUAD> above(count);
    std::vector<RGBQUAD> below(count);
    for (std::int64_t row = rows.begin; row < rows.end; ++row) {
        read_pixels(picture, static_cast<std::int32_t>(source_x + columns.begin),
                    static_cast<std::int32_t>(source_y + row), above);
        read_pixels(target, static_cast<std::int32_t>(to.x + columns.begin),
                    static_cast<std::int32_t>(to.y + row), below);
        std::ranges::transform(
            above, below, below.begin(),
            [alpha](const RGBQUAD& from, const RGBQUAD& onto) { return mix(from, onto, alpha); });
        write_pixels(target, static_cast<std::int32_t>(to.x + columns.begin),
                     static_cast<std::int32_t>(to.y + row), below);
    }
    return 1;
}

} // namespace varnoth
