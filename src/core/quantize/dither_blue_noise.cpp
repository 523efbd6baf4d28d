// Error diffusion in the order of a matrix is Knuth's dot diffusion ("Digital halftones by dot diffusion",
// 1987); here the matrix is blue noise, which avoids his dots.
#include <vector>

#include "core/quantize/blue_noise.h"
#include "core/quantize/dithers.h"
#include "core/quantize/error_diffusion.h"

namespace varnoth {

namespace {

constexpr std::size_t side = blue_noise_side;
constexpr int reach = 2; // how far a pixel passes its error
constexpr int share_bits = 12;
constexpr int whole_share = 1 << share_bits;

// By the squared distance. A pixel passes its error to the later ones among its neighbours, in these
// proportions.
constexpr std::array<int, 9> weights{0, 16, 6, 0, 2, 1, 0, 0, 0};

// A pixel may receive at most 255 levels, so that errors fit 16 bits also where they add up.
constexpr std::int32_t largest_error = 16 * 255;

// A neighbour that passes a part of its error to a pixel.
struct Donor {
    int dx = 0;
    int dy = 0;
    int share = 0;
};

// The order of the pixels, for any picture. Level 0 has the pixels without donors; donors have lower levels
// than the pixels they pass their errors to.
class Schedule {
  public:
    Schedule() {
        add_donors();
        add_levels();
    }

    std::size_t level_count() const { return columns_.size(); }

    /// Columns of the matrix.
    std::span<const std::uint8_t> columns(std::size_t level, std::size_t row) const {
        return columns_[level][row % side];
    }

    std::span<const Donor> donors(std::size_t x, std::size_t y) const { return donors_[y % side][x % side]; }

  private:
    static int rank(std::size_t x, std::size_t y) { return blue_noise()[y % side][x % side]; }

    // Calls action(dx, dy, weight) for the neighbours; copies of the matrix adjoin it.
    template <typename Action>
    static void for_neighbours(Action&& action) {
        for (int dy = -reach; dy <= reach; ++dy) {
            for (int dx = -reach; dx <= reach; ++dx) {
                const int weight = weights[static_cast<std::size_t>(dx * dx + dy * dy)];
                if (weight > 0) {
                    action(dx, dy, weight);
                }
            }
        }
    }

    static std::size_t shifted(std::size_t place, int offset) {
        return (place + side + static_cast<std::size_t>(offset)) % side;
    }

    void add_donors() {
        for (std::size_t y = 0; y < side; ++y) {
            for (std::size_t x = 0; x < side; ++x) {
                const auto is_later = [&](int dx, int dy) {
                    return rank(shifted(x, dx), shifted(y, dy)) > rank(x, y);
                };
                int total = 0;
                for_neighbours([&](int dx, int dy, int weight) { total += is_later(dx, dy) ? weight : 0; });
                for_neighbours([&](int dx, int dy, int weight) {
                    if (is_later(dx, dy)) {
                        donors_[shifted(y, dy)][shifted(x, dx)].push_back(
                            {-dx, -dy, whole_share * weight / total});
                    }
                });
            }
        }
    }

    void add_levels() {
        std::array<std::size_t, side * side> by_rank{};
        for (std::size_t place = 0; place < by_rank.size(); ++place) {
            by_rank[static_cast<std::size_t>(rank(place % side, place / side))] = place;
        }
        std::array<std::array<std::size_t, side>, side> levels{};
        for (const std::size_t place : by_rank) {
            const std::size_t x = place % side;
            const std::size_t y = place / side;
            std::size_t level = 0;
            for (const Donor& donor : donors_[y][x]) {
                level = std::max(level, levels[shifted(y, donor.dy)][shifted(x, donor.dx)] + 1);
            }
            levels[y][x] = level;
            columns_.resize(std::max(columns_.size(), level + 1));
            columns_[level][y].push_back(static_cast<std::uint8_t>(x));
        }
    }

    std::array<std::array<std::vector<Donor>, side>, side> donors_;
    std::vector<std::array<std::vector<std::uint8_t>, side>> columns_; // by level and row
};

const Schedule& schedule() {
    static const Schedule instance;
    return instance;
}

class Diffusion {
  public:
    Diffusion(const PixelView& picture, const NearestEntry& nearest, int strength,
              std::span<std::uint8_t> indices)
        : picture_(picture),
          nearest_(nearest),
          strength_(strength),
          indices_(indices),
          width_(static_cast<std::size_t>(picture.width)),
          height_(static_cast<std::size_t>(picture.height)),
          stride_(width_ + 2 * reach),
          errors_(stride_ * (height_ + 2 * reach)) {}

    // Each level follows the one before it at a distance of `reach` rows, so that its donors are ready and
    // the rows in use are few.
    void run(BandListener* listener) {
        const std::size_t delay = reach * (schedule().level_count() - 1);
        map_in_bands(height_ + delay, listener, [this](std::size_t step) {
            for (std::size_t level = 0; level < schedule().level_count() && reach * level <= step; ++level) {
                const std::size_t y = step - reach * level;
                if (y < height_) {
                    map_row(y, level);
                }
            }
        });
    }

  private:
    // Of one pixel; the fourth number makes it as large as two words.
    using Error = std::array<std::int16_t, 4>;

    void map_row(std::size_t y, std::size_t level) {
        for (const std::uint8_t column : schedule().columns(level, y)) {
            for (std::size_t x = column; x < width_; x += side) {
                if (picture_.is_opaque(y * width_ + x)) {
                    map(x, y);
                }
            }
        }
    }

    void map(std::size_t x, std::size_t y) {
        const std::size_t pixel = y * width_ + x;
        const Sixteenths left = map_pixel(picture_, nearest_, pixel, received(x, y), indices_[pixel]);
        for (std::size_t channel = 0; channel < 3; ++channel) {
            errors_[place(x, y)][channel] = static_cast<std::int16_t>(left[channel] * strength_ / 100);
        }
    }

    Sixteenths received(std::size_t x, std::size_t y) const {
        std::array<std::int32_t, 4> sum{};
        const Error* here = &errors_[place(x, y)];
        for (const Donor& donor : schedule().donors(x, y)) {
            const Error& error = here[donor.dy * static_cast<std::ptrdiff_t>(stride_) + donor.dx];
            for (std::size_t channel = 0; channel < 4; ++channel) {
                sum[channel] += error[channel] * donor.share;
            }
        }
        Sixteenths result;
        for (std::size_t channel = 0; channel < 3; ++channel) {
            result[channel] =
                std::clamp((sum[channel] + whole_share / 2) >> share_bits, -largest_error, largest_error);
        }
        return result;
    }

    std::size_t place(std::size_t x, std::size_t y) const { return (y + reach) * stride_ + x + reach; }

    const PixelView& picture_;
    const NearestEntry& nearest_;
    int strength_;
    std::span<std::uint8_t> indices_;
    std::size_t width_;
    std::size_t height_;
    std::size_t stride_;
    std::vector<Error> errors_; // of the picture with a margin, 0 for pixels that pass none
};

} // namespace

void dither_blue_noise(const PixelView& picture, const NearestEntry& nearest, int strength,
                       std::span<std::uint8_t> indices, BandListener* listener) {
    Diffusion(picture, nearest, strength, indices).run(listener);
}

} // namespace varnoth
