// How often each colour occurs in any number of pictures, in a fixed amount of memory.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "core/image/Colour.h"

namespace varnoth {

/// The sum of some colours, each as often as its weight.
struct ColourSum {
    std::uint64_t weight = 0;
    std::array<std::uint64_t, 3> sums{}; ///< of blue, green and red

    void add(const ColourSum& other) {
        weight += other.weight;
        for (std::size_t channel = 0; channel < sums.size(); ++channel) {
            sums[channel] += other.sums[channel];
        }
    }

    /// The rounded mean; the weight must not be 0.
    RGBQUAD mean() const {
        const auto rounded = [this](std::uint64_t sum) {
            return static_cast<std::uint8_t>((sum + weight / 2) / weight);
        };
        return {rounded(sums[0]), rounded(sums[1]), rounded(sums[2]), 0};
    }
};

/// Counts single colours as long as there are at most `most_exact` of them, and bins of 4 by 4 by 4 colours
/// from then on. Everything is an integer sum, so that neither the order of the pixels nor the way in which
/// they are divided between merged histograms affects the result. Takes at most 10 MiB.
class ColourHistogram {
  public:
    static constexpr std::size_t most_exact = 65536;

    /// Adds pixels of 4 bytes each: blue, green, red, unused.
    void add(std::span<const std::uint8_t> pixels);

    /// The same, but leaves out the pixels whose byte in `opaque` is 0. SubscriptOutOfRange unless there is
    /// one byte per pixel.
    void add(std::span<const std::uint8_t> pixels, std::span<const std::uint8_t> opaque);

    /// Adds what another histogram has counted.
    void add(const ColourHistogram& other, std::size_t threads = 1);

    /// Whether every bin is a single colour.
    bool exact() const { return bins_.empty(); }

    /// The number and the sum of the pixels of each colour or bin that occurs, in an order that depends only
    /// on the colours.
    std::vector<ColourSum> bins() const;

  private:
    // Open addressing: a colour is in the first slot from its hash on that has it or is empty.
    struct Slot {
        Colour colour = no_colour;
        std::uint64_t count = 0;
    };

    void count(Colour colour, std::uint64_t times);
    void count_exactly(Colour colour, std::uint64_t times);
    void switch_to_bins();
    ColourSum& bin_of(Colour colour);

    std::vector<Slot> slots_;     // empty before the first colour and in the binned form
    std::size_t colours_ = 0;     // number of slots in use
    std::vector<ColourSum> bins_; // empty in the exact form
};

} // namespace varnoth
