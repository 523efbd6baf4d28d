// Supported variants:
//
//   types          1, 2 and 3 (colour-mapped, true-colour, grey), and 9, 10 and 11, their run-length forms
//   colour-mapped  indices of 8, 15 or 16 bits; entries of 15, 16, 24 or 32 bits, with any first index
//   true-colour    15, 16, 24 or 32 bits
//   grey           8 bits, or 16 with alpha in the second byte
//   alpha          if the descriptor has attribute bits; the attributes type of a TGA 2.0 file takes
//   precedence rows           from any of the four corners; also two-way and four-way interleaved
//
// Run-length packets may continue on the next row. Indices outside of the colour map are black.
#include "core/codecs/read_tga.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

#include "core/base/RunTimeFailure.h"
#include "core/base/bytes.h"
#include "core/codecs/TgaHeader.h"

namespace varnoth {

namespace {

using Bytes = std::span<const std::uint8_t>;

enum class Kind { ColourMapped = 1, TrueColour = 2, Grey = 3 };

constexpr std::uint8_t run_length_types = 8; // added to the type

// Bits of the image descriptor.
constexpr unsigned attribute_bits = 0x0F;
constexpr unsigned from_right = 0x10;
constexpr unsigned from_top = 0x20;
constexpr unsigned interleaving_shift = 6;

constexpr std::size_t footer_size = 26;
constexpr std::string_view signature("TRUEVISION-XFILE.\0", 18);
constexpr std::size_t attributes_type_at = 494; // in the extension area
constexpr std::uint8_t useful_alpha = 3;
constexpr std::uint8_t premultiplied_alpha = 4;

constexpr std::uint32_t opaque_black = 0xFF000000;

void require(bool holds) {
    if (!holds) {
        fail(Failure::InvalidPicture);
    }
}

constexpr std::uint32_t make_pixel(unsigned alpha, unsigned red, unsigned green, unsigned blue) {
    return alpha << 24 | red << 16 | green << 8 | blue;
}

/// 5 bits widened to 8.
constexpr unsigned widen(unsigned value) {
    return ((value & 31) * 255 + 15) / 31;
}

constexpr std::size_t bytes_for(unsigned bits) {
    return (bits + 7) / 8;
}

bool is_colour_depth(unsigned bits) {
    return bits == 15 || bits == 16 || bits == 24 || bits == 32;
}

enum class Alpha { None, Straight, Premultiplied };

class Parser {
  public:
    explicit Parser(Bytes file) : file_(file) {
        require(file.size() >= TgaHeader::size);
        header_ = TgaHeader::from_bytes(file.first<TgaHeader::size>());
        width_ = static_cast<std::uint16_t>(header_.ImageWidth);
        height_ = static_cast<std::uint16_t>(header_.ImageHeight);
        kind_ = static_cast<Kind>(header_.ImageType & ~unsigned{run_length_types});
        require(is_plausible());
        alpha_ = find_alpha();
    }

    RgbaPicture parse(std::int64_t max_pixels) {
        if (std::int64_t{width_} * height_ > max_pixels) {
            fail(Failure::OutOfMemory);
        }
        const std::size_t pixels_at = colour_map_at() + colour_map_size();
        require(pixels_at < file_.size());
        rest_ = file_.subspan(pixels_at);
        if (kind_ == Kind::ColourMapped) {
            read_colour_map();
        }
        picture_.width = width_;
        picture_.height = height_;
        picture_.pixels.assign(std::size_t{width_} * height_, alpha_ == Alpha::None ? opaque_black : 0);
        list_rows();
        if (header_.ImageType >= run_length_types) {
            read_packets();
        } else {
            read_pixels(picture_.pixels.size());
        }
        return std::move(picture_);
    }

    std::vector<RGBQUAD> colour_map() {
        if (kind_ != Kind::ColourMapped) {
            return {};
        }
        require(colour_map_at() + colour_map_size() <= file_.size());
        alpha_ = Alpha::None;
        read_colour_map();
        std::vector<RGBQUAD> colours(map_start());
        for (const std::uint32_t pixel : map_) {
            colours.push_back({static_cast<std::uint8_t>(pixel), static_cast<std::uint8_t>(pixel >> 8),
                               static_cast<std::uint8_t>(pixel >> 16), 0});
        }
        return colours;
    }

  private:
    bool is_plausible() const {
        return width_ > 0 && height_ > 0 && has_plausible_map() && has_plausible_depth() &&
               (header_.ImageDescriptor & attribute_bits) <= 8 &&
               header_.ImageDescriptor >> interleaving_shift < 3;
    }

    bool has_plausible_map() const {
        if (header_.ColorMapType == 0) {
            return kind_ != Kind::ColourMapped;
        }
        return header_.ColorMapType == 1 && is_colour_depth(header_.ColorMapDepth);
    }

    bool has_plausible_depth() const {
        const unsigned bits = header_.PixelDepth;
        switch (kind_) {
        case Kind::ColourMapped:
            return bits == 8 || bits == 15 || bits == 16;
        case Kind::TrueColour:
            return is_colour_depth(bits);
        case Kind::Grey:
            return bits == 8 || bits == 16;
        }
        return false;
    }

    Alpha find_alpha() const {
        if (const auto type = attributes_type()) {
            return *type == useful_alpha          ? Alpha::Straight
                   : *type == premultiplied_alpha ? Alpha::Premultiplied
                                                  : Alpha::None;
        }
        return (header_.ImageDescriptor & attribute_bits) != 0 ? Alpha::Straight : Alpha::None;
    }

    /// The attributes type of a TGA 2.0 file.
    std::optional<std::uint8_t> attributes_type() const {
        if (file_.size() < TgaHeader::size + footer_size) {
            return std::nullopt;
        }
        const Bytes footer = file_.last(footer_size);
        const std::size_t extension_at = get_u32(footer, 0);
        if (std::memcmp(footer.data() + footer_size - signature.size(), signature.data(), signature.size()) !=
                0 ||
            extension_at < TgaHeader::size || extension_at >= file_.size() ||
            file_.size() - extension_at <= attributes_type_at) {
            return std::nullopt;
        }
        return file_[extension_at + attributes_type_at];
    }

    std::size_t colour_map_at() const { return TgaHeader::size + header_.IDLength; }

    std::size_t colour_map_size() const { return map_length() * bytes_for(header_.ColorMapDepth); }

    std::size_t map_length() const {
        return header_.ColorMapType == 0 ? 0 : static_cast<std::uint16_t>(header_.ColorMapLength);
    }

    std::size_t map_start() const { return static_cast<std::uint16_t>(header_.ColorMapStart); }

    void read_colour_map() {
        const Bytes entries = file_.subspan(colour_map_at(), colour_map_size());
        const std::size_t size = bytes_for(header_.ColorMapDepth);
        for (std::size_t i = 0; i < map_length(); ++i) {
            map_.push_back(colour(entries.subspan(i * size, size), header_.ColorMapDepth));
        }
    }

    std::uint32_t colour(Bytes bytes, unsigned bits) const {
        if (bits <= 16) {
            const unsigned value = get_u16(bytes, 0);
            const unsigned alpha = bits == 16 && (value & 0x8000) == 0 ? 0 : 255;
            return with_alpha(alpha, widen(value >> 10), widen(value >> 5), widen(value));
        }
        return with_alpha(bits == 32 ? bytes[3] : 255, bytes[2], bytes[1], bytes[0]);
    }

    std::uint32_t with_alpha(unsigned alpha, unsigned red, unsigned green, unsigned blue) const {
        if (alpha_ == Alpha::None) {
            return make_pixel(255, red, green, blue);
        }
        if (alpha_ == Alpha::Premultiplied) {
            const auto divided = [alpha](unsigned value) {
                return alpha == 0 ? 0 : std::min(255U, (value * 255 + alpha / 2) / alpha);
            };
            return make_pixel(alpha, divided(red), divided(green), divided(blue));
        }
        return make_pixel(alpha, red, green, blue);
    }

    /// The rows of the picture in the order of the file.
    void list_rows() {
        static constexpr std::array<std::size_t, 3> steps{1, 2, 4};
        const std::size_t step = steps[header_.ImageDescriptor >> interleaving_shift];
        const bool is_top_down = (header_.ImageDescriptor & from_top) != 0;
        for (std::size_t first = 0; first < step; ++first) {
            for (std::size_t row = first; row < height_; row += step) {
                rows_.push_back(is_top_down ? row : height_ - 1 - row);
            }
        }
    }

    std::size_t pixel_size() const { return bytes_for(header_.PixelDepth); }

    void read_packets() {
        while (!is_complete() && !rest_.empty()) {
            const unsigned head = rest_[0];
            const std::size_t count = (head & 127) + 1;
            rest_ = rest_.subspan(1);
            if (head < 128) {
                read_pixels(count);
            } else if (rest_.size() >= pixel_size()) {
                const std::uint32_t pixel = take_pixel();
                for (std::size_t i = 0; i < count && !is_complete(); ++i) {
                    put(pixel);
                }
            } else {
                return;
            }
        }
    }

    void read_pixels(std::size_t count) {
        for (std::size_t i = 0; i < count && !is_complete() && rest_.size() >= pixel_size(); ++i) {
            put(take_pixel());
        }
    }

    bool is_complete() const { return row_ == height_; }

    std::uint32_t take_pixel() {
        const Bytes bytes = rest_.first(pixel_size());
        rest_ = rest_.subspan(pixel_size());
        switch (kind_) {
        case Kind::ColourMapped: {
            const std::size_t index = bytes.size() == 1 ? bytes[0] : get_u16(bytes, 0);
            const std::size_t entry = index - map_start(); // wraps below the first index
            return entry < map_.size() ? map_[entry] : opaque_black;
        }
        case Kind::Grey:
            return with_alpha(bytes.size() == 2 ? bytes[1] : 255, bytes[0], bytes[0], bytes[0]);
        default:
            return colour(bytes, header_.PixelDepth);
        }
    }

    void put(std::uint32_t pixel) {
        const bool is_mirrored = (header_.ImageDescriptor & from_right) != 0;
        const std::size_t x = is_mirrored ? width_ - 1 - column_ : column_;
        picture_.pixels[rows_[row_] * width_ + x] = pixel;
        if (++column_ == width_) {
            column_ = 0;
            ++row_;
        }
    }

    Bytes file_;
    TgaHeader header_;
    std::uint16_t width_ = 0;
    std::uint16_t height_ = 0;
    Kind kind_ = Kind::TrueColour;
    Alpha alpha_ = Alpha::None;
    Bytes rest_;
    std::vector<std::uint32_t> map_;
    std::vector<std::size_t> rows_;
    std::size_t row_ = 0;
    std::size_t column_ = 0;
    RgbaPicture picture_;
};

} // namespace

bool is_tga(Bytes file) {
    try {
        const Parser parser(file);
        return true;
    } catch (const RunTimeFailure&) {
        return false;
    }
}

RgbaPicture read_tga(Bytes file, std::int64_t max_pixels) {
    return Parser(file).parse(max_pixels);
}

std::vector<RGBQUAD> tga_colour_map(Bytes file) {
    return Parser(file).colour_map();
}

} // namespace varnoth
