// Writes pixels as a binary PPM file (Netpbm's P6: red, green, blue bytes, rows from the top).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/image/Bitmap.h"

namespace varnoth {

/// The red, green, blue bytes of all pixels, rows from the top.
std::vector<std::uint8_t> rgb_bytes(const Bitmap& bitmap);

/// Writes the file; fails as OutputFile does.
void write_ppm(const std::string& path, const Bitmap& bitmap);

} // namespace varnoth
