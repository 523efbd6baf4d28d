// Which sprite files are cheap to read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

#include "core/sprite/SpriteDocument.h"

namespace varnoth::fuzzing {

/// A small file may declare frames of up to 2 GiB, which are filled with zeros. That is cheap except under
/// the sanitizer, where each takes half a second and finds nothing more.
inline bool has_no_larger_frame(std::span<const std::uint8_t> bytes, std::int64_t largest) {
    std::size_t at = SpriteHeaderRecord::file_size + PaletteRecord::file_size;
    while (at + FrameHeaderRecord::file_size <= bytes.size()) {
        const auto record = bytes.subspan(at).first<FrameHeaderRecord::file_size>();
        const FrameHeaderRecord header = frame_header_from_bytes(record);
        const std::int64_t size = std::int64_t{header.FrameWidth} * header.FrameHeight;
        if (size <= 0 || size > std::numeric_limits<std::int32_t>::max()) {
            return true; // refused before memory is allocated
        }
        if (size > largest) {
            return false;
        }
        at += FrameHeaderRecord::file_size + static_cast<std::size_t>(size);
    }
    return true;
}

} // namespace varnoth::fuzzing
