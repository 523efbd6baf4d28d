#include "colour/nearest_levels.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace varnoth {

namespace {

constexpr std::size_t levels = 16;
constexpr std::size_t block_levels = 4;
constexpr std::size_t blocks = levels / block_levels;
constexpr std::int32_t level_step = 17;

using PerEntry = std::array<std::int32_t, 256>;

constexpr std::int32_t square(std::int32_t value) {
    return value * value;
}

// For one channel: squared distances of each entry to the lowest and the highest level of each block.
struct Ends {
    std::array<PerEntry, blocks> low{};
    std::array<PerEntry, blocks> high{};
};

template <typename Channel>
Ends ends_of(std::span<const RGBQUAD> entries, Channel channel) {
    Ends ends;
    for (std::size_t block = 0; block < blocks; ++block) {
        const std::int32_t low = static_cast<std::int32_t>(block * block_levels) * level_step;
        const std::int32_t high = low + static_cast<std::int32_t>(block_levels - 1) * level_step;
        for (std::size_t i = 0; i < entries.size(); ++i) {
            ends.low[block][i] = square(channel(entries[i]) - low);
            ends.high[block][i] = square(channel(entries[i]) - high);
        }
    }
    return ends;
}

// The distances of all entries to the ends of one block along one channel.
struct BlockEnds {
    const PerEntry& low;
    const PerEntry& high;

    BlockEnds(const Ends& ends, std::size_t block) : low(ends.low[block]), high(ends.high[block]) {}

    std::int32_t both(std::size_t i) const { return low[i] + high[i]; }

    // By how much entry i is farther than the other, at the end where that is least. Between the ends the
    // difference of the squared distances is linear.
    std::int32_t least_gap(std::size_t i, std::int32_t other_low, std::int32_t other_high) const {
        return std::min(low[i] - other_low, high[i] - other_high);
    }
};

// Squared distances of one channel's value to the levels of a block. Distances stay below 2^18, so multiplied
// by 256 they leave room for an index, and the minimum of such keys is the nearest entry with the lowest
// index.
std::array<std::int32_t, block_levels> keys_of(std::int32_t value, std::size_t block) {
    std::array<std::int32_t, block_levels> keys{};
    for (std::size_t i = 0; i < block_levels; ++i) {
        const auto level = static_cast<std::int32_t>(block * block_levels + i);
        keys[i] = square(value - level * level_step) * 256;
    }
    return keys;
}

struct Block {
    std::size_t red;
    std::size_t green;
    std::size_t blue;
};

using BlockKeys = std::array<std::array<std::array<std::int32_t, block_levels>, block_levels>, block_levels>;

BlockKeys no_keys() {
    BlockKeys keys;
    for (auto& plane : keys) {
        for (auto& line : plane) {
            line.fill(std::numeric_limits<std::int32_t>::max());
        }
    }
    return keys;
}

void enter_keys(BlockKeys& best, const RGBQUAD& entry, std::int32_t index, const Block& block) {
    const auto red = keys_of(entry.rgbRed, block.red);
    const auto green = keys_of(entry.rgbGreen, block.green);
    const auto blue = keys_of(entry.rgbBlue, block.blue);
    for (std::size_t k = 0; k < block_levels; ++k) {
        for (std::size_t j = 0; j < block_levels; ++j) {
            const std::int32_t others = blue[k] + green[j] + index;
            for (std::size_t i = 0; i < block_levels; ++i) {
                best[k][j][i] = std::min(best[k][j][i], others + red[i]);
            }
        }
    }
}

void store_indices(std::array<std::uint8_t, 4096>& lookup, const BlockKeys& best, const Block& block) {
    for (std::size_t k = 0; k < block_levels; ++k) {
        for (std::size_t j = 0; j < block_levels; ++j) {
            const std::size_t line =
                (block.blue * block_levels + k) * levels + block.green * block_levels + j;
            for (std::size_t i = 0; i < block_levels; ++i) {
                const std::size_t at = line * levels + block.red * block_levels + i;
                lookup[at] = static_cast<std::uint8_t>(best[k][j][i] & 255);
            }
        }
    }
}

// Calls enter(i) for every entry that may be nearest to a colour of the block, in rising order. Left out is
// what is farther than the entry in the middle all over the block.
template <typename Enter>
void each_candidate(std::size_t count, const BlockEnds& red, const BlockEnds& green, const BlockEnds& blue,
                    Enter enter) {
    PerEntry distances{};
    for (std::size_t i = 0; i < count; ++i) {
        distances[i] = red.both(i) + green.both(i) + blue.both(i);
    }
    const auto used = std::span(distances).first(count);
    const auto middle = static_cast<std::size_t>(std::ranges::min_element(used) - used.begin());
    PerEntry gaps{};
    for (std::size_t i = 0; i < count; ++i) {
        gaps[i] = red.least_gap(i, red.low[middle], red.high[middle]) +
                  green.least_gap(i, green.low[middle], green.high[middle]) +
                  blue.least_gap(i, blue.low[middle], blue.high[middle]);
    }
    for (std::size_t i = 0; i < count; ++i) {
        if (gaps[i] <= 0) {
            enter(i);
        }
    }
}

} // namespace

std::array<std::uint8_t, 4096> nearest_to_levels(std::span<const RGBQUAD> entries) {
    const Ends red = ends_of(entries, [](const RGBQUAD& entry) { return entry.rgbRed; });
    const Ends green = ends_of(entries, [](const RGBQUAD& entry) { return entry.rgbGreen; });
    const Ends blue = ends_of(entries, [](const RGBQUAD& entry) { return entry.rgbBlue; });

    std::array<std::uint8_t, 4096> lookup{};
    for (std::size_t number = 0; number < blocks * blocks * blocks; ++number) {
        const Block block{number % blocks, number / blocks % blocks, number / blocks / blocks};
        BlockKeys best = no_keys();
        each_candidate(
            entries.size(), {red, block.red}, {green, block.green}, {blue, block.blue},
            [&](std::size_t i) { enter_keys(best, entries[i], static_cast<std::int32_t>(i), block); });
        store_indices(lookup, best, block);
    }
    return lookup;
}

} // namespace varnoth
