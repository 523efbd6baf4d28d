#include "core/sprite/SpriteFile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <concepts>
#include <limits>
#include <utility>

#include "core/base/numbers.h"

namespace varnoth {

namespace {

constexpr std::int32_t sprite_version = 2;
constexpr std::int32_t highest_type = 4;
constexpr std::int32_t highest_mode = 3;
constexpr std::int32_t most_editor_frames = 32768; // numbered by signed 16-bit integers
constexpr std::int32_t texture_side = 16;

// Offsets of the fields, in the file and in a frame header.
constexpr std::uint64_t ident_at = 0;
constexpr std::uint64_t version_at = 4;
constexpr std::uint64_t type_at = 8;
constexpr std::uint64_t mode_at = 12;
constexpr std::uint64_t radius_at = 16;
constexpr std::uint64_t width_at = 20;
constexpr std::uint64_t height_at = 24;
constexpr std::uint64_t count_at = 28;
constexpr std::uint64_t beam_at = 32;
constexpr std::uint64_t sync_at = 36;
constexpr std::uint64_t colour_count_at = 40;
constexpr std::uint64_t size_in_frame = 12;

std::string text(std::integral auto value) {
    return std::to_string(value);
}

// Independent of the locale, unlike printf.
std::string text(float value) {
    char digits[32];
    return {digits, std::to_chars(digits, digits + sizeof digits, value).ptr};
}

std::string size_text(std::int64_t width, std::int64_t height) {
    return text(width) + " x " + text(height);
}

float corner_distance(const SpriteHeaderRecord& header) {
    const double half_width = header.Width / 2.0;
    const double half_height = header.Height / 2.0;
    return static_cast<float>(std::sqrt(half_width * half_width + half_height * half_height));
}

class Parser {
  public:
    explicit Parser(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    SpriteParse parse() {
        result_.opens_in_editor = true;
        read_parts();
        std::ranges::stable_sort(result_.findings, {}, &SpriteFinding::offset);
        return std::move(result_);
    }

  private:
    /// Reads the parts in the order of the file, up to one after which the position of the next is unknown.
    void read_parts() {
        header_ = sprite_header_from_bytes(record<SpriteHeaderRecord::file_size>());
        if (header_.Ident != SpriteHeaderRecord::sprite_ident) {
            refuse(ident_at, "the file does not begin with \"IDSP\": it is no Half-Life sprite");
            return;
        }
        if (bytes_.size() < SpriteHeaderRecord::file_size) {
            refuse(bytes_.size(), "the file ends in its header");
            return;
        }
        check_header();
        result_.sprite.palette = palette_from_bytes(record<PaletteRecord::file_size>());
        if (at_ > bytes_.size()) {
            refuse(bytes_.size(), "the file ends in its palette");
            return;
        }
        if (const int colours = result_.sprite.palette.ColourCount;
            colours != PaletteRecord::sprite_colours) {
            refuse(colour_count_at, "the palette has " + text(colours) + " colours instead of 256");
            return;
        }
        if (read_frames()) {
            check_frames();
            check_end();
        }
    }

    void check_header() {
        if (header_.Version != sprite_version) {
            warn(version_at, "Version is " + text(header_.Version) + " instead of 2");
        }
        if (header_.SpriteType < 0 || header_.SpriteType > highest_type) {
            warn(type_at, "SpriteType is " + text(header_.SpriteType) + ", not 0 to 4");
        }
        if (header_.RenderMode < 0 || header_.RenderMode > highest_mode) {
            warn(mode_at, "RenderMode is " + text(header_.RenderMode) + ", not 0 to 3");
        }
        check_side(width_at, "Width", header_.Width);
        check_side(height_at, "Height", header_.Height);
        check_radius();
        if (header_.FrameCount < 1) {
            refuse(count_at, "FrameCount is " + text(header_.FrameCount));
        } else if (header_.FrameCount > most_editor_frames) {
            refuse(count_at,
                   "FrameCount is " + text(header_.FrameCount) + "; the editor opens at most 32768 frames");
        }
        if (header_.BeamLength != 0) {
            note(beam_at, "BeamLength is " + text(header_.BeamLength) + " instead of 0");
        }
        if (header_.SyncType != 0 && header_.SyncType != 1) {
            warn(sync_at, "SyncType is " + text(header_.SyncType) + ", not 0 or 1");
        }
    }

    void check_side(std::uint64_t offset, const std::string& name, std::int32_t side) {
        if (side < 1) {
            damage(offset, name + " is " + text(side));
        } else if (side % texture_side != 0) {
            note(offset, name + " is " + text(side) + ", no multiple of 16");
        }
    }

    void check_radius() {
        const float radius = header_.BoundingRadius;
        if (!std::isfinite(radius) || radius < 0) {
            warn(radius_at, "BoundingRadius is " + text(radius));
        } else if (const float expected = corner_distance(header_); radius != expected) {
            note(radius_at, "BoundingRadius is " + text(radius) + "; half the diagonal is " + text(expected));
        }
    }

    /// False when the end of the file or an impossible size prevents reading all frames.
    bool read_frames() {
        for (std::int32_t i = 0; i < header_.FrameCount; ++i) {
            if (!read_frame("frame " + text(i))) {
                return false;
            }
        }
        return true;
    }

    bool read_frame(const std::string& name) {
        const std::size_t start = at_;
        SpriteFrame frame{frame_header_from_bytes(record<FrameHeaderRecord::file_size>()), {}};
        if (at_ > bytes_.size()) {
            refuse(bytes_.size(), "the file ends before " + name + " of " + text(header_.FrameCount));
            return false;
        }
        const std::int32_t width = frame.header.FrameWidth;
        const std::int32_t height = frame.header.FrameHeight;
        const std::int64_t size = std::int64_t{width} * height;
        if (size < 1 || size > std::numeric_limits<std::int32_t>::max()) {
            refuse(start + size_in_frame, name + " has " + size_text(width, height) + " pixels");
            return false;
        }
        if (width < 0) { // and so is the height
            damage(start + size_in_frame, name + " has " + size_text(width, height) + " pixels");
        }
        if (frame.header.FrameType != 0) {
            warn(start, name + " has type " + text(frame.header.FrameType) +
                            ": a frame group, read as a single frame");
        }
        read_indices(name, static_cast<std::size_t>(size), frame.indices);
        result_.sprite.frames.push_back(std::move(frame));
        result_.frame_offsets.push_back(start);
        return true;
    }

    void read_indices(const std::string& name, std::size_t size, ByteArray& indices) {
        const auto present = bytes_.subspan(at_, std::min(size, bytes_.size() - at_));
        const bool complete = present.size() == size;
        indices = complete ? ByteArray::for_overwrite(size) : ByteArray(size);
        std::ranges::copy(present, indices.data());
        at_ += present.size();
        result_.missing_pixels = size - present.size();
        if (!complete) {
            damage(at_, "the file ends in " + name + ": " + text(result_.missing_pixels) + " of " +
                            text(size) + " pixels are missing");
        }
    }

    void check_frames() {
        const std::int64_t sprite_size = std::int64_t{header_.Width} * header_.Height;
        for (std::size_t i = 0; i < result_.sprite.frames.size(); ++i) {
            const SpriteFrame& frame = result_.sprite.frames[i];
            const std::int32_t width = frame.header.FrameWidth;
            const std::int32_t height = frame.header.FrameHeight;
            if (width < 0 || (width == header_.Width && height == header_.Height)) {
                continue;
            }
            const std::uint64_t offset = result_.frame_offsets[i] + size_in_frame;
            const std::string finding = "frame " + text(i) + " has " + size_text(width, height) +
                                        " pixels, the sprite " + size_text(header_.Width, header_.Height);
            if (std::int64_t{width} * height < sprite_size) {
                damage(offset, finding + ": too few for the editor, which ends with an error");
            } else {
                warn(offset, finding);
            }
        }
        if (static_cast<RenderMode>(header_.RenderMode) == RenderMode::AlphaTest &&
            !uses_index(transparent_index)) {
            warn(mode_at, "RenderMode is ALPHATEST, but no pixel has index 255: nothing is transparent");
        }
    }

    bool uses_index(std::uint8_t index) const {
        return std::ranges::any_of(result_.sprite.frames, [&](const SpriteFrame& frame) {
            const auto indices = frame.indices.bytes();
            return std::ranges::find(indices, index) != indices.end();
        });
    }

    void check_end() {
        result_.trailing_bytes = bytes_.size() - at_;
        if (result_.trailing_bytes > 0) {
            note(at_, text(result_.trailing_bytes) + " bytes after the last frame");
        }
    }

    /// The next record. Bytes beyond the end of the file are 0, and the position is then beyond it: read no
    /// more.
    template <std::size_t Size>
    std::array<std::uint8_t, Size> record() {
        std::array<std::uint8_t, Size> result{};
        std::ranges::copy(bytes_.subspan(at_, std::min(Size, bytes_.size() - at_)), result.begin());
        at_ += Size;
        return result;
    }

    void note(std::uint64_t offset, std::string text) { add(Severity::Note, offset, std::move(text)); }

    void warn(std::uint64_t offset, std::string text) { add(Severity::Warning, offset, std::move(text)); }

    /// The editor opens the file, but not all of it is there or can be shown.
    void damage(std::uint64_t offset, std::string text) { add(Severity::Error, offset, std::move(text)); }

    void refuse(std::uint64_t offset, std::string text) {
        add(Severity::Error, offset, std::move(text));
        result_.opens_in_editor = false;
    }

    void add(Severity severity, std::uint64_t offset, std::string text) {
        result_.findings.push_back({severity, offset, std::move(text)});
    }

    std::span<const std::uint8_t> bytes_;
    std::size_t at_ = 0;
    SpriteParse result_;
    SpriteHeaderRecord& header_ = result_.sprite.header;
};

} // namespace

std::string_view name_of(Severity severity) {
    switch (severity) {
    case Severity::Note:
        return "note";
    case Severity::Warning:
        return "warning";
    case Severity::Error:
        break;
    }
    return "error";
}

SpriteParse parse_sprite_file(std::span<const std::uint8_t> bytes) {
    return Parser(bytes).parse();
}

std::vector<std::uint8_t> write_sprite_file(const SpriteFile& sprite) {
    SpriteHeaderRecord header = sprite.header;
    header.FrameCount = narrow<std::int32_t>(sprite.frames.size());
    std::vector<std::uint8_t> bytes;
    const auto append = [&](std::span<const std::uint8_t> part) {
        bytes.insert(bytes.end(), part.begin(), part.end());
    };
    append(to_bytes(header));
    append(to_bytes(sprite.palette));
    for (const SpriteFrame& frame : sprite.frames) {
        append(to_bytes(frame.header));
        append(frame.indices.bytes());
    }
    return bytes;
}

} // namespace varnoth
