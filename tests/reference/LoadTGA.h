// Reference implementation of the stages of the TGA reader, as simple as possible.
#pragma once

#include <cstdint>
#include <vector>

namespace varnoth::reference {

/// Decodes packets of pixels of `pixel_bytes` bytes each into total + 1 bytes.
std::vector<std::uint8_t> decode_tga_rle(const std::vector<std::uint8_t>& bytes, std::int32_t pixel_bytes,
                                         std::int32_t total);

} // namespace varnoth::reference
