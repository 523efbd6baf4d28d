// Reference implementation of the PCX writer's run-length encoder.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace varnoth::reference {

std::vector<std::uint8_t> encode_pcx_rle(std::span<const std::uint8_t> bytes);

} // namespace varnoth::reference
