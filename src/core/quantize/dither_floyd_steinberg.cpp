#include <cmath>
#include <limits>
#include <vector>

#include "core/quantize/dithers.h"
#include "core/quantize/error_diffusion.h"

namespace varnoth {

namespace {

using Row = std::vector<Sixteenths>; // with one more pixel at each end

// Squared.
int distance_to_nearest_other(const NearestEntry& nearest, std::size_t entry) {
    int least = std::numeric_limits<int>::max();
    const auto& colour = nearest.colour(static_cast<std::uint8_t>(entry));
    for (std::size_t other = 0; other < nearest.size(); ++other) {
        const auto& other_colour = nearest.colour(static_cast<std::uint8_t>(other));
        int sum = 0;
        for (std::size_t channel = 0; channel < 3; ++channel) {
            sum += (colour[channel] - other_colour[channel]) * (colour[channel] - other_colour[channel]);
        }
        if (other != entry) {
            least = std::min(least, sum);
        }
    }
    return least;
}

// The largest error that a pixel may receive: three times the mean distance between neighbouring entries, at
// most 255 levels. Colours outside of the palette's range cannot be compensated; without a limit, their
// errors would add up and smear over what follows.
std::int32_t error_limit(const NearestEntry& nearest) {
    std::int32_t sum = 0; // each rounded down to sixteenths
    for (std::size_t entry = 0; entry < nearest.size(); ++entry) {
        sum += static_cast<std::int32_t>(16 * std::sqrt(distance_to_nearest_other(nearest, entry)));
    }
    return std::min(3 * sum / static_cast<std::int32_t>(nearest.size()), 16 * 255);
}

class Diffusion {
  public:
    Diffusion(const PixelView& picture, const NearestEntry& nearest, int strength,
              std::span<std::uint8_t> indices)
        : picture_(picture),
          nearest_(nearest),
          strength_(strength),
          limit_(error_limit(nearest)),
          indices_(indices),
          width_(static_cast<std::size_t>(picture.width)),
          current_(width_ + 2),
          next_(width_ + 2) {}

    // Every other row runs to the left.
    void run(BandListener* listener) {
        map_in_bands(static_cast<std::size_t>(picture_.height), listener, [this](std::size_t y) {
            for (std::size_t i = 0; i < width_; ++i) {
                const std::size_t x = y % 2 == 0 ? i : width_ - 1 - i;
                map(x, y * width_ + x, y % 2 == 0);
            }
            current_.swap(next_);
            next_.assign(width_ + 2, {});
        });
    }

  private:
    void map(std::size_t x, std::size_t pixel, bool to_the_right) {
        if (!picture_.is_opaque(pixel)) {
            return;
        }
        Sixteenths received = current_[x + 1];
        for (std::int32_t& error : received) {
            error = std::clamp(error, -limit_, limit_);
        }
        const Sixteenths left = map_pixel(picture_, nearest_, pixel, received, indices_[pixel]);
        const std::size_t ahead = to_the_right ? x + 2 : x;
        const std::size_t behind = to_the_right ? x : x + 2;
        for (std::size_t channel = 0; channel < 3; ++channel) {
            const std::int32_t error = left[channel] * strength_ / 100;
            const std::int32_t to_behind = error * 3 / 16;
            const std::int32_t to_below = error * 5 / 16;
            const std::int32_t to_corner = error / 16;
            current_[ahead][channel] += error - to_behind - to_below - to_corner;
            next_[behind][channel] += to_behind;
            next_[x + 1][channel] += to_below;
            next_[ahead][channel] += to_corner;
        }
    }

    const PixelView& picture_;
    const NearestEntry& nearest_;
    int strength_;
    std::int32_t limit_;
    std::span<std::uint8_t> indices_;
    std::size_t width_;
    Row current_;
    Row next_;
};

} // namespace

void dither_floyd_steinberg(const PixelView& picture, const NearestEntry& nearest, int strength,
                            std::span<std::uint8_t> indices, BandListener* listener) {
    Diffusion(picture, nearest, strength, indices).run(listener);
}

} // namespace varnoth
