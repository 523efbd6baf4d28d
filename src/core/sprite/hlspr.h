// The edited sprite and the operations on it: creating, loading, saving, drawing and adding frames.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/base/Truth.h"
#include "core/image/PictureSurface.h"
#include "core/sprite/SpriteDocument.h"

namespace varnoth::hlspr {

/// The document. There is exactly one per process; all commands modify it in place.
SpriteDocument& document();

/// No file name has been chosen yet, so saving must ask for one.
extern bool UnnamedSprite;

/// There are unsaved changes.
extern bool SpriteDirty;

/// The folder last chosen for extracted frames, initially "".
extern std::string ExtractFolder;

/// Replaces the document with an empty sprite. Sizes are in pixels and not validated.
void new_sprite(std::int32_t width, std::int32_t height, std::int32_t sprite_type, std::int32_t render_mode);

/// Removes all frames; keeps the rest of the header, the palette colours and the frame header.
void clear_frames();

/// Reads a sprite file into the document as read_sprite() does. On an error shows its message and returns
/// False.
Truth load_sprite(const std::string& path);

/// Writes the document as write_sprite() does. On failure shows "Unknown Error Saving Sprite." and returns
/// False.
Truth save_sprite(const std::string& path);

/// "NORMAL" and so on for 0 to 3, "-1" for any other number.
std::string_view render_mode_name(std::int32_t render_mode);

/// "VP_PARALLEL_UPRIGHT" and so on for 0 to 4, "-1" for any other number.
std::string_view sprite_type_name(std::int32_t sprite_type);

/// Draws the frame at a display position in its palette colours, without transparency, and resizes the
/// picture to the sprite's size. Replaces `frame_number` by the number of the stored frame; callers continue
/// from it. SubscriptOutOfRange for a position without a frame, a frame shorter than the sprite's size, or a
/// size of 0; InvalidPropertyValue for a negative size; Overflow or OutOfMemory for one too large for a
/// picture.
void draw_frame(std::int16_t& frame_number, PictureSurface& picture);

/// Appends a frame: for each pixel of the picture, the nearest index in the lookup palette of the last
/// import. The first frame also copies the import's palette to the document. Overflow for the 32,769th frame,
/// whose number does not fit 16 bits, and before the first import; SubscriptOutOfRange for a picture without
/// pixels or of fewer than 24 bits; OutOfMemory. A failure leaves FrameCount incremented.
void add_frame(PictureSurface& picture);

/// Copies the colours of ImportPalette to the document's palette.
void take_frame_palette();

} // namespace varnoth::hlspr
