// What the error-diffusing dithers have in common. Errors are in sixteenths of a level.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "core/quantize/NearestEntry.h"

namespace varnoth {

/// An error or a colour in sixteenths: blue, green, red.
using Sixteenths = std::array<std::int32_t, 3>;

/// The choice of an entry, and the error that this leaves.
struct Choice {
    std::uint8_t entry = 0;
    Sixteenths error{};
};

/// Chooses the entry for a pixel (blue, green, red) that receives an error.
inline Choice choose(const NearestEntry& nearest, const std::uint8_t* pixel, const Sixteenths& received) {
    Sixteenths wanted;
    std::array<std::uint8_t, 3> rounded;
    for (std::size_t channel = 0; channel < 3; ++channel) {
        wanted[channel] = 16 * pixel[channel] + received[channel];
        rounded[channel] = static_cast<std::uint8_t>(std::clamp((wanted[channel] + 8) >> 4, 0, 255));
    }
    Choice choice{nearest(rounded[0], rounded[1], rounded[2]), wanted};
    for (std::size_t channel = 0; channel < 3; ++channel) {
        choice.error[channel] -= 16 * nearest.colour(choice.entry)[channel];
    }
    return choice;
}

} // namespace varnoth
