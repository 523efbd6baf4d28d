// Shared by the fuzz targets of the command line's picture readers.
#pragma once

#include <optional>

#include "core/image/RgbaPicture.h"
#include "fuzzing.h"

namespace varnoth::fuzzing {

constexpr std::int64_t most_pixels = 1 << 14;

/// Reads a file; what is read must be consistent.
template <typename Read>
std::optional<RgbaPicture> read_rgba(Read&& read, std::span<const std::uint8_t> file) {
    std::optional<RgbaPicture> picture;
    succeeds([&] { picture = read(file, most_pixels); });
    if (picture) {
        const auto count = static_cast<std::int64_t>(picture->pixels.size());
        require(picture->width > 0 && picture->height > 0 && count <= most_pixels,
                "a picture has pixels, and no more than the limit");
        require(std::int64_t{picture->width} * picture->height == count, "every pixel is in the picture");
    }
    return picture;
}

/// Reads a file whole and without its last byte, which only its pixels may depend on.
template <typename Read>
std::optional<RgbaPicture> read_whole_and_truncated(Read&& read, std::span<const std::uint8_t> file) {
    const std::optional<RgbaPicture> whole = read_rgba(read, file);
    if (whole) {
        const std::optional<RgbaPicture> truncated = read_rgba(read, file.first(file.size() - 1));
        require(!truncated || (truncated->width == whole->width && truncated->height == whole->height),
                "a truncated file has the size of the whole one");
    }
    return whole;
}

} // namespace varnoth::fuzzing
