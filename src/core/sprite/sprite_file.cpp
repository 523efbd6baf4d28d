#include "core/sprite/sprite_file.h"

#include <algorithm>
#include <array>
#include <new>
#include <span>
#include <utility>

#include "core/base/files.h"
#include "core/base/numbers.h"

namespace varnoth {

namespace {

// Frame numbers are signed 16-bit, so no more slots than this can be used. A file that claims more gets this
// many; reading it fails at the first frame number that overflows, if not before.
constexpr std::int32_t max_frame_slots = 32768;

template <std::size_t Size>
std::array<std::uint8_t, Size> read_record(InputFile& file) {
    std::array<std::uint8_t, Size> bytes{}; // bytes missing from a truncated file stay 0
    file.read(bytes);
    return bytes;
}

// Bytes missing from a truncated file are 0. Because a header may claim any size, memory beyond the end of
// the file is not touched.
void read_indices(InputFile& file, ByteArray& indices, std::size_t size) {
    if (file.remaining() < static_cast<std::int64_t>(size)) {
        indices = ByteArray(size);
        file.read(indices.bytes());
        return;
    }
    indices = ByteArray::for_overwrite(size);
    const auto clear_from = [&](std::size_t first) {
        std::ranges::fill(indices.bytes().subspan(first), std::uint8_t{0});
    };
    try {
        clear_from(file.read(indices.bytes())); // the file may have shrunk meanwhile
    } catch (const RunTimeFailure&) {
        clear_from(0);
        throw;
    }
}

void read_frame(InputFile& file, std::int16_t number, SpriteDocument& sprite) {
    std::array<std::uint8_t, FrameHeaderRecord::file_size> bytes{};
    if (file.read(bytes) != bytes.size()) {
        fail(Failure::DeviceIo);
    }
    sprite.FrameHeader = frame_header_from_bytes(bytes);
    const std::int32_t size = checked_multiply(sprite.FrameHeader.FrameWidth, sprite.FrameHeader.FrameHeight);
    if (size <= 0) {
        fail(Failure::SubscriptOutOfRange);
    }
    const auto slot = static_cast<std::size_t>(number);
    read_indices(file, sprite.FrameStore[slot], static_cast<std::size_t>(size));
    sprite.FrameOrder[slot] = number;
}

// Stores each record before validating it: a rejected file leaves its header in the document. Returns the
// message of a rejected file.
std::optional<std::string> read_file(const std::string& path, SpriteDocument& sprite) {
    InputFile file(path);
    sprite.SpriteHeader = sprite_header_from_bytes(read_record<SpriteHeaderRecord::file_size>(file));
    if (sprite.SpriteHeader.Ident != SpriteHeaderRecord::sprite_ident) {
        return "Not A Half-Life Sprite " + path;
    }
    if (sprite.SpriteHeader.FrameCount < 1) {
        return "No Sprites In File";
    }
    sprite.Palette = palette_from_bytes(read_record<PaletteRecord::file_size>(file));
    if (sprite.Palette.ColourCount != PaletteRecord::sprite_colours) {
        return "Not 8bpp sprite";
    }
    const auto slots = static_cast<std::size_t>(std::min(sprite.SpriteHeader.FrameCount, max_frame_slots));
    sprite.replace_frames(slots);
    for (std::int32_t i = 0; i < sprite.SpriteHeader.FrameCount; ++i) {
        read_frame(file, narrow<std::int16_t>(i), sprite);
    }
    return std::nullopt;
}

} // namespace

std::optional<SpriteReadError> read_sprite(const std::string& path, SpriteDocument& sprite) {
    constexpr const char* unknown_error = "Unknown Error Loading Sprite.";
    try {
        if (std::optional<std::string> rejection = read_file(path, sprite)) {
            return SpriteReadError{*std::move(rejection), std::nullopt};
        }
        return std::nullopt;
    } catch (const RunTimeFailure& failure) {
        return SpriteReadError{unknown_error, failure};
    } catch (const std::bad_alloc&) {
        return SpriteReadError{unknown_error, RunTimeFailure(Failure::OutOfMemory)};
    }
}

void write_sprite(const std::string& path, const SpriteDocument& sprite) {
    if (file_exists(path)) {
        delete_file(path);
    }
    const auto frame_header = to_bytes(sprite.FrameHeader);
    OutputFile file(path);
    file.write(to_bytes(sprite.SpriteHeader));
    file.write(to_bytes(sprite.Palette));
    for (std::int32_t i = 0; i < sprite.SpriteHeader.FrameCount; ++i) {
        check_subscript(i, sprite.FrameOrder.size());
        const std::int16_t number = sprite.FrameOrder[static_cast<std::size_t>(i)];
        check_subscript(number, sprite.FrameStore.size());
        file.write(frame_header);
        file.write(sprite.FrameStore[static_cast<std::size_t>(number)].bytes());
    }
    file.close();
}

} // namespace varnoth
