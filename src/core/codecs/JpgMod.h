// The JPEG probe: walks the markers to the baseline frame header and reads the picture's size. Decodes
// nothing.
#pragma once

#include <cstdint>
#include <string>

#include "core/base/Truth.h"

namespace varnoth::JpgMod {

/// True when a baseline frame header (SOF0) precedes the first scan; only then `width` and `height` are set.
/// A file failure when the file cannot be opened; Overflow for a segment length or a side of 32768 or more.
/// Markers and segments: ITU-T T.81, annex B.
Truth ProbeJpeg(const std::string& filename, std::int32_t& width, std::int32_t& height);

} // namespace varnoth::JpgMod
