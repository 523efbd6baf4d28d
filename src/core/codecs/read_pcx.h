// The PCX reader of the command line: bytes in, picture out. Unlike LoadPCX, which the editor uses, it reads
// PCX files of all depths, with the palettes that they mean.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "core/image/Colour.h"
#include "core/image/RgbaPicture.h"

namespace varnoth {

/// Whether the bytes begin with the header of a PCX file of a supported depth.
bool is_pcx(std::span<const std::uint8_t> file);

/// Decodes a PCX file. Rows missing from a truncated file are transparent if the file has alpha, otherwise
/// black; in an incomplete row, the missing bytes are 0. InvalidPicture for bytes that are no PCX file,
/// OutOfMemory for more than `max_pixels` pixels.
RgbaPicture read_pcx(std::span<const std::uint8_t> file, std::int64_t max_pixels);

/// The 2 to 256 colours by index; empty for true-colour pictures. InvalidPicture when the bytes are no PCX
/// file.
std::vector<RGBQUAD> pcx_palette(std::span<const std::uint8_t> file);

} // namespace varnoth
