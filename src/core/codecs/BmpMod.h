// Looks at the first 54 bytes of a file and says whether they are a plain Windows bitmap, of what size and
// depth. Decodes nothing.
#pragma once

#include <cstdint>
#include <string>

#include "core/base/Truth.h"
#include "core/image/BmpHeaders.h"

namespace varnoth::BmpMod {

/// The records of the last file that had them whole; kept between calls.
extern BITMAPFILEHEADER FileHeader;
extern BITMAPINFOHEADER InfoHeader;

/// True, with the four results set, for a bottom-up bitmap with a 40-byte information header. False
/// otherwise, also for a file of fewer than 54 bytes, and all four results are -1. Depth and compression are
/// told, not judged. The file's failures when it cannot be opened; Overflow for a compression above 32767,
/// after the three other results are set.
Truth ProbeBmp(const std::string& fileName, std::int32_t& width, std::int32_t& height, std::int16_t& bitCount,
               std::int16_t& compression);

} // namespace varnoth::BmpMod
