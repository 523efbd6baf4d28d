#include "core/quantize/NearestEntry.h"

#include <algorithm>
#include <atomic>

#include "core/base/RunTimeFailure.h"
#include "core/base/threads.h"

namespace varnoth {

namespace {

constexpr int smallest_side = 8;
constexpr std::size_t cube_count = std::size_t{1} << 15;

// The octant of the colour space that contains a smallest cube.
std::size_t octant_of(std::size_t cube) {
    return (cube >> 14 & 1) << 2 | (cube >> 9 & 1) << 1 | (cube >> 4 & 1);
}

} // namespace

struct NearestEntry::Cube {
    std::array<int, 3> low{};
    int side = 256;

    // The lowest value over the cube of (distance to `entry`) - (distance to `rival`). The difference is
    // linear, so that it is lowest in a corner.
    int lowest_difference(const std::array<int, 3>& entry, const std::array<int, 3>& rival) const {
        int sum = 0;
        for (std::size_t channel = 0; channel < 3; ++channel) {
            const int slope = 2 * (rival[channel] - entry[channel]);
            const int at = slope < 0 ? low[channel] + side - 1 : low[channel];
            sum += slope * at + entry[channel] * entry[channel] - rival[channel] * rival[channel];
        }
        return sum;
    }

    Cube octant(int number) const {
        const int half = side / 2;
        return {{low[0] + (number & 4 ? half : 0), low[1] + (number & 2 ? half : 0),
                 low[2] + (number & 1 ? half : 0)},
                half};
    }

    std::size_t index() const {
        return static_cast<std::size_t>(low[0] / smallest_side << 10 | low[1] / smallest_side << 5 |
                                        low[2] / smallest_side);
    }
};

struct NearestEntry::Entries {
    std::array<std::uint8_t, 256> numbers;
    std::size_t count = 0;

    void push_back(std::uint8_t number) { numbers[count++] = number; }

    std::span<const std::uint8_t> all() const { return std::span(numbers).first(count); }
};

NearestEntry::NearestEntry(std::span<const RGBQUAD> palette, std::size_t threads)
    : size_(palette.size()), lists_(cube_count) {
    if (palette.empty() || palette.size() > colours_.size() || threads == 0) {
        fail(Failure::InvalidProcedureCall);
    }
    Entries all;
    for (const RGBQUAD& entry : palette) {
        colours_[all.count] = {entry.rgbBlue, entry.rgbGreen, entry.rgbRed};
        all.push_back(static_cast<std::uint8_t>(all.count));
    }
    // One vector for each octant of the colour space, so that threads can fill them.
    std::array<std::vector<std::uint8_t>, 8> candidates;
    std::atomic<std::size_t> next = 0;
    run_in_threads(std::min(threads, candidates.size()), [&](std::size_t /*thread*/) {
        for (std::size_t octant = next++; octant < candidates.size(); octant = next++) {
            divide(Cube().octant(static_cast<int>(octant)), all, candidates[octant]);
        }
    });
    std::array<std::size_t, 8> first{};
    for (std::size_t octant = 0; octant < candidates.size(); ++octant) {
        first[octant] = candidates_.size();
        candidates_.insert(candidates_.end(), candidates[octant].begin(), candidates[octant].end());
    }
    for (std::size_t cube = 0; cube < lists_.size(); ++cube) {
        lists_[cube].first += static_cast<std::uint32_t>(first[octant_of(cube)]);
    }
}

void NearestEntry::divide(const Cube& cube, const Entries& entries, std::vector<std::uint8_t>& candidates) {
    const Entries kept = without_beaten(cube, entries);
    if (cube.side == smallest_side) {
        lists_[cube.index()] = {static_cast<std::uint32_t>(candidates.size()),
                                static_cast<std::uint32_t>(kept.count)};
        candidates.insert(candidates.end(), kept.all().begin(), kept.all().end());
        return;
    }
    for (int number = 0; number < 8; ++number) {
        divide(cube.octant(number), kept, candidates);
    }
}

NearestEntry::Entries NearestEntry::without_beaten(const Cube& cube, const Entries& entries) const {
    const int half = cube.side / 2;
    const auto from_centre = [&](std::uint8_t entry) {
        return distance(entry, cube.low[0] + half, cube.low[1] + half, cube.low[2] + half);
    };
    const std::uint8_t rival = *std::ranges::min_element(entries.all(), {}, from_centre);
    Entries kept;
    for (const std::uint8_t entry : entries.all()) {
        const int difference = cube.lowest_difference(colours_[entry], colours_[rival]);
        if (difference < 0 || (difference == 0 && entry <= rival)) {
            kept.push_back(entry);
        }
    }
    return kept;
}

} // namespace varnoth
