// Writes PCX files of version 5 with 8 bits per pixel and a palette of 256 colours, run-length encoded.
#pragma once

#include <cstdint>
#include <vector>

#include "core/image/IndexedPicture.h"

namespace varnoth {

/// Overflow when a side exceeds 32766 pixels. Runs end with their row.
std::vector<std::uint8_t> write_pcx(const IndexedPicture& picture);

} // namespace varnoth
