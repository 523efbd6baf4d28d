// Reference implementation of the stages of the PCX reader, as simple as possible.
#pragma once

#include <cstdint>
#include <vector>

namespace varnoth::reference {

/// Decodes run-length encoded bytes. The last input byte is a spare one.
std::vector<std::uint8_t> decode_pcx_rle(const std::vector<std::uint8_t>& bytes);

/// Merges bit planes into bytes. The width must be at least 2, the height at least 1.
std::vector<std::uint8_t> merge_pcx_planes(const std::vector<std::uint8_t>& bytes,
                                           std::int32_t bytes_per_line, std::int32_t width,
                                           std::int32_t height);

} // namespace varnoth::reference
