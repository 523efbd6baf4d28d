#include "core/image/resize_picture.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <utility>

#include "core/base/RunTimeFailure.h"

namespace varnoth {

namespace {

constexpr int largest_side = 65535;

// A part of a picture.
struct Area {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
};

// Blue, green and red times alpha, and alpha times 255. Filtering may exceed 0 to 65025.
using Sample = std::array<std::int32_t, 4>;

constexpr std::int64_t full_alpha = 255 * 255;

Sample sample_of(std::uint32_t pixel) {
    const auto alpha = static_cast<std::int32_t>(pixel >> 24);
    const auto channel = [&](int shift) {
        return static_cast<std::int32_t>((pixel >> shift) & 0xFF) * alpha;
    };
    return {channel(0), channel(8), channel(16), 255 * alpha};
}

std::uint32_t pixel_of(const Sample& sample) {
    const std::int64_t alpha = std::clamp<std::int64_t>(sample[3], 0, full_alpha);
    const auto alpha_byte = static_cast<std::uint32_t>((alpha + 127) / 255);
    if (alpha_byte == 0) {
        return 0;
    }
    const auto channel = [&](std::size_t which) {
        const std::int64_t weighted = std::max<std::int64_t>(sample[which], 0);
        return static_cast<std::uint32_t>(std::min<std::int64_t>((weighted * 255 + alpha / 2) / alpha, 255));
    };
    return alpha_byte << 24 | channel(2) << 16 | channel(1) << 8 | channel(0);
}

constexpr int weight_bits = 14; // the weights of a target pixel sum up to 1 << weight_bits

// The source pixels from `first` on that a target pixel is the weighted sum of.
struct Taps {
    int first = 0;
    std::vector<std::int32_t> weights;
};

// The Catmull-Rom cubic. Distance and result have 16 fractional bits.
std::int64_t cubic(std::int64_t distance) {
    constexpr std::int64_t one = std::int64_t{1} << 16;
    const std::int64_t square = distance * distance / one;
    const std::int64_t cube = square * distance / one;
    if (distance < one) {
        return (3 * cube - 5 * square + 2 * one) / 2;
    }
    return distance < 2 * one ? (5 * square - cube - 8 * distance + 4 * one) / 2 : 0;
}

// Rounds weights so that their sum is exact.
void normalise(std::span<const std::int64_t> weights, std::vector<std::int32_t>& rounded) {
    std::int64_t sum = 0;
    for (const std::int64_t weight : weights) {
        sum += weight;
    }
    std::int32_t rest = 1 << weight_bits;
    for (const std::int64_t weight : weights) {
        rounded.push_back(static_cast<std::int32_t>((weight << weight_bits) / sum));
        rest -= rounded.back();
    }
    *std::ranges::max_element(rounded) += rest;
}

// Positions are in units of half a target pixel divided by `from`, which makes all pixel centres integers.
std::vector<Taps> taps_between(int from, int to) {
    const std::int64_t source = from;
    const std::int64_t target = to;
    const std::int64_t unit = 2 * std::max(source, target); // distance 1 of the cubic
    std::vector<Taps> taps(static_cast<std::size_t>(to));
    std::vector<std::int64_t> weights;
    for (std::int64_t at = 0; at < target; ++at) {
        const std::int64_t centre = (2 * at + 1) * source;
        const std::int64_t first = std::max<std::int64_t>((centre - 2 * unit - target) / (2 * target), 0);
        weights.clear();
        for (std::int64_t pixel = first; pixel < source; ++pixel) {
            const std::int64_t distance = (2 * pixel + 1) * target - centre;
            if (distance >= 2 * unit) {
                break;
            }
            weights.push_back(cubic((std::abs(distance) << 16) / unit));
        }
        Taps& result = taps[static_cast<std::size_t>(at)];
        result.first = static_cast<int>(first);
        normalise(weights, result.weights);
    }
    return taps;
}

// The weighted sum of samples that are `step` apart.
Sample filter(const Taps& taps, const Sample* samples, std::size_t step) {
    std::array<std::int64_t, 4> sums{};
    const Sample* sample = samples + static_cast<std::size_t>(taps.first) * step;
    for (const std::int32_t weight : taps.weights) {
        for (std::size_t channel = 0; channel < sums.size(); ++channel) {
            sums[channel] += std::int64_t{weight} * (*sample)[channel];
        }
        sample += step;
    }
    Sample result{};
    for (std::size_t channel = 0; channel < sums.size(); ++channel) {
        result[channel] =
            static_cast<std::int32_t>((sums[channel] + (1 << (weight_bits - 1))) >> weight_bits);
    }
    return result;
}

RgbaPicture scale(const RgbaPicture& picture, const Area& area, int width, int height) {
    const std::vector<Taps> columns = taps_between(area.width, width);
    const std::vector<Taps> rows = taps_between(area.height, height);
    std::vector<Sample> narrowed; // at the new width and the old height
    narrowed.reserve(columns.size() * static_cast<std::size_t>(area.height));
    std::vector<Sample> row(static_cast<std::size_t>(area.width));
    for (int y = 0; y < area.height; ++y) {
        const std::uint32_t* pixel =
            &picture.pixels[static_cast<std::size_t>(area.top + y) * static_cast<std::size_t>(picture.width) +
                            static_cast<std::size_t>(area.left)];
        std::transform(pixel, pixel + area.width, row.begin(), sample_of);
        for (const Taps& taps : columns) {
            narrowed.push_back(filter(taps, row.data(), 1));
        }
    }
    RgbaPicture scaled{width, height, {}};
    scaled.pixels.reserve(columns.size() * rows.size());
    for (const Taps& taps : rows) {
        for (std::size_t x = 0; x < columns.size(); ++x) {
            scaled.pixels.push_back(pixel_of(filter(taps, &narrowed[x], columns.size())));
        }
    }
    return scaled;
}

// part * numerator / denominator, rounded, at least 1.
int proportion(int part, int numerator, int denominator) {
    const std::int64_t product = std::int64_t{part} * numerator;
    return static_cast<int>(std::max<std::int64_t>((product + denominator / 2) / denominator, 1));
}

RgbaPicture contain(const RgbaPicture& picture, int width, int height) {
    int inner_width = width;
    int inner_height = height;
    if (std::int64_t{picture.width} * height >= std::int64_t{picture.height} * width) {
        inner_height = proportion(picture.height, width, picture.width);
    } else {
        inner_width = proportion(picture.width, height, picture.height);
    }
    const RgbaPicture inner =
        scale(picture, {0, 0, picture.width, picture.height}, inner_width, inner_height);
    RgbaPicture framed{width, height, {}};
    framed.pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const auto left = static_cast<std::size_t>((width - inner_width) / 2);
    const auto top = static_cast<std::size_t>((height - inner_height) / 2);
    for (std::size_t y = 0; y < static_cast<std::size_t>(inner_height); ++y) {
        std::copy_n(inner.pixels.begin() +
                        static_cast<std::ptrdiff_t>(y * static_cast<std::size_t>(inner_width)),
                    inner_width,
                    framed.pixels.begin() +
                        static_cast<std::ptrdiff_t>((top + y) * static_cast<std::size_t>(width) + left));
    }
    return framed;
}

// The largest centred part with the frame's proportions.
Area centre_of(const RgbaPicture& picture, int width, int height) {
    Area area{0, 0, picture.width, picture.height};
    if (std::int64_t{picture.width} * height >= std::int64_t{picture.height} * width) {
        area.width = proportion(picture.height, width, height);
        area.left = (picture.width - area.width) / 2;
    } else {
        area.height = proportion(picture.width, height, width);
        area.top = (picture.height - area.height) / 2;
    }
    return area;
}

} // namespace

RgbaPicture resize_picture(RgbaPicture picture, int width, int height, Fit fit) {
    for (const int side : {width, height, picture.width, picture.height}) {
        if (side < 1 || side > largest_side) {
            fail(Failure::InvalidProcedureCall);
        }
    }
    if (picture.width == width && picture.height == height) {
        return picture;
    }
    switch (fit) {
    case Fit::Stretch:
        return scale(picture, {0, 0, picture.width, picture.height}, width, height);
    case Fit::Contain:
        return contain(picture, width, height);
    case Fit::Crop:
        break;
    }
    return scale(picture, centre_of(picture, width, height), width, height);
}

} // namespace varnoth
