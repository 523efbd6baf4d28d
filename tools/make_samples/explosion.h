// Computes the sample explosion: a fireball of seeded noise that grows, throws embers and cools to smoke. It
// uses only additions, multiplications, divisions and square roots, so it is identical on every machine.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "core/image/Colour.h"

namespace varnoth::samples {

inline constexpr std::int32_t explosion_frames = 16;
inline constexpr std::int32_t explosion_side = 64; ///< width and height in pixels

/// The pixels of frame 0 to 15 on black, rows from the top.
std::vector<Colour> explosion_frame(std::int32_t frame);

/// The 256 colours of the chart: fire from cold to white-hot, smoke, and fire seen through smoke.
std::array<Colour, 256> chart_colours();

} // namespace varnoth::samples
