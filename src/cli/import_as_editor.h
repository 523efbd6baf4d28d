// Makes a sprite as the editor's Add Frame/s dialog does, with its palette, its dither and its readers.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/build_sprite.h"

namespace varnoth::cli {

struct EditorImport {
    std::optional<FrameSize> size; ///< pictures are resized to it; the first picture's by default
    std::int32_t type = 2;
    RenderMode mode = RenderMode::Additive;

    /// The colour picked as transparent. By default that of the top left pixel of the last picture, as in the
    /// editor. Used in IndexAlpha and AlphaTest only.
    std::optional<PaletteColour> transparent;

    bool quiet = false; ///< no progress bar
};

/// The sprite that a freshly started editor saves after importing these pictures in this order. A folder
/// stands for its BMP, JPEG, TGA and PCX files, in the order of the editor's list. CommandError for a picture
/// that the editor refuses, and for pictures of several formats, which it does not import together. Uses the
/// editor's document; call once per process.
SpriteFile import_as_editor(const std::vector<std::string>& paths, const EditorImport& options);

} // namespace varnoth::cli
