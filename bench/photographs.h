// Generates photograph-like pictures for the benchmarks: fractal noise over gradients, with tens of thousands
// of colours each. The same seed always gives the same picture.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "support/TemporaryFolder.h"
#include "support/pictures.h"

namespace varnoth::bench {

inline constexpr std::int32_t photograph_side = 256;

/// The pixels as blue, green, red bytes, rows from the top, without padding.
std::vector<std::uint8_t> photograph_bytes(std::uint32_t seed);

using Surfaces = std::vector<std::unique_ptr<test::TestSurface>>;

/// Photographs of the seeds 0 to `count` - 1 on 32-bit surfaces. Generated once per process.
const Surfaces& photographs(std::size_t count);

/// The same, each reduced to 256 colours.
const Surfaces& reduced_photographs(std::size_t count);

/// Writes the photographs of the seeds 0 to `count` - 1 as 24-bit BMP files, photograph0.bmp and so on.
void write_photographs(const std::string& folder, std::size_t count);

} // namespace varnoth::bench
