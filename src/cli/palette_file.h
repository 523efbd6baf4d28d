// Palettes from files: sprites, the palette files of other programs, and pictures.
#pragma once

#include <string>

#include "core/codecs/read_palette.h"

namespace varnoth::cli {

/// 1 to 256 colours of a file, or of standard input for "-":
/// - all colours of a sprite;
/// - a palette file: JASC, RIFF, GIMP, Adobe colour table, or 768 bytes;
/// - the colour table of an indexed picture;
/// - the colours of any other picture in the order in which they occur, without fully transparent pixels.
/// Of an animated or multi-page file, the first picture counts. CommandError when the file cannot be read, is
/// none of these, or has more than 256 colours.
PaletteColours read_palette_file(const std::string& path);

} // namespace varnoth::cli
