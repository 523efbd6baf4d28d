// Finds damaged PNG files before libpng does, which prints a line of its own for some of them.
#pragma once

#include <cstdint>
#include <span>

namespace varnoth::cli {

bool is_png(std::span<const std::uint8_t> file);

/// Whether the chunks of a PNG file are complete up to its end chunk, of valid types and, as far as they are
/// critical, known and undamaged.
bool is_whole_png(std::span<const std::uint8_t> file);

} // namespace varnoth::cli
