// The PCX writer's run-length encoder as plain steps.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace varnoth::reference {

std::vector<std::uint8_t> encode_pcx_rle(std::span<const std::uint8_t> bytes);

} // namespace varnoth::reference
