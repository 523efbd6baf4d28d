#include "core/sprite/frame_pixels.h"

#include <algorithm>
#include <utility>

namespace varnoth {

namespace {

constexpr std::uint32_t opaque_alpha = 0xFF000000;
constexpr std::uint32_t colour_mask = 0x00FFFFFF;
constexpr std::uint32_t least_opaque = 128;

std::uint32_t alpha_of(std::uint32_t pixel) {
    return pixel >> 24;
}

std::uint32_t channel_of(std::uint32_t pixel, int shift) {
    return (pixel >> shift) & 0xFF;
}

std::uint8_t scaled(std::uint32_t value, std::uint32_t alpha) {
    return static_cast<std::uint8_t>((value * alpha + 127) / 255);
}

// The integer form of the usual luminance weights; greys are exact.
std::uint32_t brightness(std::uint32_t pixel) {
    return (299 * channel_of(pixel, 16) + 587 * channel_of(pixel, 8) + 114 * channel_of(pixel, 0) + 500) /
           1000;
}

std::vector<std::uint8_t> first_of_equals(std::span<const RGBQUAD> palette) {
    std::vector<std::uint8_t> indices;
    for (std::size_t index = 0; index < palette.size(); ++index) {
        const auto before = palette.first(index);
        if (std::ranges::find(before, palette[index]) == before.end()) {
            indices.push_back(static_cast<std::uint8_t>(index));
        }
    }
    return indices;
}

std::vector<RGBQUAD> entries_of(std::span<const RGBQUAD> palette, std::span<const std::uint8_t> indices) {
    std::vector<RGBQUAD> entries(indices.size());
    std::ranges::transform(indices, entries.begin(), [&](std::uint8_t index) { return palette[index]; });
    return entries;
}

} // namespace

void set_alpha(RgbaPicture& picture, const Transparency& transparency) {
    if (transparency.by == Transparency::By::Alpha || picture.pixels.empty()) {
        return;
    }
    const std::uint32_t key = transparency.by == Transparency::By::Corner
                                  ? picture.pixels.front() & colour_mask
                                  : transparency.colour;
    for (std::uint32_t& pixel : picture.pixels) {
        const std::uint32_t colour = pixel & colour_mask;
        const bool transparent = transparency.by != Transparency::By::None && colour == key;
        pixel = transparent ? 0 : opaque_alpha | colour;
    }
}

FramePixels frame_pixels(const RgbaPicture& picture, RenderMode mode) {
    const bool tested = mode == RenderMode::AlphaTest;
    FramePixels result{
        picture.width, picture.height, std::vector<std::uint8_t>(4 * picture.pixels.size()), {}};
    std::uint8_t* to = result.pixels.data();
    for (const std::uint32_t pixel : picture.pixels) {
        const std::uint32_t alpha = tested ? 255 : alpha_of(pixel);
        *to++ = scaled(channel_of(pixel, 0), alpha);
        *to++ = scaled(channel_of(pixel, 8), alpha);
        *to++ = scaled(channel_of(pixel, 16), alpha);
        *to++ = 0;
    }
    if (tested) {
        result.opaque.resize(picture.pixels.size());
        std::ranges::transform(picture.pixels, result.opaque.begin(), [](std::uint32_t pixel) {
            return static_cast<std::uint8_t>(alpha_of(pixel) >= least_opaque);
        });
    }
    return result;
}

RgbaPicture picture_of_frame(std::span<const std::uint8_t> indices, std::int32_t width, std::int32_t height,
                             const PaletteRecord& palette, RenderMode mode) {
    RgbaPicture picture{width, height, {}};
    picture.pixels.reserve(indices.size());
    for (const std::uint8_t index : indices) {
        const PaletteColour& colour = palette.Colours[index];
        const bool transparent = mode == RenderMode::AlphaTest && index == transparent_index;
        picture.pixels.push_back(transparent ? 0
                                             : opaque_alpha | std::uint32_t{colour.red} << 16 |
                                                   std::uint32_t{colour.green} << 8 | colour.blue);
    }
    return picture;
}

std::size_t usable_entries(RenderMode mode) {
    return mode == RenderMode::AlphaTest ? transparent_index : 256;
}

PaletteRecord palette_record(std::span<const RGBQUAD> entries, RenderMode mode) {
    PaletteRecord palette{PaletteRecord::sprite_colours, {}};
    if (mode == RenderMode::AlphaTest) {
        palette.Colours[transparent_index] = {0, 0, 255};
    }
    std::ranges::transform(entries, palette.Colours.begin(), [](const RGBQUAD& entry) {
        return PaletteColour{entry.rgbRed, entry.rgbGreen, entry.rgbBlue};
    });
    return palette;
}

FrameMapper::FrameMapper(std::span<const RGBQUAD> palette, RenderMode mode, std::size_t threads)
    : FrameMapper(palette, first_of_equals(palette.first(std::min(palette.size(), usable_entries(mode)))),
                  threads) {}

FrameMapper::FrameMapper(std::span<const RGBQUAD> palette, const std::vector<std::uint8_t>& distinct,
                         std::size_t threads)
    : nearest_(entries_of(palette, distinct), threads) {
    index_of_[transparent_index] = transparent_index;
    std::ranges::copy(distinct, index_of_.begin());
}

ByteArray FrameMapper::indices(const FramePixels& picture, const Dithering& dithering) const {
    ByteArray indices(picture.pixels.size() / 4);
    map(picture, dithering, {}, {}, indices.bytes());
    to_indices(indices.bytes());
    return indices;
}

void FrameMapper::map(const FramePixels& picture, const Dithering& dithering,
                      std::span<const std::uint8_t> kept, std::span<const std::uint8_t> entries_before,
                      std::span<std::uint8_t> entries, BandListener* listener) const {
    PixelView view = picture.view();
    view.kept = kept;
    view.indices_before = entries_before;
    map_to_palette(view, nearest_, dithering, entries, listener);
    for (std::size_t pixel = 0; pixel < picture.opaque.size(); ++pixel) {
        if (picture.opaque[pixel] == 0) {
            entries[pixel] = transparent_index;
        }
    }
}

void FrameMapper::to_indices(std::span<std::uint8_t> entries) const {
    for (std::uint8_t& entry : entries) {
        entry = index_of_[entry];
    }
}

void AlphaSummary::add(const RgbaPicture& picture) {
    for (const std::uint32_t pixel : picture.pixels) {
        const std::uint32_t alpha = alpha_of(pixel);
        has_alpha = has_alpha || alpha != 255;
        weight += alpha;
        red += std::uint64_t{alpha} * channel_of(pixel, 16);
        green += std::uint64_t{alpha} * channel_of(pixel, 8);
        blue += std::uint64_t{alpha} * channel_of(pixel, 0);
    }
}

void AlphaSummary::add(const AlphaSummary& other) {
    has_alpha = has_alpha || other.has_alpha;
    weight += other.weight;
    red += other.red;
    green += other.green;
    blue += other.blue;
}

PaletteColour AlphaSummary::colour() const {
    if (!has_alpha || weight == 0) {
        return {255, 255, 255};
    }
    const auto mean = [this](std::uint64_t sum) {
        return static_cast<std::uint8_t>((sum + weight / 2) / weight);
    };
    return {mean(red), mean(green), mean(blue)};
}

ByteArray alpha_indices(const RgbaPicture& picture, bool from_alpha) {
    ByteArray indices = ByteArray::for_overwrite(picture.pixels.size());
    std::ranges::transform(picture.pixels, indices.data(), [from_alpha](std::uint32_t pixel) {
        return from_alpha ? static_cast<std::uint8_t>(alpha_of(pixel))
                          : scaled(brightness(pixel), alpha_of(pixel));
    });
    return indices;
}

PaletteRecord alpha_palette(const PaletteColour& colour) {
    PaletteRecord palette{PaletteRecord::sprite_colours, {}};
    for (std::uint32_t index = 0; index < palette.Colours.size(); ++index) {
        palette.Colours[index] = {scaled(colour.red, index), scaled(colour.green, index),
                                  scaled(colour.blue, index)};
    }
    return palette;
}

} // namespace varnoth
