// Expands 8-bit colour-table indices to 32-bit pixels.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "core/image/Colour.h"

namespace varnoth {

/// Prepared lookup tables, 4 KiB, for one colour table.
class IndexExpansion {
  public:
    explicit IndexExpansion(std::span<const RGBQUAD, 256> colours);

    /// Writes the 4 bytes of its colour for each index.
    void expand(std::span<const std::uint8_t> indices, std::uint8_t* pixels) const;

  private:
    // Two neighbouring pixels are written with one store of 8 bytes, combined from an entry of each table.
    // The entries of left_ have the bytes of the first pixel, those of right_ the bytes of the second; the
    // rest is 0.
    using Halves = std::array<std::uint64_t, 256>;

    Halves left_{};
    Halves right_{};
};

} // namespace varnoth
