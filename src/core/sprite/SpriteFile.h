// A sprite file exactly as it is, each frame with its own header, for programs that inspect, build and edit
// sprites. The editor works on SpriteDocument instead, which has one frame header for all frames.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "core/sprite/SpriteDocument.h"

namespace varnoth {

struct SpriteFrame {
    FrameHeaderRecord header;

    /// FrameWidth times FrameHeight palette indices, top row first.
    std::vector<std::uint8_t> indices;
};

struct SpriteFile {
    SpriteHeaderRecord header; ///< FrameCount is the file's; write_sprite_file() takes the number of frames
    PaletteRecord palette;
    std::vector<SpriteFrame> frames;
};

/// How much a finding matters.
enum class Severity {
    Note,    ///< unusual, but harmless
    Warning, ///< the game may not show the sprite as intended
    Error,   ///< damaged, or refused by the editor
};

struct SpriteFinding {
    Severity severity = Severity::Note;
    std::uint64_t offset = 0; ///< in bytes from the start of the file
    std::string text;         ///< one sentence without a full stop
};

struct SpriteParse {
    /// As much as could be read; frames of a truncated file are filled with zeros.
    SpriteFile sprite;

    /// Everything unusual or wrong, by offset.
    std::vector<SpriteFinding> findings;

    /// Bytes after the last frame.
    std::uint64_t trailing_bytes = 0;

    /// Whether the editor opens the file.
    bool opens_in_editor = false;
};

/// Reads a sprite file from memory. Never fails on malformed bytes, which become findings; OutOfMemory for
/// frames that do not fit into memory.
SpriteParse parse_sprite_file(std::span<const std::uint8_t> bytes);

/// The bytes of a sprite file with `sprite.frames.size()` as its frame count.
std::vector<std::uint8_t> write_sprite_file(const SpriteFile& sprite);

} // namespace varnoth
