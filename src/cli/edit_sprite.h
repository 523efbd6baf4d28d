// Changes the frames and the header of a sprite.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cli/build_sprite.h"
#include "cli/picture_frames.h"
#include "core/sprite/SpriteFile.h"

namespace varnoth::cli {

struct FrameReplacement {
    std::size_t frame = 0;
    PictureSource picture;
};

struct FrameMove {
    std::size_t from = 0;
    std::size_t to = 0;
};

/// The edits, applied from top to bottom. Frames are numbered from 0.
struct SpriteEdits {
    // Header fields.
    std::optional<std::int32_t> type;
    std::optional<RenderMode> mode; ///< new frames and palettes are made for it
    std::optional<std::int32_t> sync;

    // With the numbers of the sprite as it was.
    std::vector<FrameReplacement> replace; ///< by a picture of the frame's size
    std::vector<std::size_t> remove;

    std::vector<PictureSource> append; ///< as frames of the sprite's size
    bool repalette = false;            ///< a new palette for the old and the new frames

    // With the numbers as they are by then.
    std::vector<FrameMove> moves; ///< each frame is taken out and put back so that it has the new number
    std::optional<std::vector<std::size_t>> order; ///< the old number of each frame
    bool reverse = false;

    bool centre = false; ///< all frames get the origin of their centre
    std::optional<FrameOrigin> origin;

    PictureOptions pictures;
};

/// Applies the edits; changes nothing else. CommandError, naming `file`, for a frame that does not exist, an
/// order that does not name each frame once, a sprite that would have no frames, and pictures that cannot
/// become frames; the sprite is then half-edited.
void edit_sprite(SpriteFile& sprite, const SpriteEdits& edits, const std::string& file);

} // namespace varnoth::cli
