#include "core/sprite/mode_colours.h"

#include <algorithm>

namespace varnoth {

namespace {

constexpr std::uint32_t argb(std::uint32_t alpha, std::uint32_t red, std::uint32_t green,
                             std::uint32_t blue) {
    return alpha << 24 | red << 16 | green << 8 | blue;
}

constexpr std::uint32_t argb(std::uint32_t alpha, const PaletteColour& colour) {
    return argb(alpha, colour.red, colour.green, colour.blue);
}

// Over black, the pixel looks as the entry does when it is added.
std::uint32_t light(const PaletteColour& colour) {
    const std::uint32_t alpha = std::max({colour.red, colour.green, colour.blue});
    if (alpha == 0) {
        return 0;
    }
    const auto scaled = [&](std::uint32_t channel) { return (channel * 255 + alpha / 2) / alpha; };
    return argb(alpha, scaled(colour.red), scaled(colour.green), scaled(colour.blue));
}

constexpr std::uint32_t channel_of(std::uint32_t colour, int shift) {
    return colour >> shift & 0xFF;
}

template <typename Mix>
std::uint32_t mix_channels(std::uint32_t over, std::uint32_t below, Mix mix) {
    std::uint32_t result = 0xFF000000;
    for (const int shift : {16, 8, 0}) {
        result |= mix(channel_of(over, shift), channel_of(below, shift)) << shift;
    }
    return result;
}

std::uint32_t blend(std::uint32_t over, std::uint32_t below) {
    const std::uint32_t alpha = over >> 24;
    return mix_channels(over, below, [&](std::uint32_t a, std::uint32_t b) {
        return (a * alpha + b * (255 - alpha) + 127) / 255;
    });
}

std::uint32_t add(std::uint32_t over, std::uint32_t below) {
    return mix_channels(over, below,
                        [](std::uint32_t a, std::uint32_t b) { return std::min<std::uint32_t>(a + b, 255); });
}

} // namespace

IndexColours plain_colours(const PaletteRecord& palette) {
    IndexColours result{};
    std::ranges::transform(palette.Colours, result.begin(),
                           [](const PaletteColour& colour) { return argb(255, colour); });
    return result;
}

IndexColours mode_colours(const PaletteRecord& palette, RenderMode mode) {
    IndexColours result = plain_colours(palette);
    switch (mode) {
    case RenderMode::Additive:
        std::ranges::transform(palette.Colours, result.begin(), light);
        break;
    case RenderMode::IndexAlpha:
        for (std::uint32_t index = 0; index < result.size(); ++index) {
            result[index] = argb(index, palette.Colours[colour_index]);
        }
        break;
    case RenderMode::AlphaTest:
        result[transparent_index] = argb(0, palette.Colours[transparent_index]);
        break;
    default:
        break;
    }
    return result;
}

IndexColours colours_over(const PaletteRecord& palette, RenderMode mode, std::uint32_t background) {
    const bool adds = mode == RenderMode::Additive;
    IndexColours result = adds ? plain_colours(palette) : mode_colours(palette, mode);
    for (std::uint32_t& colour : result) {
        colour = adds ? add(colour, background) : blend(colour, background);
    }
    return result;
}

} // namespace varnoth
