// Supported variants, all plain or run-length encoded:
//
//   1 plane of 1, 2, 4 or 8 bits   indices
//   2, 3 or 4 planes of 1 bit      indices; the first plane has the lowest bit
//   3 planes of 8 bits             red, green, blue
//   4 planes of 8 bits             red, green, blue, alpha
//
// Palettes:
//
//   8 bits          256 colours at the end of the file, after a byte of 12; without them, greys
//   up to 4 bits    the palette in the header; the default EGA palette if the version has none or all
//                   entries are equal
//   1 bit           black and white if the header has no palette with two different first entries
//   2 bits, 1 plane the CGA colours selected in the header, up to version 4
//
// Runs may cross the ends of rows.
#include "core/codecs/read_pcx.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "core/base/RunTimeFailure.h"
#include "core/codecs/PcxHeader.h"
#include "core/image/packed_indices.h"

namespace varnoth {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::uint8_t manufacturer = 10;
constexpr std::uint8_t run_mark = 0xC0; // the highest two bits; the others are the length
constexpr std::size_t vga_palette_size = 3 * 256;
constexpr std::uint8_t vga_palette_mark = 12;

/// Without palettes: versions 2.5 and 2.8.
constexpr std::uint8_t version_2_5 = 0;
constexpr std::uint8_t version_2_8_without_palette = 3;
constexpr std::uint8_t version_3_0 = 5;

constexpr std::array<RGBQUAD, 16> default_ega_palette{{
    {0x00, 0x00, 0x00, 0},
    {0xAA, 0x00, 0x00, 0},
    {0x00, 0xAA, 0x00, 0},
    {0xAA, 0xAA, 0x00, 0},
    {0x00, 0x00, 0xAA, 0},
    {0xAA, 0x00, 0xAA, 0},
    {0x00, 0x55, 0xAA, 0},
    {0xAA, 0xAA, 0xAA, 0},
    {0x55, 0x55, 0x55, 0},
    {0xFF, 0x55, 0x55, 0},
    {0x55, 0xFF, 0x55, 0},
    {0xFF, 0xFF, 0x55, 0},
    {0x55, 0x55, 0xFF, 0},
    {0xFF, 0x55, 0xFF, 0},
    {0x55, 0xFF, 0xFF, 0},
    {0xFF, 0xFF, 0xFF, 0},
}};

void require(bool holds) {
    if (!holds) {
        fail(Failure::InvalidPicture);
    }
}

constexpr std::uint32_t opaque_black = 0xFF000000;

std::uint32_t make_pixel(std::uint8_t alpha, const RGBQUAD& colour) {
    return std::uint32_t{alpha} << 24 | std::uint32_t{colour.rgbRed} << 16 |
           std::uint32_t{colour.rgbGreen} << 8 | colour.rgbBlue;
}

std::vector<RGBQUAD> colours_of(Bytes triples) {
    std::vector<RGBQUAD> colours;
    for (std::size_t at = 0; at + 3 <= triples.size(); at += 3) {
        colours.push_back({triples[at + 2], triples[at + 1], triples[at], 0});
    }
    return colours;
}

/// The expanded bytes of a file, read row by row.
class ByteSource {
  public:
    ByteSource(Bytes bytes, bool has_runs) : rest_(bytes), has_runs_(has_runs) {}

    /// Fills the row, with zeros after the last byte. Returns whether there was any byte.
    bool read(std::span<std::uint8_t> row) {
        bool any = false;
        for (std::uint8_t& byte : row) {
            any |= run_ > 0 || next_run();
            byte = run_ > 0 ? value_ : std::uint8_t{0};
            run_ -= run_ > 0 ? 1 : 0;
        }
        return any;
    }

  private:
    /// A run of length 0 is skipped.
    bool next_run() {
        while (run_ == 0 && !rest_.empty()) {
            const std::uint8_t first = take();
            if (!has_runs_ || first < run_mark) {
                run_ = 1;
                value_ = first;
            } else if (!rest_.empty()) {
                run_ = first - run_mark;
                value_ = take();
            }
        }
        return run_ > 0;
    }

    std::uint8_t take() {
        const std::uint8_t byte = rest_.front();
        rest_ = rest_.subspan(1);
        return byte;
    }

    Bytes rest_;
    bool has_runs_;
    int run_ = 0;
    std::uint8_t value_ = 0;
};

class Parser {
  public:
    explicit Parser(Bytes file) : file_(file) {
        require(file.size() >= PcxHeader::size);
        header_ = PcxHeader::from_bytes(file.first<PcxHeader::size>());
        width_ = side(header_.XMin, header_.XMax);
        height_ = side(header_.YMin, header_.YMax);
        require(header_.Manufacturer == manufacturer && header_.Version <= version_3_0 &&
                header_.Version != 1 && header_.Encoding <= 1 && has_known_layout() && width_ > 0 &&
                height_ > 0 && plane_size() * 8 >= width_ * header_.BitsPerPixel);
    }

    RgbaPicture parse(std::int64_t max_pixels) const {
        if (static_cast<std::int64_t>(width_) * static_cast<std::int64_t>(height_) > max_pixels) {
            fail(Failure::OutOfMemory);
        }
        const bool has_alpha = header_.BitsPerPixel == 8 && header_.NPlanes == 4;
        RgbaPicture picture;
        picture.width = static_cast<int>(width_);
        picture.height = static_cast<int>(height_);
        picture.pixels.assign(width_ * height_, has_alpha ? 0 : opaque_black);
        const std::vector<RGBQUAD> colours = palette();
        ByteSource source(file_.subspan(PcxHeader::size), header_.Encoding == 1);
        std::vector<std::uint8_t> row(plane_size() * header_.NPlanes);
        for (std::size_t y = 0; y < height_ && source.read(row); ++y) {
            const std::span to(picture.pixels.data() + y * width_, width_);
            if (is_true_colour()) {
                read_true_colour(row, to);
            } else {
                read_indices(row, colours, to);
            }
        }
        return picture;
    }

    std::vector<RGBQUAD> palette() const {
        if (is_true_colour()) {
            return {};
        }
        const int bits = header_.BitsPerPixel * header_.NPlanes;
        if (bits == 8) {
            return vga_palette();
        }
        std::vector<RGBQUAD> colours = header_palette();
        if (bits == 1 && (!has_palette() || colours[0] == colours[1])) {
            return {RGBQUAD{}, RGBQUAD{255, 255, 255, 0}};
        }
        if (header_.BitsPerPixel == 2 && header_.Version < version_3_0) {
            return cga_palette();
        }
        if (!has_palette() || std::ranges::count(colours, colours[0]) == std::ssize(colours)) {
            colours.assign(default_ega_palette.begin(), default_ega_palette.end());
        }
        colours.resize(std::size_t{1} << bits);
        return colours;
    }

  private:
    static std::size_t side(std::int16_t first, std::int16_t last) {
        const int count = static_cast<std::uint16_t>(last) - static_cast<std::uint16_t>(first) + 1;
        return static_cast<std::size_t>(std::max(count, 0));
    }

    bool has_known_layout() const {
        const int bits = header_.BitsPerPixel;
        switch (header_.NPlanes) {
        case 1:
            return bits == 1 || bits == 2 || bits == 4 || bits == 8;
        case 2:
            return bits == 1;
        case 3:
        case 4:
            return bits == 1 || bits == 8;
        default:
            return false;
        }
    }

    bool is_true_colour() const { return header_.BitsPerPixel == 8 && header_.NPlanes >= 3; }

    std::size_t plane_size() const { return static_cast<std::uint16_t>(header_.BytesPerLine); }

    bool has_palette() const {
        return header_.Version != version_2_5 && header_.Version != version_2_8_without_palette;
    }

    std::vector<RGBQUAD> header_palette() const { return colours_of(header_.ColorMap); }

    std::vector<RGBQUAD> vga_palette() const {
        if (file_.size() > PcxHeader::size + vga_palette_size &&
            file_[file_.size() - vga_palette_size - 1] == vga_palette_mark) {
            return colours_of(file_.last(vga_palette_size));
        }
        std::vector<RGBQUAD> greys;
        for (unsigned value = 0; value < 256; ++value) {
            const auto level = static_cast<std::uint8_t>(value);
            greys.push_back({level, level, level, 0});
        }
        return greys;
    }

    /// The background is in the highest bits of the palette's first byte; the fourth byte selects red, green
    /// and brown, or cyan, magenta and white, dark or bright.
    std::vector<RGBQUAD> cga_palette() const {
        const unsigned selection = header_.ColorMap[3];
        const bool has_white = (selection & 0x40) != 0;
        const bool is_bright = (selection & 0x20) != 0;
        std::vector<RGBQUAD> colours{default_ega_palette[header_.ColorMap[0] >> 4U]};
        for (const std::size_t index : {2U, 4U, 6U}) {
            colours.push_back(default_ega_palette[index + (has_white ? 1 : 0) + (is_bright ? 8 : 0)]);
        }
        return colours;
    }

    void read_true_colour(Bytes row, std::span<std::uint32_t> to) const {
        const std::size_t plane = plane_size();
        for (std::size_t x = 0; x < to.size(); ++x) {
            const std::uint8_t alpha = header_.NPlanes == 4 ? row[3 * plane + x] : std::uint8_t{255};
            to[x] = make_pixel(alpha, {row[2 * plane + x], row[plane + x], row[x], 0});
        }
    }

    void read_indices(Bytes row, const std::vector<RGBQUAD>& colours, std::span<std::uint32_t> to) const {
        const int bits = header_.BitsPerPixel;
        for (std::size_t x = 0; x < to.size(); ++x) {
            unsigned index = 0;
            for (unsigned plane = 0; plane < header_.NPlanes; ++plane) {
                index |= get_packed_index(row.data() + plane * plane_size(), x, bits) << plane;
            }
            to[x] = make_pixel(255, colours[index]);
        }
    }

    Bytes file_;
    PcxHeader header_;
    std::size_t width_ = 0;
    std::size_t height_ = 0;
};

} // namespace

bool is_pcx(Bytes file) {
    try {
        const Parser parser(file);
        return true;
    } catch (const RunTimeFailure&) {
        return false;
    }
}

RgbaPicture read_pcx(Bytes file, std::int64_t max_pixels) {
    return Parser(file).parse(max_pixels);
}

std::vector<RGBQUAD> pcx_palette(Bytes file) {
    return Parser(file).palette();
}

} // namespace varnoth
