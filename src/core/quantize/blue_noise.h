// A matrix of thresholds whose patterns have no low frequencies.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace varnoth {

inline constexpr std::size_t blue_noise_side = 64;

using BlueNoiseMatrix = std::array<std::array<std::uint16_t, blue_noise_side>, blue_noise_side>;

/// Each number from 0 to 4095 once. The places of the numbers below any limit are distributed evenly, also
/// across the edges of copies side by side. Made at the first call, by the void-and-cluster method: Ulichney,
/// "The void-and-cluster method for dither array generation", 1993.
const BlueNoiseMatrix& blue_noise();

} // namespace varnoth
