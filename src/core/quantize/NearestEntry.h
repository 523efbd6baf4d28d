// Finds the palette entry nearest to a colour, exactly and fast.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "core/image/Colour.h"

namespace varnoth {

/// The colour space is divided into cubes of 8 by 8 by 8 colours, each with a list of the entries that are
/// the nearest of at least one of its colours, and perhaps of a few others. Distance is squared Euclidean
/// over blue, green and red; the lowest index wins among equals. A search does not change the object, so that
/// threads can share it.
class NearestEntry {
  public:
    /// InvalidProcedureCall unless there are 1 to 256 entries and at least one thread for the construction.
    explicit NearestEntry(std::span<const RGBQUAD> palette, std::size_t threads = 1);

    std::uint8_t operator()(std::uint8_t blue, std::uint8_t green, std::uint8_t red) const {
        const std::size_t cube = (std::size_t{blue} >> 3) << 10 | (std::size_t{green} >> 3) << 5 | red >> 3;
        const std::uint8_t* candidate = &candidates_[lists_[cube].first];
        const std::uint8_t* const end = candidate + lists_[cube].size;
        std::uint8_t best = *candidate;
        for (int least = distance(best, blue, green, red); ++candidate != end;) {
            const int next = distance(*candidate, blue, green, red);
            if (next < least) {
                least = next;
                best = *candidate;
            }
        }
        return best;
    }

    /// The colour of an entry: blue, green, red.
    const std::array<int, 3>& colour(std::uint8_t entry) const { return colours_[entry]; }

    /// The number of entries.
    std::size_t size() const { return size_; }

  private:
    // Part of candidates_; never empty, and ascending.
    struct List {
        std::uint32_t first = 0;
        std::uint32_t size = 0;
    };

    struct Cube;
    struct Entries;

    // Gives each smallest cube within `cube` those of the entries that can be nearest to one of its colours,
    // as a part of `candidates`.
    void divide(const Cube& cube, const Entries& entries, std::vector<std::uint8_t>& candidates);

    // The entries that no single rival beats in the whole cube, the rival being the one nearest to its
    // centre.
    Entries without_beaten(const Cube& cube, const Entries& entries) const;

    int distance(std::uint8_t entry, int blue, int green, int red) const {
        const auto& [entry_blue, entry_green, entry_red] = colours_[entry];
        const int by_blue = entry_blue - blue;
        const int by_green = entry_green - green;
        const int by_red = entry_red - red;
        return by_blue * by_blue + by_green * by_green + by_red * by_red;
    }

    std::size_t size_ = 0;
    std::array<std::array<int, 3>, 256> colours_{};
    std::vector<std::uint8_t> candidates_;
    std::vector<List> lists_; // of each cube
};

} // namespace varnoth
