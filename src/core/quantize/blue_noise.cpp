#include "core/quantize/blue_noise.h"

#include <algorithm>

namespace varnoth {

namespace {

constexpr std::size_t side = blue_noise_side;
constexpr std::size_t places = side * side;

// 1000 exp(-d^2 / (2 * 1.5^2)) for distances of 0 to 5, with the width that Ulichney recommends. As integers,
// the sums do not depend on the order of additions.
constexpr std::array<std::uint32_t, 6> falloff{1000, 801, 411, 135, 29, 4};
constexpr std::size_t reach = falloff.size() - 1;

// A pattern of ones, and at each place how close they are. Searches look at the extremes of the rows first.
class Pattern {
  public:
    bool at(std::size_t place) const { return masks_[place] != 0; }

    void set(std::size_t place, bool one) {
        masks_[place] = one ? every_bit : 0;
        for (std::size_t dy = 0; dy <= 2 * reach; ++dy) {
            const std::size_t y = (place / side + side + dy - reach) % side;
            for (std::size_t dx = 0; dx <= 2 * reach; ++dx) {
                const std::size_t x = (place % side + side + dx - reach) % side;
                const std::uint32_t share = falloff[distance(dx)] * falloff[distance(dy)];
                density_[y * side + x] += one ? share : 0 - share;
            }
            find_extremes(y);
        }
    }

    /// The one among the most others; the first such.
    std::size_t tightest_cluster() const {
        const auto row = static_cast<std::size_t>(std::ranges::max_element(most_) - most_.begin());
        std::size_t place = row * side;
        while ((density_[place] & masks_[place]) != most_[row]) {
            ++place;
        }
        return place;
    }

    /// The zero farthest from the ones; the first such.
    std::size_t largest_void() const {
        const auto row = static_cast<std::size_t>(std::ranges::min_element(least_) - least_.begin());
        std::size_t place = row * side;
        while ((density_[place] | masks_[place]) != least_[row]) {
            ++place;
        }
        return place;
    }

  private:
    static constexpr std::uint32_t every_bit = 0xFFFFFFFF;

    static std::size_t distance(std::size_t offset) {
        return offset < reach ? reach - offset : offset - reach;
    }

    // A loop without branches, which compilers vectorise.
    void find_extremes(std::size_t y) {
        std::uint32_t most = 0;
        std::uint32_t least = every_bit;
        for (std::size_t place = y * side; place < (y + 1) * side; ++place) {
            most = std::max(most, density_[place] & masks_[place]);
            least = std::min(least, density_[place] | masks_[place]);
        }
        most_[y] = most;
        least_[y] = least;
    }

    std::array<std::uint32_t, places> masks_{}; // every bit set for a one
    std::array<std::uint32_t, places> density_{};
    std::array<std::uint32_t, side> most_{};  // by row, the greatest density of a one
    std::array<std::uint32_t, side> least_{}; // by row, the least density of a zero
};

// A tenth of the places, pseudo-randomly, then moved from clusters to voids until they are even.
Pattern even_pattern(std::size_t& ones) {
    Pattern pattern;
    std::uint32_t random = 1;
    for (ones = 0; ones < places / 10;) {
        random = random * 1664525 + 1013904223; // Numerical Recipes
        const std::size_t place = random >> 20;
        if (!pattern.at(place)) {
            pattern.set(place, true);
            ++ones;
        }
    }
    for (;;) {
        const std::size_t cluster = pattern.tightest_cluster();
        pattern.set(cluster, false);
        const std::size_t free = pattern.largest_void();
        pattern.set(free, true);
        if (free == cluster) {
            return pattern;
        }
    }
}

BlueNoiseMatrix make_blue_noise() {
    BlueNoiseMatrix matrix{};
    const auto set_rank = [&](std::size_t place, std::size_t rank) {
        matrix[place / side][place % side] = static_cast<std::uint16_t>(rank);
    };
    std::size_t ones = 0;
    Pattern pattern = even_pattern(ones);
    Pattern thinned = pattern;
    for (std::size_t rank = ones; rank-- > 0;) {
        const std::size_t cluster = thinned.tightest_cluster();
        thinned.set(cluster, false);
        set_rank(cluster, rank);
    }
    for (std::size_t rank = ones; rank < places; ++rank) {
        const std::size_t free = pattern.largest_void();
        pattern.set(free, true);
        set_rank(free, rank);
    }
    return matrix;
}

} // namespace

const BlueNoiseMatrix& blue_noise() {
    static const BlueNoiseMatrix matrix = make_blue_noise();
    return matrix;
}

} // namespace varnoth
