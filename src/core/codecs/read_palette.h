// The palette files of other programs: bytes in, colours out.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "core/image/Colour.h"

namespace varnoth {

struct PaletteColours {
    std::vector<RGBQUAD> colours;
    std::optional<std::uint8_t> transparent; ///< the index of the transparent colour, if the file has one
};

/// Reads a palette that its first bytes identify: JASC, RIFF or GIMP. Empty for any other file.
/// InvalidPicture when it is truncated or malformed.
std::optional<PaletteColours> read_palette(std::span<const std::uint8_t> file);

/// Reads a palette without a magic: 256 triples of red, green and blue, and in an Adobe colour table perhaps
/// the number of colours and the transparent index. Empty when the length is not 768 or 772 bytes.
std::optional<PaletteColours> read_raw_palette(std::span<const std::uint8_t> file);

} // namespace varnoth
