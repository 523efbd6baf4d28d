// The input is a sprite file in memory. The parser must agree with the editor's reader on whether it opens
// and on its frames, explain every refusal, and a parsed file must be written as it was read.
#include <algorithm>

#include "core/sprite/SpriteFile.h"
#include "core/sprite/sprite_file.h"
#include "fuzzing.h"
#include "sprite_sizes.h"

namespace {

using namespace varnoth;

constexpr std::int64_t largest_frame = 1 << 14;
constexpr std::uint32_t inputs_for_one_read = 16;

bool has_error(const SpriteParse& parse) {
    return std::ranges::any_of(
        parse.findings, [](const SpriteFinding& finding) { return finding.severity == Severity::Error; });
}

bool has_these_frames(const SpriteFile& sprite, const SpriteDocument& document) {
    return std::ranges::equal(sprite.frames, document.FrameStore, {}, &SpriteFrame::indices);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> bytes(data, size);
    SpriteParse parse;
    if (!fuzzing::has_no_larger_frame(bytes, largest_frame) ||
        !fuzzing::succeeds([&] { parse = parse_sprite_file(bytes); })) {
        return 0;
    }
    for (const SpriteFinding& finding : parse.findings) {
        fuzzing::require(finding.offset <= size, "a finding is in the file");
    }
    if (!has_error(parse)) {
        fuzzing::require(parse.opens_in_editor, "a file that is refused has an error");
        const std::vector<std::uint8_t> written = write_sprite_file(parse.sprite);
        fuzzing::require(
            std::ranges::equal(written, bytes.first(size - static_cast<std::size_t>(parse.trailing_bytes))),
            "the written file is the one that was read");
    }
    if (fuzzing::is_one_in(inputs_for_one_read, bytes)) {
        SpriteDocument document;
        const bool read = !read_sprite(fuzzing::scratch_file("input.spr", bytes), document);
        fuzzing::require(read == parse.opens_in_editor, "the parser and the editor agree");
        fuzzing::require(!read || has_these_frames(parse.sprite, document), "the frames are the same");
    }
    return 0;
}
