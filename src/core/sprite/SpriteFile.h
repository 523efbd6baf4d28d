// A sprite file exactly as it is, each frame with its own header, for programs that inspect, build and edit
// sprites. The editor works on SpriteDocument instead, which has one frame header for all frames.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/sprite/RenderMode.h"
#include "core/sprite/SpriteDocument.h"

namespace varnoth {

struct SpriteFrame {
    FrameHeaderRecord header;

    /// FrameWidth times FrameHeight palette indices, top row first. Zeros for pixels that a truncated file
    /// lacks; they take no memory until they are read.
    ByteArray indices;
};

struct SpriteFile {
    SpriteHeaderRecord header; ///< FrameCount is the file's; write_sprite_file() takes the number of frames
    PaletteRecord palette;
    std::vector<SpriteFrame> frames;

    RenderMode mode() const { return static_cast<RenderMode>(header.RenderMode); }
};

/// How much a finding matters.
enum class Severity {
    Note,    ///< unusual or worth knowing, but harmless
    Warning, ///< the game may not show the sprite as intended
    Error,   ///< damaged, or refused by the editor
};

struct SpriteFinding {
    Severity severity = Severity::Note;
    std::uint64_t offset = 0; ///< in bytes from the start of the file
    std::string text;         ///< one sentence without a full stop
};

struct SpriteParse {
    /// As much as could be read: FrameCount may be higher than the number of frames.
    SpriteFile sprite;

    /// Where the header of each frame begins, in bytes from the start of the file.
    std::vector<std::uint64_t> frame_offsets;

    /// Everything unusual or wrong, by offset.
    std::vector<SpriteFinding> findings;

    /// Pixels of the last frame that the file lacks.
    std::uint64_t missing_pixels = 0;

    /// Bytes after the last frame, if all frames were read.
    std::uint64_t trailing_bytes = 0;

    /// Whether read_sprite() succeeds for the file.
    bool opens_in_editor = false;
};

/// "note", "warning" or "error".
std::string_view name_of(Severity severity);

/// Reads a sprite file from memory. Does not fail on malformed bytes, which become findings. OutOfMemory when
/// the frames do not fit into memory.
SpriteParse parse_sprite_file(std::span<const std::uint8_t> bytes);

/// The bytes of a sprite file with `sprite.frames.size()` as its frame count.
std::vector<std::uint8_t> write_sprite_file(const SpriteFile& sprite);

} // namespace varnoth
