// The one sprite of the program and what is done to it: making, loading, saving, drawing and adding frames.
// The file is the Half-Life sprite file, version 2 (magic "IDSP"): a 40-byte header, a 770-byte palette
// record, then every frame as a 20-byte header and its palette indices. All numbers are little-endian.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/base/Truth.h"
#include "core/image/PictureSurface.h"
#include "core/sprite/SpriteDocument.h"

namespace varnoth::hlspr {

/// The document. There is exactly one for the life of the program; every command works on it in place.
SpriteDocument& document();

/// The sprite has not had its file name chosen yet, so saving must ask for one.
extern bool UnnamedSprite;

/// There are changes to offer to save.
extern bool SpriteDirty;

/// The output folder last chosen for extracted frames, "" at first.
extern std::string ExtractFolder;

/// Replaces the document by an empty sprite. Sizes in pixels are not tested: 0 or less is stored as it comes.
void new_sprite(std::int32_t width, std::int32_t height, std::int32_t sprite_type, std::int32_t render_mode);

/// Drops all frames; the rest of the header, the palette colours and the frame header stay.
void clear_frames();

/// Reads a sprite file straight into the document. True when every frame was read. False after the message
/// that tells why; the document then keeps whatever had been read by that time.
Truth load_sprite(const std::string& path);

/// Writes the document, frames in display order. An old file of that name is deleted first, so a failure
/// after that leaves none or a short one. False after the message "Unknown Error Saving Sprite.".
Truth save_sprite(const std::string& path);

/// "NORMAL" and so on for 0 to 3, "-1" for any other number.
std::string_view render_mode_name(std::int32_t render_mode);

/// "VP_PARALLEL_UPRIGHT" and so on for 0 to 4, "-1" for any other number.
std::string_view sprite_type_name(std::int32_t sprite_type);

/// Draws the frame at a display position in its plain palette colours; the picture takes the sprite's size.
/// The position comes back as the number of the stored frame: callers go on from there.
/// SubscriptOutOfRange for a position without a frame, a frame shorter than the sprite's size, or a size of
/// 0; InvalidPropertyValue for a size below 0; Overflow or OutOfMemory for one that a picture cannot have.
void draw_frame(std::int16_t& frame_number, PictureSurface& picture);

/// Appends a frame: for each pixel of the picture the nearest index in the last import's lookup palette. The
/// first frame brings the import's palette into the document. Overflow for the 32,769th frame, whose number
/// leaves 16 bits, and before the first import; SubscriptOutOfRange for a picture without pixels or of fewer
/// than 24 bits; OutOfMemory. FrameCount has gone up by then.
void add_frame(PictureSurface& picture);

/// Gives the document's palette the colours of ImportPalette.
void take_frame_palette();

} // namespace varnoth::hlspr
