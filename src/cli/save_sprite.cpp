#include "cli/save_sprite.h"

#include <array>
#include <vector>

#include "cli/files.h"
#include "core/base/numbers.h"

namespace varnoth::cli {

void save_sprite(const std::string& path, const SpriteFile& sprite, bool replace,
                 std::span<const std::uint8_t> trailing) {
    SpriteHeaderRecord header = sprite.header;
    header.FrameCount = narrow<std::int32_t>(sprite.frames.size());
    const auto header_bytes = to_bytes(header);
    const auto palette_bytes = to_bytes(sprite.palette);
    std::vector<std::array<std::uint8_t, FrameHeaderRecord::file_size>> frame_headers;
    frame_headers.reserve(sprite.frames.size()); // the parts refer to them
    std::vector<std::span<const std::uint8_t>> parts{header_bytes, palette_bytes};
    for (const SpriteFrame& frame : sprite.frames) {
        parts.emplace_back(frame_headers.emplace_back(to_bytes(frame.header)));
        parts.push_back(frame.indices.bytes());
    }
    parts.push_back(trailing);
    write_output(path, parts, replace);
}

} // namespace varnoth::cli
