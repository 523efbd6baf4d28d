#include <algorithm>
#include <array>
#include <numeric>
#include <optional>

#include "core/quantize/dithers.h"

namespace varnoth {

namespace {

constexpr std::size_t matrix_side = 8;

// Half of the compensation for the error so far. All of it represents flat areas a little more exactly, but
// scatters the pixels over entries farther from their colour, which looks noisier.
constexpr int full_strength = 200;

// Entry k of a mixture is for the matrix values from 8k on.
constexpr std::size_t mixture_size = 8;
using Mixture = std::array<std::uint8_t, mixture_size>;

consteval std::array<std::array<std::uint8_t, matrix_side>, matrix_side> make_bayer() {
    std::array<std::array<std::uint8_t, matrix_side>, matrix_side> matrix{};
    for (std::size_t y = 0; y < matrix_side; ++y) {
        for (std::size_t x = 0; x < matrix_side; ++x) {
            std::size_t value = 0;
            for (std::size_t bit = 0; bit < 3; ++bit) {
                const std::size_t by_x = x >> bit & 1;
                const std::size_t by_y = y >> bit & 1;
                value |= ((by_x ^ by_y) << 1 | by_y) << 2 * (2 - bit);
            }
            matrix[y][x] = static_cast<std::uint8_t>(value);
        }
    }
    return matrix;
}

constexpr auto bayer = make_bayer();

// Finds mixtures of entries whose mean is close to a colour.
class Mixer {
  public:
    Mixer(const NearestEntry& nearest, int strength) : nearest_(nearest), strength_(strength) {
        const auto brightness = [&](std::uint8_t entry) {
            const auto& [blue, green, red] = nearest.colour(entry);
            return 114 * blue + 587 * green + 299 * red;
        };
        std::iota(by_brightness_.begin(), by_brightness_.end(), std::uint8_t{0});
        const auto used = std::span(by_brightness_).first(nearest.size());
        std::ranges::stable_sort(used, {}, brightness);
        for (std::size_t rank = 0; rank < used.size(); ++rank) {
            rank_[used[rank]] = static_cast<std::uint8_t>(rank);
        }
    }

    /// The entries of the mixture, from dark to bright. Valid until the next call.
    const Mixture& mix(const std::array<std::uint8_t, 3>& colour) {
        if (last_ != colour) {
            last_ = colour;
            mixture_ = found(colour);
        }
        return mixture_;
    }

  private:
    // Each entry is the nearest to the colour plus a part of what the entries before it lack.
    Mixture found(const std::array<std::uint8_t, 3>& colour) const {
        Mixture ranks;
        std::array<int, 3> lack{};
        for (std::uint8_t& rank : ranks) {
            std::array<std::uint8_t, 3> wanted;
            for (std::size_t channel = 0; channel < 3; ++channel) {
                const int value = colour[channel] + lack[channel] * strength_ / full_strength;
                wanted[channel] = static_cast<std::uint8_t>(std::clamp(value, 0, 255));
            }
            const std::uint8_t entry = nearest_(wanted[0], wanted[1], wanted[2]);
            for (std::size_t channel = 0; channel < 3; ++channel) {
                lack[channel] += colour[channel] - nearest_.colour(entry)[channel];
            }
            rank = rank_[entry];
        }
        std::ranges::sort(ranks);
        for (std::uint8_t& rank : ranks) {
            rank = by_brightness_[rank];
        }
        return ranks;
    }

    const NearestEntry& nearest_;
    int strength_;
    std::array<std::uint8_t, 256> by_brightness_;
    std::array<std::uint8_t, 256> rank_{};
    std::optional<std::array<std::uint8_t, 3>> last_;
    Mixture mixture_{};
};

} // namespace

void dither_ordered(const PixelView& picture, const NearestEntry& nearest, int strength,
                    std::span<std::uint8_t> indices) {
    Mixer mixer(nearest, strength);
    const auto width = static_cast<std::size_t>(picture.width);
    for (std::size_t pixel = 0; pixel < indices.size(); ++pixel) {
        if (picture.is_opaque(pixel)) {
            const std::uint8_t* channels = &picture.pixels[4 * pixel];
            const std::uint8_t threshold = bayer[pixel / width % matrix_side][pixel % width % matrix_side];
            indices[pixel] = mixer.mix({channels[0], channels[1], channels[2]})[threshold / mixture_size];
        }
    }
}

} // namespace varnoth
