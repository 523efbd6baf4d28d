// The BMP probe: reads size and depth of a Windows bitmap from its first 54 bytes. Decodes nothing.
#pragma once

#include <cstdint>
#include <string>

#include "core/base/Truth.h"
#include "core/image/BmpHeaders.h"

namespace varnoth::BmpMod {

/// The headers of the last probed file that was long enough to hold both; kept between calls.
extern BITMAPFILEHEADER FileHeader;
extern BITMAPINFOHEADER InfoHeader;

/// True for a bottom-up bitmap with a 40-byte information header; sets all four results. Otherwise, also for
/// a file of fewer than 54 bytes, returns False and sets all four to -1. Depth and compression are reported
/// but not checked. A file failure when the file cannot be opened; Overflow for a compression above 32767,
/// after the other three results have been set.
Truth ProbeBmp(const std::string& fileName, std::int32_t& width, std::int32_t& height, std::int16_t& bitCount,
               std::int16_t& compression);

} // namespace varnoth::BmpMod
