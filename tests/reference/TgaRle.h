// The TGA writer's run-length encoder as plain steps, each test in the order in which it is made.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace varnoth::reference {

std::vector<std::uint8_t> encode_tga_rle(std::span<const std::uint8_t> bytes, std::int32_t width);

} // namespace varnoth::reference
