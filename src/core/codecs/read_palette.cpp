#include "core/codecs/read_palette.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <string_view>
#include <system_error>

#include "core/base/RunTimeFailure.h"
#include "core/base/bytes.h"

namespace varnoth {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::string_view jasc_magic = "JASC-PAL";
constexpr std::string_view gimp_magic = "GIMP Palette";
constexpr std::string_view riff_magic = "RIFF";
constexpr std::string_view riff_palette = "PAL ";
constexpr std::string_view riff_data = "data";
constexpr std::string_view blanks = " \t\r";

constexpr std::size_t raw_size = 3 * 256;
constexpr std::size_t raw_size_with_count = raw_size + 4;
constexpr unsigned no_transparent_index = 0xFFFF;

void require(bool holds) {
    if (!holds) {
        fail(Failure::InvalidPicture);
    }
}

bool has_text(Bytes file, std::size_t at, std::string_view text) {
    return file.size() >= at + text.size() &&
           std::equal(text.begin(), text.end(), file.begin() + static_cast<std::ptrdiff_t>(at));
}

/// Lines without the blanks around them.
class Lines {
  public:
    explicit Lines(Bytes file) : rest_(reinterpret_cast<const char*>(file.data()), file.size()) {}

    bool at_end() const { return rest_.empty(); }

    std::string_view next() {
        const std::size_t end = std::min(rest_.find('\n'), rest_.size());
        std::string_view line = rest_.substr(0, end);
        rest_.remove_prefix(std::min(end + 1, rest_.size()));
        line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
        line.remove_suffix(line.size() - 1 - line.find_last_not_of(blanks));
        return line;
    }

  private:
    std::string_view rest_;
};

/// Takes a number off the front of a line.
unsigned take_number(std::string_view& line, unsigned highest) {
    line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
    unsigned value = 0;
    const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), value);
    require(error == std::errc() && value <= highest);
    line.remove_prefix(static_cast<std::size_t>(end - line.data()));
    return value;
}

/// Red, green and blue in decimal. Whatever follows is ignored: alpha or a name.
RGBQUAD colour_in(std::string_view line) {
    const auto channel = [&line] { return static_cast<std::uint8_t>(take_number(line, 255)); };
    const std::uint8_t red = channel();
    const std::uint8_t green = channel();
    return {channel(), green, red, 0};
}

PaletteColours read_jasc(Bytes file) {
    PaletteColours palette;
    Lines lines(file);
    lines.next(); // the magic
    lines.next(); // the version
    std::string_view count_line = lines.next();
    const unsigned count = take_number(count_line, 65536);
    for (unsigned i = 0; i < count; ++i) {
        palette.colours.push_back(colour_in(lines.next()));
    }
    return palette;
}

PaletteColours read_gimp(Bytes file) {
    PaletteColours palette;
    Lines lines(file);
    lines.next(); // the magic
    while (!lines.at_end()) {
        const std::string_view line = lines.next();
        if (!line.empty() && line[0] != '#' && !line.starts_with("Name:") && !line.starts_with("Columns:")) {
            palette.colours.push_back(colour_in(line));
        }
    }
    return palette;
}

/// The data chunk: a version, the number of entries, and for each red, green, blue and flags.
PaletteColours read_riff_data(Bytes data) {
    PaletteColours palette;
    require(data.size() >= 4);
    const std::size_t count = get_u16(data, 2);
    require(data.size() >= 4 + 4 * count);
    for (std::size_t at = 4; at < 4 + 4 * count; at += 4) {
        palette.colours.push_back({data[at + 2], data[at + 1], data[at], 0});
    }
    return palette;
}

PaletteColours read_riff(Bytes file) {
    std::size_t at = 12;
    while (file.size() >= at + 8) {
        const std::size_t size = get_u32(file, at + 4);
        const Bytes data = file.subspan(at + 8);
        if (has_text(file, at, riff_data)) {
            return read_riff_data(data);
        }
        require(size < data.size());
        at += 8 + size + size % 2;
    }
    fail(Failure::InvalidPicture);
}

unsigned big_endian(Bytes bytes, std::size_t at) {
    return static_cast<unsigned>(bytes[at]) << 8 | bytes[at + 1];
}

} // namespace

std::optional<PaletteColours> read_palette(Bytes file) {
    if (has_text(file, 0, jasc_magic)) {
        return read_jasc(file);
    }
    if (has_text(file, 0, gimp_magic)) {
        return read_gimp(file);
    }
    if (has_text(file, 0, riff_magic) && has_text(file, 8, riff_palette)) {
        return read_riff(file);
    }
    return std::nullopt;
}

std::optional<PaletteColours> read_raw_palette(Bytes file) {
    if (file.size() != raw_size && file.size() != raw_size_with_count) {
        return std::nullopt;
    }
    PaletteColours palette;
    for (std::size_t at = 0; at < raw_size; at += 3) {
        palette.colours.push_back({file[at + 2], file[at + 1], file[at], 0});
    }
    if (file.size() == raw_size_with_count) {
        const unsigned count = big_endian(file, raw_size);
        if (count >= 1 && count < palette.colours.size()) {
            palette.colours.resize(count);
        }
        const unsigned transparent = big_endian(file, raw_size + 2);
        if (transparent != no_transparent_index && transparent < palette.colours.size()) {
            palette.transparent = static_cast<std::uint8_t>(transparent);
        }
    }
    return palette;
}

} // namespace varnoth
