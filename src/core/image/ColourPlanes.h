// 8-bit indices turned into 32-bit pixels 64 at a time, on processors that can look up so many bytes at once.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "core/image/Colour.h"

namespace varnoth {

/// A table of colours, one byte of all of them after the other.
class ColourPlanes {
  public:
    explicit ColourPlanes(std::span<const RGBQUAD, 256> colours);

    /// `pixels` takes the 4 bytes of its colour for each of the first indices. Answers for how many: all but
    /// the last up to 63 on an x86-64 processor with AVX-512 VBMI, none on another one.
    std::size_t expand(std::span<const std::uint8_t> indices, std::uint8_t* pixels) const;

  private:
    using Plane = std::array<std::uint8_t, 256>;

    std::array<Plane, 4> planes_{};
};

} // namespace varnoth
