#include "platform/qt/cut_bmp.h"

#include "base/bytes.h"

namespace varnoth {

namespace {

constexpr std::size_t core_header = 12;
constexpr std::size_t core_end = 26;
constexpr std::size_t info_header = 40;
constexpr std::size_t info_end = 54;

struct Layout {
    std::size_t pixels = 0; ///< offset of the first one
    std::size_t width = 0;
    std::size_t rows = 0;
    std::size_t bits = 0;
    bool run_length_encoded = false;
};

bool is_known_depth(std::size_t bits) {
    return bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
}

std::optional<Layout> layout_of(std::span<const std::uint8_t> file) {
    if (file.size() < core_end) {
        return std::nullopt;
    }
    const std::size_t pixels = get_u32(file, 10);
    const std::size_t header = get_u32(file, 14);
    if (header == core_header) {
        return Layout{pixels, get_u16(file, 18), get_u16(file, 20), get_u16(file, 24), false};
    }
    if (header < info_header || file.size() < info_end || get_i32(file, 18) <= 0) {
        return std::nullopt;
    }
    const std::int64_t height = get_i32(file, 22);
    const std::uint32_t compression = get_u32(file, 30);
    return Layout{pixels, get_u32(file, 18), static_cast<std::size_t>(height < 0 ? -height : height),
                  get_u16(file, 28), compression == 1 || compression == 2};
}

std::size_t padded_row_bytes(std::size_t width, std::size_t bits) {
    return (width * bits + 31) / 32 * 4;
}

/// Length in bytes of the run-length command that begins with these two bytes.
std::size_t command_length(std::uint8_t first, std::uint8_t second, std::size_t bits) {
    constexpr std::uint8_t jump = 2;
    if (first != 0 || second < jump) {
        return 2;
    }
    if (second == jump) {
        return 4;
    }
    const std::size_t literal_bytes = (second * bits + 7) / 8;
    return 2 + literal_bytes + literal_bytes % 2;
}

/// The end of the last whole command; nothing when the end of the bitmap is told.
std::optional<std::size_t> end_of_commands(std::span<const std::uint8_t> file, const Layout& layout) {
    std::size_t at = layout.pixels;
    while (at + 2 <= file.size()) {
        if (file[at] == 0 && file[at + 1] == 1) {
            return std::nullopt;
        }
        const std::size_t length = command_length(file[at], file[at + 1], layout.bits);
        if (at + length > file.size()) {
            break;
        }
        at += length;
    }
    return at;
}

/// Runs of one value over the whole picture.
std::vector<std::uint8_t> filling_commands(const BmpCut& cut, std::uint8_t value) {
    constexpr std::size_t longest_run = 255;
    std::vector<std::uint8_t> row;
    for (std::size_t x = 0; x < cut.width; x += longest_run) {
        row.insert(row.end(), {static_cast<std::uint8_t>(longest_run), value});
    }
    row.insert(row.end(), {0, 0});
    std::vector<std::uint8_t> commands;
    for (std::size_t y = 0; y < cut.rows; ++y) {
        commands.insert(commands.end(), row.begin(), row.end());
    }
    commands.insert(commands.end(), {0, 1});
    return commands;
}

} // namespace

std::optional<BmpCut> find_bmp_cut(std::span<const std::uint8_t> file) {
    const std::optional<Layout> layout = layout_of(file);
    if (!layout || layout->pixels > file.size() || !is_known_depth(layout->bits)) {
        return std::nullopt;
    }
    BmpCut cut{file.size(), layout->width, layout->rows, 0, layout->run_length_encoded};
    if (layout->run_length_encoded) {
        const std::optional<std::size_t> end = end_of_commands(file, *layout);
        cut.end = end.value_or(0);
        return end ? std::optional(cut) : std::nullopt;
    }
    const std::size_t wanted = padded_row_bytes(layout->width, layout->bits) * layout->rows;
    const std::size_t present = file.size() - layout->pixels;
    if (present >= wanted) {
        return std::nullopt;
    }
    cut.missing = wanted - present;
    return cut;
}

std::vector<std::uint8_t> bmp_filler(const BmpCut& cut, std::uint8_t value) {
    return cut.run_length_encoded ? filling_commands(cut, value)
                                  : std::vector<std::uint8_t>(cut.missing, value);
}

} // namespace varnoth
