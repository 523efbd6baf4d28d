// Surfaces for tests: small ones from given colours, and seeded random ones of several kinds.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <random>

#include "core/image/PictureSurface.h"
#include "support/lists.h"

namespace varnoth::test {

struct HeldContainer {
    SurfaceContainer container;
};

/// A surface, borderless by default, in its own container, which counts in pixels.
struct TestSurface : private HeldContainer, public PictureSurface {
    TestSurface(std::int32_t width, std::int32_t height, std::int32_t bits_per_pixel = 32,
                std::int32_t border = 0, Colour back_colour = 0)
        : PictureSurface({&container, width, height, bits_per_pixel, border, back_colour}) {}
};

/// A surface with these pixels, rows from the top.
inline std::unique_ptr<TestSurface> surface_of(std::int32_t width, std::int32_t height,
                                               const Colours& colours, std::int32_t bits_per_pixel = 32) {
    auto surface = std::make_unique<TestSurface>(width, height, bits_per_pixel);
    for (std::int32_t y = 0; y < height; ++y) {
        for (std::int32_t x = 0; x < width; ++x) {
            surface->PSet(x, y, colours.at(static_cast<std::size_t>(y * width + x)));
        }
    }
    return surface;
}

/// The colours of a surface, rows from the top.
inline Colours colours_of(const PictureSurface& surface) {
    Colours colours;
    for (std::int32_t y = 0; y < surface.bitmap().height(); ++y) {
        for (std::int32_t x = 0; x < surface.bitmap().width(); ++x) {
            colours.push_back(surface.Point(x, y));
        }
    }
    return colours;
}

/// The bytes of a bitmap in memory.
inline Bytes bytes_of(const Bitmap& bitmap) {
    return {bitmap.bytes().begin(), bitmap.bytes().end()};
}

/// Kinds of random pictures.
enum class Character {
    Noise,      ///< any colour for each pixel
    FewColours, ///< about a dozen colours, black among them
    Smooth,     ///< a gradient with a little noise, like a photograph
    Grey,       ///< greys
    Runs,       ///< horizontal runs of a few dozen colours
    AroundLimit ///< 250 to 262 different colours
};

inline constexpr Character all_characters[] = {Character::Noise,  Character::FewColours,
                                               Character::Smooth, Character::Grey,
                                               Character::Runs,   Character::AroundLimit};

/// `count` colours of that kind, the same for the same seed.
inline Colours random_colours(std::size_t count, std::size_t width, Character character, std::uint32_t seed) {
    std::mt19937 random(seed);
    const auto any = [&](std::uint32_t limit) { return static_cast<std::uint32_t>(random() % limit); };
    const auto colour = [&] { return static_cast<Colour>(any(0x1000000)); };
    Colours palette(character == Character::AroundLimit ? 250 + any(13) : 2 + any(24));
    for (Colour& entry : palette) {
        entry = colour();
    }
    palette[any(2)] = 0;
    const std::uint32_t base = any(200);
    Colours colours(count);
    Colour current = palette[0];
    for (std::size_t i = 0; i < count; ++i) {
        const auto x = static_cast<std::uint32_t>(i % width);
        const auto y = static_cast<std::uint32_t>(i / width);
        const auto byte = [](std::uint32_t value) {
            return static_cast<std::uint8_t>(value > 255 ? 255 : value);
        };
        switch (character) {
        case Character::Noise:
            colours[i] = colour();
            break;
        case Character::FewColours:
        case Character::AroundLimit:
            colours[i] = palette[any(static_cast<std::uint32_t>(palette.size()))];
            break;
        case Character::Smooth: {
            // In separate statements: the order in which arguments are evaluated is unspecified.
            const std::uint8_t red = byte(base + x / 2 + any(6));
            const std::uint8_t green = byte(x + y / 3 + any(4));
            colours[i] = make_colour(red, green, byte(255 - y % 256));
            break;
        }
        case Character::Grey: {
            const std::uint8_t grey = byte(any(256));
            colours[i] = make_colour(grey, grey, grey);
            break;
        }
        case Character::Runs:
            if (any(7) == 0) {
                current = palette[any(static_cast<std::uint32_t>(palette.size()))];
            }
            colours[i] = current;
            break;
        }
    }
    return colours;
}

inline std::unique_ptr<TestSurface> random_surface(std::int32_t width, std::int32_t height,
                                                   Character character, std::uint32_t seed,
                                                   std::int32_t bits_per_pixel = 32) {
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    return surface_of(width, height, random_colours(count, static_cast<std::size_t>(width), character, seed),
                      bits_per_pixel);
}

} // namespace varnoth::test
