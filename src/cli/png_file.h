// Finds damaged PNG files before libpng does, which prints a line of its own for some of them.
#pragma once

#include <cstdint>
#include <span>

namespace varnoth::cli {

bool is_png(std::span<const std::uint8_t> file);

/// Whether a PNG file has all chunks up to its end chunk, and the chunks without which it cannot be decoded
/// have the right checksums.
bool is_whole_png(std::span<const std::uint8_t> file);

} // namespace varnoth::cli
