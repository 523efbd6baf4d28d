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

// For one channel: how near and how far an entry is at least and at most from the levels of each block, squared.
struct Reach {
    std::array<PerEntry, blocks> nearest{};
    std::array<PerEntry, blocks> farthest{};
};

template <typename Channel>
Reach reach_of(std::span<const RGBQUAD> entries, Channel channel) {
    Reach reach;
    for (std::size_t block = 0; block < blocks; ++block) {
        const std::int32_t low = static_cast<std::int32_t>(block * block_levels) * level_step;
        const std::int32_t high = low + static_cast<std::int32_t>(block_levels - 1) * level_step;
        for (std::size_t i = 0; i < entries.size(); ++i) {
            const std::int32_t value = channel(entries[i]);
            reach.nearest[block][i] = square(std::max({low - value, value - high, 0}));
            reach.farthest[block][i] = square(std::max(value - low, high - value));
        }
    }
    return reach;
}

// Squared distances of one channel's value to the levels of a block. Distances stay below 2^18, so multiplied by
// 256 they leave room for an index, and the minimum of such keys is the nearest entry with the lowest index.
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
            const std::size_t line = (block.blue * block_levels + k) * levels + block.green * block_levels + j;
            for (std::size_t i = 0; i < block_levels; ++i) {
                const std::size_t at = line * levels + block.red * block_levels + i;
                lookup[at] = static_cast<std::uint8_t>(best[k][j][i] & 255);
            }
        }
    }
}

} // namespace

std::array<std::uint8_t, 4096> nearest_to_levels(std::span<const RGBQUAD> entries) {
    const Reach red = reach_of(entries, [](const RGBQUAD& entry) { return entry.rgbRed; });
    const Reach green = reach_of(entries, [](const RGBQUAD& entry) { return entry.rgbGreen; });
    const Reach blue = reach_of(entries, [](const RGBQUAD& entry) { return entry.rgbBlue; });

    std::array<std::uint8_t, 4096> lookup{};
    PerEntry least{};
    for (std::size_t number = 0; number < blocks * blocks * blocks; ++number) {
        const Block block{number % blocks, number / blocks % blocks, number / blocks / blocks};
        std::int32_t limit = std::numeric_limits<std::int32_t>::max();
        for (std::size_t i = 0; i < entries.size(); ++i) {
            least[i] = red.nearest[block.red][i] + green.nearest[block.green][i] + blue.nearest[block.blue][i];
            limit = std::min(limit, red.farthest[block.red][i] + green.farthest[block.green][i] +
                                        blue.farthest[block.blue][i]);
        }
        // An entry whose least distance is above another's greatest is nearest to no colour of the block.
        BlockKeys best = no_keys();
        for (std::size_t i = 0; i < entries.size(); ++i) {
            if (least[i] <= limit) {
                enter_keys(best, entries[i], static_cast<std::int32_t>(i), block);
            }
        }
        store_indices(lookup, best, block);
    }
    return lookup;
}

} // namespace varnoth
