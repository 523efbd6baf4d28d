// The stages of the PCX reader in plain steps, as slow and as simple as can be.
#pragma once

#include <cstdint>
#include <vector>

namespace varnoth::reference {

/// The last byte of the input is the spare one.
std::vector<std::uint8_t> decode_pcx_rle(const std::vector<std::uint8_t>& bytes);

/// Width at least 2, height at least 1.
std::vector<std::uint8_t> merge_pcx_planes(const std::vector<std::uint8_t>& bytes,
                                           std::int32_t bytes_per_line, std::int32_t width,
                                           std::int32_t height);

} // namespace varnoth::reference
