// What the error-diffusing dithers have in common. Errors are in sixteenths of a level.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "core/quantize/map_to_palette.h"

namespace varnoth {

/// An error or a colour in sixteenths: blue, green, red.
using Sixteenths = std::array<std::int32_t, 3>;

/// Sets the index of a pixel that receives an error. Returns the error that this leaves.
inline Sixteenths map_pixel(const PixelView& picture, const NearestEntry& nearest, std::size_t pixel,
                            const Sixteenths& received, std::uint8_t& index) {
    Sixteenths wanted;
    for (std::size_t channel = 0; channel < 3; ++channel) {
        wanted[channel] = 16 * picture.pixels[4 * pixel + channel] + received[channel];
    }
    if (picture.is_kept(pixel)) {
        index = picture.indices_before[pixel];
    } else {
        const auto rounded = [&](std::size_t channel) {
            return static_cast<std::uint8_t>(std::clamp((wanted[channel] + 8) >> 4, 0, 255));
        };
        index = nearest(rounded(0), rounded(1), rounded(2));
    }
    Sixteenths error;
    for (std::size_t channel = 0; channel < 3; ++channel) {
        error[channel] = wanted[channel] - 16 * nearest.colour(index)[channel];
    }
    return error;
}

/// Calls map(step) for each step, in bands of a few steps.
template <typename Map>
void map_in_bands(std::size_t steps, BandListener* listener, Map&& map) {
    constexpr std::size_t steps_per_band = 16;
    for (std::size_t first = 0; first < steps; first += steps_per_band) {
        if (listener != nullptr) {
            listener->before_band(first / steps_per_band);
        }
        for (std::size_t step = first; step < std::min(first + steps_per_band, steps); ++step) {
            map(step);
        }
        if (listener != nullptr) {
            listener->after_band(first / steps_per_band);
        }
    }
}

} // namespace varnoth
