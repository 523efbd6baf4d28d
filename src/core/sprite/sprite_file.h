// Reading and writing sprite files. A Half-Life sprite file, version 2 (magic "IDSP"), has a 40-byte header,
// a 770-byte palette record, then for each frame a 20-byte header and its palette indices. All numbers are
// little-endian.
#pragma once

#include <optional>
#include <string>

#include "core/base/RunTimeFailure.h"
#include "core/sprite/SpriteDocument.h"

namespace varnoth {

/// Why a sprite file could not be read.
struct SpriteReadError {
    std::string message;                   ///< for the user
    std::optional<RunTimeFailure> failure; ///< what stopped the reader; none for a file that it rejects
};

/// Reads a sprite file directly into the document. Empty when every frame was read. On an error, the document
/// keeps what had been read. Shows no message and needs no installed services.
std::optional<SpriteReadError> read_sprite(const std::string& path, SpriteDocument& sprite);

/// Writes the document, frames in display order. Deletes an existing file first, so a later failure leaves no
/// file or a truncated one. SubscriptOutOfRange when the order refers to a missing frame; failures of files
/// propagate.
void write_sprite(const std::string& path, const SpriteDocument& sprite);

} // namespace varnoth
