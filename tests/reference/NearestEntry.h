// Reference implementation of the search for the nearest palette entry: compares all of them.
#pragma once

#include <cstdint>
#include <span>

#include "core/image/Colour.h"

namespace varnoth::reference {

/// The index of the entry with the least squared distance over red, green and blue; the lowest among equals.
std::uint8_t nearest_entry(std::span<const RGBQUAD> palette, Colour colour);

} // namespace varnoth::reference
