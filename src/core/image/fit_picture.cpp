#include "core/image/fit_picture.h"

#include <algorithm>

namespace varnoth {

namespace {

/// Sums over an area of 2^31 pixels: at most 255 * 255 * 2^31 each, less than 2^47.
struct Sums {
    std::int64_t weight = 0;
    std::int64_t alpha = 0;
    std::int64_t channels[3] = {}; ///< red, green and blue, times alpha

    void add(std::uint32_t colour, std::int64_t part) {
        const std::int64_t visible = part * (colour >> 24);
        weight += part;
        alpha += visible;
        for (int i = 0; i < 3; ++i) {
            channels[i] += visible * (colour >> (16 - 8 * i) & 0xFF);
        }
    }

    std::uint32_t average() const {
        std::uint32_t result = rounded(alpha, weight);
        for (const std::int64_t channel : channels) {
            result = result << 8 | rounded(channel, alpha);
        }
        return result;
    }

  private:
    static std::uint32_t rounded(std::int64_t sum, std::int64_t count) {
        return count == 0 ? 0 : static_cast<std::uint32_t>((sum + count / 2) / count);
    }
};

/// The source pixels that a target pixel covers along one axis. In units of which a target pixel has `source`
/// and a source pixel `target`, all edges are integers.
class Cover {
  public:
    Cover(std::int64_t source, std::int64_t target, std::int64_t pixel)
        : target_(target), start_(pixel * source), end_(start_ + source) {}

    std::int64_t first() const { return start_ / target_; }

    std::int64_t last() const { return (end_ - 1) / target_; }

    std::int64_t part_of(std::int64_t pixel) const {
        return std::min(end_, (pixel + 1) * target_) - std::max(start_, pixel * target_);
    }

  private:
    std::int64_t target_;
    std::int64_t start_;
    std::int64_t end_;
};

std::int32_t scaled(std::int32_t side, std::int32_t most, std::int32_t longest) {
    if (longest <= most) {
        return side;
    }
    const std::int64_t rounded = (2 * std::int64_t{side} * most + longest) / (2 * std::int64_t{longest});
    return static_cast<std::int32_t>(std::max<std::int64_t>(rounded, 1));
}

std::uint32_t average_of(const IndexedPicture& picture, const Cover& columns, const Cover& rows) {
    Sums sums;
    for (std::int64_t y = rows.first(); y <= rows.last(); ++y) {
        for (std::int64_t x = columns.first(); x <= columns.last(); ++x) {
            const std::uint8_t index = picture.indices[static_cast<std::size_t>(y * picture.width + x)];
            sums.add(picture.colours[index], columns.part_of(x) * rows.part_of(y));
        }
    }
    return sums.average();
}

} // namespace

RgbaPicture fit_picture(const IndexedPicture& picture, std::int32_t side) {
    const std::int32_t longest = std::max(picture.width, picture.height);
    RgbaPicture result{scaled(picture.width, side, longest), scaled(picture.height, side, longest), {}};
    for (std::int32_t y = 0; y < result.height; ++y) {
        const Cover rows(picture.height, result.height, y);
        for (std::int32_t x = 0; x < result.width; ++x) {
            result.pixels.push_back(average_of(picture, Cover(picture.width, result.width, x), rows));
        }
    }
    return result;
}

} // namespace varnoth
