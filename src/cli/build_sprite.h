// Makes a sprite from pictures.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "cli/picture_frames.h"
#include "cli/pictures.h"
#include "core/sprite/SpriteFile.h"

namespace varnoth::cli {

/// The place of a frame's top left corner relative to the sprite's position, as in a frame header: x to the
/// right, y upwards.
struct FrameOrigin {
    std::int32_t x = 0;
    std::int32_t y = 0;
};

/// The origin that puts the sprite's position in the centre of the frame.
FrameOrigin centre_origin(const FrameSize& size);

/// The defaults are those of the editor's New dialog.
struct SpriteOptions {
    std::optional<FrameSize> size; ///< the first picture's by default
    std::int32_t type = 2;
    RenderMode mode = RenderMode::Additive;
    std::int32_t sync = 1;
    std::optional<FrameOrigin> origin; ///< the centre by default
    std::optional<std::size_t>
        colours;                  ///< in the palette, in AlphaTest with the transparent one; default 256
    std::vector<RGBQUAD> palette; ///< used instead of a new one unless empty
    std::optional<PaletteColour> colour; ///< of an IndexAlpha sprite; that of the pictures by default
    PictureOptions pictures;
};

/// Reads the pictures twice, or once if the palette is given. A single GIF file whose frames share one colour
/// table keeps its palette and indices if no option asks for others and the mode can show them. The result
/// does not depend on the number of threads. CommandError for the first picture that cannot be read.
SpriteFile build_sprite(const std::vector<PictureSource>& sources, const SpriteOptions& options);

} // namespace varnoth::cli
