// Merges the colours of all pictures of one import into the one palette that a sprite's frames share, and
// answers which of its entries is nearest to a pixel. The colours met are gathered in a table and painted on
// a sheet, the sheet is reduced by whoever runs the import, and what is left on it is the palette.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "core/image/Bitmap.h"
#include "core/image/LogicalPalette.h"
#include "core/image/PictureSurface.h"
#include "core/image/PixelBlock.h"

namespace varnoth::mixpals {

// Module state. It lives as long as the program; nothing but the routines below changes it.

/// The result, blue first. Never cleared: an entry that an import does not write keeps what an earlier one
/// left.
extern std::array<RGBQUAD, 256> ImportPalette;

/// The different colours met so far, with a black entry behind the last.
extern std::vector<RGBQUAD> ColorTable;

/// The next free position: in ColorTable while collecting, in ImportPalette while finalizing.
extern std::int32_t ColorCount;

/// What nearest_index searches; null before the first import.
extern std::unique_ptr<LogicalPalette> hLookupPalette;

/// The surface last prepared; its size decides whether MixBits is sized anew.
extern BITMAP MixInfo;

/// The pixels of the surface last read.
extern PixelBlock MixBits;

/// Empties the table for a new import: 1001 positions, all black.
void InitColorTable();

/// Adds the colours of a picture that the table does not hold yet, in the order of their first appearance
/// from the top left. False, and nothing added, for a surface of fewer than 24 bits a pixel.
/// SubscriptOutOfRange for such a surface when one of its size was prepared before, and before the first
/// InitColorTable.
bool AddPictureColors(PictureSurface& surface);

/// Whether the table holds the colour at one of the positions 0 to limit, the limit included.
bool SeekColorInTable(std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::int32_t limit);

/// Paints the table on the surface, which becomes 512 pixels wide and as high as the colours need.
/// SubscriptOutOfRange before the first InitColorTable.
void DrawColorTable(PictureSurface& surface);

/// Takes the colours of the sheet, in the order of their first appearance, as ImportPalette and makes the
/// lookup palette of it. SubscriptOutOfRange for a 257th colour.
void FinalizePalette(PictureSurface& surface);

/// Whether ImportPalette holds the colour at one of the entries 0 to limit, the limit included.
bool SeekColorInPalette(std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::int32_t limit);

/// Meant to bring the transparent colour to entry 255; see the definition for what it does.
void SwapTransparent(std::uint8_t red, std::uint8_t green, std::uint8_t blue);

/// Sizes MixBits for the surface unless it has the size of the one before. False for fewer than 24 bits a
/// pixel.
bool PrepareMixBits(const PictureSurface& surface);

/// Copies the surface's pixels into MixBits.
void ReadMixBits(const PictureSurface& surface);

/// Makes the lookup palette of all 256 entries of ImportPalette.
void MakeLookupPalette();

/// Index 0 to 255 of the entry nearest to the colour among those that ImportPalette held when the lookup
/// palette was made. Overflow when none was made yet.
std::int16_t nearest_index(std::uint8_t red, std::uint8_t green, std::uint8_t blue);

/// nearest_index of each of the pixels, which begin `pixel_bytes` apart with blue, green and red. `pixels`
/// must hold those three bytes of as many pixels as there are indices; where a pixel has 4 bytes, all 4 of
/// them.
void nearest_indices(std::span<const std::uint8_t> pixels, std::size_t pixel_bytes,
                     std::span<std::uint8_t> indices);

} // namespace varnoth::mixpals
