// The stages of the TGA reader in plain steps, as slow and as simple as can be.
#pragma once

#include <cstdint>
#include <vector>

namespace varnoth::reference {

/// Packets of `pixel_bytes` a pixel into total + 1 bytes.
std::vector<std::uint8_t> decode_tga_rle(const std::vector<std::uint8_t>& bytes, std::int32_t pixel_bytes,
                                         std::int32_t total);

} // namespace varnoth::reference
