// Writes sprites without a second copy of their frames in memory.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "core/sprite/SpriteFile.h"

namespace varnoth::cli {

/// Writes what write_sprite_file() returns, and then `trailing`, as write_output() does.
void save_sprite(const std::string& path, const SpriteFile& sprite, bool replace,
                 std::span<const std::uint8_t> trailing = {});

} // namespace varnoth::cli
