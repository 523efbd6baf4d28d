#include "core/quantize/map_to_palette.h"

#include <algorithm>

#include "core/base/RunTimeFailure.h"
#include "core/quantize/dithers.h"

namespace varnoth {

namespace {

void check(const PixelView& picture, const Dithering& dithering, std::span<const std::uint8_t> indices) {
    const bool sizes = picture.width >= 0 && picture.height >= 0;
    const bool strength = dithering.strength >= 0 && dithering.strength <= 100;
    if (!sizes || !strength) {
        fail(Failure::InvalidProcedureCall);
    }
    const auto count = static_cast<std::uint64_t>(picture.width) * static_cast<std::uint64_t>(picture.height);
    const bool opaque = picture.opaque.empty() || picture.opaque.size() == count;
    const bool kept =
        picture.kept.empty() || (picture.kept.size() == count && picture.indices_before.size() == count);
    if (picture.pixels.size() != 4 * count || indices.size() != count || !opaque || !kept) {
        fail(Failure::InvalidProcedureCall);
    }
}

void map_plainly(const PixelView& picture, const NearestEntry& nearest, std::span<std::uint8_t> indices) {
    for (std::size_t pixel = 0; pixel < indices.size(); ++pixel) {
        if (picture.is_opaque(pixel)) {
            const std::uint8_t* channels = &picture.pixels[4 * pixel];
            indices[pixel] = nearest(channels[0], channels[1], channels[2]);
        }
    }
}

} // namespace

void map_to_palette(const PixelView& picture, const NearestEntry& nearest, const Dithering& dithering,
                    std::span<std::uint8_t> indices, BandListener* listener) {
    check(picture, dithering, indices);
    switch (dithering.method) {
    case Dither::None:
        map_plainly(picture, nearest, indices);
        break;
    case Dither::Ordered:
        dither_ordered(picture, nearest, dithering.strength, indices);
        break;
    case Dither::BlueNoise:
        dither_blue_noise(picture, nearest, dithering.strength, indices, listener);
        break;
    case Dither::FloydSteinberg:
        dither_floyd_steinberg(picture, nearest, dithering.strength, indices, listener);
        break;
    }
}

std::vector<std::uint8_t> unchanged_pixels(const PixelView& before, const PixelView& picture) {
    if (before.width != picture.width || before.height != picture.height) {
        return {};
    }
    std::vector<std::uint8_t> unchanged(picture.pixels.size() / 4);
    std::size_t opaque_count = 0;
    std::size_t unchanged_count = 0;
    for (std::size_t pixel = 0; pixel < unchanged.size(); ++pixel) {
        if (!picture.is_opaque(pixel)) {
            continue;
        }
        ++opaque_count;
        const std::uint8_t* channels = &picture.pixels[4 * pixel];
        if (before.is_opaque(pixel) && std::equal(channels, channels + 3, &before.pixels[4 * pixel])) {
            ++unchanged_count;
            unchanged[pixel] = 1;
        }
    }
    const bool is_new_scene = 16 * unchanged_count < opaque_count;
    return is_new_scene ? std::vector<std::uint8_t>() : unchanged;
}

} // namespace varnoth
