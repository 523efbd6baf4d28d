// Merges the colours of all pictures of an import into the one palette that the sprite's frames share, and
// finds the palette entry nearest to a pixel. AddPictureColors collects the colours in a table and
// DrawColorTable draws the table on a surface, the sheet. The import reduces the sheet to 256 colours like
// any picture, and FinalizePalette takes the palette from it.
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

// The state of the module. Only the functions below change it.

/// The result, blue first. Never cleared: entries that an import does not write keep the colours of earlier
/// imports.
extern std::array<RGBQUAD, 256> ImportPalette;

/// The distinct colours collected so far, followed by at least one black entry.
extern std::vector<RGBQUAD> ColorTable;

/// The next free entry, of ColorTable while colours are collected, of ImportPalette while it is finalized.
extern std::int32_t ColorCount;

/// The palette that nearest_index searches; null before the first import.
extern std::unique_ptr<LogicalPalette> hLookupPalette;

/// The surface of the last PrepareMixBits. While surfaces have its size, MixBits is reused.
extern BITMAP MixInfo;

/// The pixels of the surface last read.
extern PixelBlock MixBits;

/// Resets the table for a new import, to 1001 black entries.
void InitColorTable();

/// Adds the picture's colours that are not in the table yet, in the order of their first appearance from the
/// top left. Returns false and adds nothing for a surface of fewer than 24 bits per pixel.
/// SubscriptOutOfRange for such a surface when the last surface prepared had the same size, and before the
/// first InitColorTable.
bool AddPictureColors(PictureSurface& surface);

/// Draws the table on the surface, one pixel per colour. The surface becomes 512 pixels wide and as high as
/// the colours need. SubscriptOutOfRange before the first InitColorTable.
void DrawColorTable(PictureSurface& surface);

/// Copies the sheet's distinct colours, in the order of their first appearance, to ImportPalette and makes
/// the lookup palette from it. SubscriptOutOfRange for a 257th colour.
void FinalizePalette(PictureSurface& surface);

/// Intended to move the transparent colour to entry 255; the definition says what it does instead.
void SwapTransparent(std::uint8_t red, std::uint8_t green, std::uint8_t blue);

/// Allocates MixBits for the surface unless the last surface had the same size. False for fewer than 24 bits
/// per pixel.
bool PrepareMixBits(const PictureSurface& surface);

/// Copies the surface's pixels into MixBits.
void ReadMixBits(const PictureSurface& surface);

/// Makes the lookup palette from all 256 entries of ImportPalette.
void MakeLookupPalette();

/// Finds nearest_index for each pixel. A pixel has `pixel_bytes` bytes, which begin with blue, green, red.
/// `pixels` must contain as many pixels as `indices` has elements; of the last one, the three colour bytes
/// are enough unless pixels have 4 bytes.
void nearest_indices(std::span<const std::uint8_t> pixels, std::size_t pixel_bytes,
                     std::span<std::uint8_t> indices);

// Interface: not used by the editor itself.

/// Whether one of the table's entries 0 to `limit`, inclusive, is the colour.
bool SeekColorInTable(std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::int32_t limit);

/// Whether one of ImportPalette's entries 0 to `limit`, inclusive, is the colour.
bool SeekColorInPalette(std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::int32_t limit);

/// The index of the entry of the lookup palette that is nearest to the colour. Overflow when there is no
/// lookup palette yet.
std::int16_t nearest_index(std::uint8_t red, std::uint8_t green, std::uint8_t blue);

} // namespace varnoth::mixpals
