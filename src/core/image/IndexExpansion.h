// 8-bit indices turned into 32-bit pixels.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "core/image/Colour.h"

namespace varnoth {

/// Made once for a table of colours, 4 KiB.
class IndexExpansion {
  public:
    explicit IndexExpansion(std::span<const RGBQUAD, 256> colours);

    /// `pixels` takes the 4 bytes of its colour for each index.
    void expand(std::span<const std::uint8_t> indices, std::uint8_t* pixels) const;

  private:
    // Two neighbouring pixels are stored as one number of 8 bytes: half as many stores. Each table holds its
    // pixel's bytes where they are in memory and zeros for its neighbour's.
    using Halves = std::array<std::uint64_t, 256>;

    Halves left_{};
    Halves right_{};
};

} // namespace varnoth
