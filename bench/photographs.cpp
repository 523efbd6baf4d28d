#include "photographs.h"

#include <algorithm>
#include <array>

#include "core/base/files.h"
#include "core/quantize/mDither8bpp.h"
#include "support/PictureFolder.h"

namespace varnoth::bench {

namespace {

// A pseudo-random number from 0 to 1 for each lattice point.
float lattice(std::uint32_t seed, std::uint32_t x, std::uint32_t y) {
    std::uint32_t hash = seed * 0x9E3779B1U ^ x * 0x85EBCA6BU ^ y * 0xC2B2AE35U;
    hash = (hash ^ hash >> 15) * 0x2C1B3C6DU;
    hash = (hash ^ hash >> 12) * 0x297A2D39U;
    return static_cast<float>((hash ^ hash >> 15) >> 8) / static_cast<float>(1U << 24);
}

float smooth(float part) {
    return part * part * (3.0F - 2.0F * part);
}

float mix(float a, float b, float part) {
    return a + part * (b - a);
}

// Value noise: the smoothly interpolated lattice. Coordinates must not be negative.
float noise(std::uint32_t seed, float x, float y) {
    const auto column = static_cast<std::uint32_t>(x);
    const auto row = static_cast<std::uint32_t>(y);
    const float right_part = smooth(x - static_cast<float>(column));
    const float lower_part = smooth(y - static_cast<float>(row));
    const float upper = mix(lattice(seed, column, row), lattice(seed, column + 1, row), right_part);
    const float lower = mix(lattice(seed, column, row + 1), lattice(seed, column + 1, row + 1), right_part);
    return mix(upper, lower, lower_part);
}

// Six octaves, each twice as fine and half as strong as the previous one; from 0 to 1.
float fractal(std::uint32_t seed, float x, float y) {
    float sum = 0;
    float strength = 0.5F;
    for (std::uint32_t octave = 0; octave < 6; ++octave) {
        sum += strength * noise(seed + octave, x, y);
        strength /= 2;
        x *= 2;
        y *= 2;
    }
    return sum;
}

std::uint8_t channel(float value) {
    return static_cast<std::uint8_t>(std::clamp(value, 0.0F, 1.0F) * 255.0F);
}

} // namespace

std::vector<std::uint8_t> photograph_bytes(std::uint32_t seed) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(std::size_t{3} * photograph_side * photograph_side);
    const std::array<float, 3> tint{lattice(seed, 1, 0), lattice(seed, 2, 0), lattice(seed, 3, 0)};
    for (std::int32_t row = 0; row < photograph_side; ++row) {
        for (std::int32_t column = 0; column < photograph_side; ++column) {
            const float x = static_cast<float>(column) / 64.0F;
            const float y = static_cast<float>(row) / 64.0F;
            const float light = fractal(seed * 64, x, y);
            for (std::uint32_t i = 0; i < 3; ++i) {
                const float cloud = fractal(seed * 64 + 16 * (i + 1), x, y);
                const float gradient = mix(tint[i], 1.0F - tint[(i + 1) % 3], (x + y) / 8.0F);
                bytes.push_back(channel(0.5F * light + 0.4F * cloud + 0.5F * gradient - 0.2F));
            }
        }
    }
    return bytes;
}

namespace {

std::unique_ptr<test::TestSurface> photograph(std::uint32_t seed) {
    auto surface = std::make_unique<test::TestSurface>(photograph_side, photograph_side);
    const std::vector<std::uint8_t> bytes = photograph_bytes(seed);
    const std::span<std::uint8_t> pixels = surface->bitmap().bytes();
    for (std::size_t i = 0; i < bytes.size() / 3; ++i) {
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(3 * i), 3,
                    pixels.begin() + static_cast<std::ptrdiff_t>(4 * i));
    }
    return surface;
}

} // namespace

const Surfaces& photographs(std::size_t count) {
    static Surfaces made;
    while (made.size() < count) {
        made.push_back(photograph(static_cast<std::uint32_t>(made.size())));
    }
    return made;
}

const Surfaces& reduced_photographs(std::size_t count) {
    static Surfaces made;
    while (made.size() < count) {
        made.push_back(photograph(static_cast<std::uint32_t>(made.size())));
        mDither8bpp().transform_to_8bit(*made.back(), *made.back());
    }
    return made;
}

void write_photographs(const std::string& folder, std::size_t count) {
    for (std::size_t number = 0; number < count; ++number) {
        std::vector<std::uint8_t> file = test::bmp_header(photograph_side, photograph_side, 24);
        const std::vector<std::uint8_t> bytes = photograph_bytes(static_cast<std::uint32_t>(number));
        // The last row comes first in the file.
        constexpr std::ptrdiff_t row_bytes = 3 * photograph_side;
        for (auto end = bytes.end(); end != bytes.begin(); end -= row_bytes) {
            file.insert(file.end(), end - row_bytes, end);
        }
        put_i32(file, 2, static_cast<std::int32_t>(file.size()));
        OutputFile output(join_path(folder, "photograph" + std::to_string(number) + ".bmp"));
        output.write(file);
        output.close();
    }
}

} // namespace varnoth::bench
