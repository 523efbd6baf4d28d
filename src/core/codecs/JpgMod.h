// Walks the markers of a JPEG file to its baseline frame header and tells the picture's size. Decodes
// nothing.
#pragma once

#include <cstdint>
#include <string>

#include "core/base/Truth.h"

namespace varnoth::JpgMod {

/// True when the walk meets a frame header of the baseline kind (SOF0) before the scan; only then `width` and
/// `height` are written. The file's failures when it cannot be opened; Overflow for a segment length or a
/// side of 32768 or more. Markers and segments: ITU-T T.81, annex B.
Truth ProbeJpeg(const std::string& filename, std::int32_t& width, std::int32_t& height);

} // namespace varnoth::JpgMod
