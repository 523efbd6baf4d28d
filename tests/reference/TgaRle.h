// Reference implementation of the TGA writer's run-length encoder, with all tests in their original order.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace varnoth::reference {

std::vector<std::uint8_t> encode_tga_rle(std::span<const std::uint8_t> bytes, std::int32_t width);

} // namespace varnoth::reference
