#include "reference/BlueNoiseDither.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <vector>

#include "core/quantize/blue_noise.h"
#include "reference/NearestEntry.h"

namespace varnoth::reference {

namespace {

int weight_of(int dx, int dy) {
    switch (dx * dx + dy * dy) {
    case 1:
        return 16;
    case 2:
        return 6;
    case 4:
        return 2;
    case 5:
        return 1;
    default:
        return 0;
    }
}

int rank_at(int x, int y) {
    return blue_noise()[static_cast<std::size_t>(y + 64) % 64][static_cast<std::size_t>(x + 64) % 64];
}

// The part of its error, in 4096ths, that the pixel at x, y passes to the one at (x + dx, y + dy).
int share_passed(int x, int y, int dx, int dy) {
    int total = 0;
    for (int by = -2; by <= 2; ++by) {
        for (int bx = -2; bx <= 2; ++bx) {
            total += rank_at(x + bx, y + by) > rank_at(x, y) ? weight_of(bx, by) : 0;
        }
    }
    const int weight = rank_at(x + dx, y + dy) > rank_at(x, y) ? weight_of(dx, dy) : 0;
    return weight == 0 ? 0 : 4096 * weight / total;
}

class Diffusion {
  public:
    Diffusion(const PixelView& picture, std::span<const RGBQUAD> palette, int strength)
        : picture_(picture),
          palette_(palette),
          strength_(strength),
          errors_(static_cast<std::size_t>(picture.width * picture.height)) {}

    std::uint8_t map(int x, int y) {
        const std::size_t pixel = place(x, y);
        std::array<int, 3> wanted = received(x, y);
        std::array<std::uint8_t, 3> rounded{};
        for (std::size_t channel = 0; channel < 3; ++channel) {
            wanted[channel] += 16 * picture_.pixels[4 * pixel + channel];
            rounded[channel] = static_cast<std::uint8_t>(std::clamp((wanted[channel] + 8) >> 4, 0, 255));
        }
        const std::uint8_t entry = nearest_entry(palette_, make_colour(rounded[2], rounded[1], rounded[0]));
        const std::array<int, 3> colour{palette_[entry].rgbBlue, palette_[entry].rgbGreen,
                                        palette_[entry].rgbRed};
        for (std::size_t channel = 0; channel < 3; ++channel) {
            errors_[pixel][channel] = (wanted[channel] - 16 * colour[channel]) * strength_ / 100;
        }
        return entry;
    }

  private:
    std::size_t place(int x, int y) const { return static_cast<std::size_t>(y * picture_.width + x); }

    std::array<int, 3> received(int x, int y) const {
        std::array<int, 3> sum{};
        for (int dy = -2; dy <= 2; ++dy) {
            for (int dx = -2; dx <= 2; ++dx) {
                const bool inside =
                    x + dx >= 0 && y + dy >= 0 && x + dx < picture_.width && y + dy < picture_.height;
                const int share = inside ? share_passed(x + dx, y + dy, -dx, -dy) : 0;
                for (std::size_t channel = 0; channel < 3 && inside; ++channel) {
                    sum[channel] += errors_[place(x + dx, y + dy)][channel] * share;
                }
            }
        }
        for (int& error : sum) {
            error = std::clamp((error + 2048) >> 12, -16 * 255, 16 * 255);
        }
        return sum;
    }

    const PixelView& picture_;
    std::span<const RGBQUAD> palette_;
    int strength_;
    std::vector<std::array<int, 3>> errors_; // 0 for transparent pixels and those that are not mapped yet
};

} // namespace

void dither_blue_noise(const PixelView& picture, std::span<const RGBQUAD> palette, int strength,
                       std::span<std::uint8_t> indices) {
    std::vector<std::size_t> order(indices.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto x_of = [&](std::size_t pixel) { return static_cast<int>(pixel) % picture.width; };
    const auto y_of = [&](std::size_t pixel) { return static_cast<int>(pixel) / picture.width; };
    std::ranges::stable_sort(order, {}, [&](std::size_t pixel) { return rank_at(x_of(pixel), y_of(pixel)); });
    Diffusion diffusion(picture, palette, strength);
    for (const std::size_t pixel : order) {
        if (picture.is_opaque(pixel)) {
            indices[pixel] = diffusion.map(x_of(pixel), y_of(pixel));
        }
    }
}

} // namespace varnoth::reference
