// The TGA reader of the command line: bytes in, picture out. Unlike LoadTGA, which the editor uses, it reads
// every kind of TGA file as its format defines it.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "core/image/Colour.h"
#include "core/image/RgbaPicture.h"

namespace varnoth {

/// Whether the bytes are a TGA file. The format has no magic, so its header is only plausible: recognise all
/// other formats first.
bool is_tga(std::span<const std::uint8_t> file);

/// Decodes a TGA file. Pixels missing from a truncated file are transparent if the file has alpha, otherwise
/// black. InvalidPicture for bytes that are no TGA file or end before the pixels, OutOfMemory for more than
/// `max_pixels` pixels.
RgbaPicture read_tga(std::span<const std::uint8_t> file, std::int64_t max_pixels);

/// The colours by index: black before the first entry in the file. Empty for a picture without a colour map.
/// InvalidPicture when the bytes are no TGA file or end within the colour map.
std::vector<RGBQUAD> tga_colour_map(std::span<const std::uint8_t> file);

} // namespace varnoth
