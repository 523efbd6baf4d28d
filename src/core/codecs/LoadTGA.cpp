#include "core/codecs/LoadTGA.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <new>
#include <utility>

#include "core/base/RunTimeFailure.h"
#include "core/base/numbers.h"
#include "core/codecs/CBitmap.h"
#include "core/codecs/reader_parts.h"

namespace varnoth {

namespace {

constexpr std::int32_t top_row_first_bit = 3; // counted from the most significant bit

bool is_tga(const TgaHeader& header) {
    constexpr int types[] = {1, 2, 3, 9, 10, 11, 32, 33};
    constexpr int depths[] = {8, 16, 24, 32};
    return std::ranges::find(types, header.ImageType) != std::end(types) &&
           std::ranges::find(depths, header.PixelDepth) != std::end(depths);
}

ByteArray read_map(InputFile& file, std::int32_t entries, std::size_t entry_bytes) {
    if (entries <= 0) {
        fail(Failure::SubscriptOutOfRange);
    }
    ByteArray map(static_cast<std::size_t>(entries) * entry_bytes);
    file.read(map.bytes());
    return map;
}

void put_triple(ByteArray& colours, std::size_t entry, unsigned red, unsigned green, unsigned blue) {
    check_subscript(entry, colours.size() / 3);
    colours[3 * entry] = static_cast<std::uint8_t>(red);
    colours[3 * entry + 1] = static_cast<std::uint8_t>(green);
    colours[3 * entry + 2] = static_cast<std::uint8_t>(blue);
}

void put_whole_bytes(ByteArray& colours, const ByteArray& map, std::size_t entry_bytes) {
    for (std::size_t at = 0; at < map.size(); at += entry_bytes) {
        put_triple(colours, at / entry_bytes, map[at + 2], map[at + 1], map[at]);
    }
}

// Deviates from the format, whose words are little-endian and whose channels are scaled to 255, not 124.
void put_words(ByteArray& colours, const ByteArray& map) {
    for (std::size_t at = 0; at < map.size(); at += 2) {
        const unsigned first = map[at];
        const unsigned second = map[at + 1];
        const unsigned blue = first >> 3;
        const unsigned green = ((first & 7U) << 2) + (second >> 6);
        const unsigned red = (second >> 1) & 31U;
        put_triple(colours, at / 2, red * 4, green * 4, blue * 4);
    }
}

// Bytes beyond the target's end are dropped.
void put_clipped(std::span<std::uint8_t> target, std::int64_t at, std::span<const std::uint8_t> bytes) {
    const std::int64_t room = static_cast<std::int64_t>(target.size()) - at;
    if (room > 0) {
        const std::size_t count = std::min(bytes.size(), static_cast<std::size_t>(room));
        std::ranges::copy(bytes.first(count), target.subspan(static_cast<std::size_t>(at)).begin());
    }
}

// The byte count of the picture plus one spare byte; 0 for a negative count.
std::int64_t expanded_length(std::int32_t height, std::int32_t width, std::int32_t pixel_bytes) {
    std::int32_t total = 0;
    try {
        total = checked_multiply(checked_multiply(height, width), pixel_bytes);
    } catch (const RunTimeFailure&) {
        // On overflow the total stays 0.
    }
    return total < 0 ? 0 : std::int64_t{total} + 1;
}

// The most bytes that packets of that total length expand to: a run of 128 pixels takes a code and one pixel,
// and the last packet may be truncated.
std::int64_t max_expanded(std::size_t packed_bytes, std::int32_t pixel_bytes) {
    const std::int64_t max_packets = static_cast<std::int64_t>(packed_bytes) / (1 + pixel_bytes) + 1;
    return max_packets * 128 * pixel_bytes;
}

} // namespace

Truth LoadTGA::GetInfoTGA(const std::string& fileName, std::int32_t& width, std::int32_t& height,
                          std::int16_t& bpp) const {
    try {
        InputFile file(fileName);
        const auto header = read_header<TgaHeader>(file);
        width = header.ImageWidth;
        height = header.ImageHeight;
        bpp = header.PixelDepth;
        return truth(is_tga(header));
    } catch (const RunTimeFailure&) {
        return False;
    } catch (const std::bad_alloc&) {
        return False;
    }
}

void LoadTGA::Load(const std::string& fileName) {
    {
        InputFile file(fileName);
        header_ = read_header<TgaHeader>(file);
    }
    const CBitmap::Extent twips = CBitmap::PixelsToTwips(header_.ImageWidth, header_.ImageHeight);
    twip_width_ = twips.width;
    twip_height_ = twips.height;
    switch (header_.PixelDepth) {
    case 8:
        LoadTga8(fileName);
        break;
    case 16:
        LoadTga16(fileName);
        break;
    case 24:
        LoadTga24(fileName);
        break;
    case 32:
        LoadTga32(fileName);
        break;
    default:
        break;
    }
}

void LoadTGA::DrawTGA(PictureSurface& target) const {
    CBitmap::DrawBitmap(width_, height_, target, autoscale_);
}

std::int32_t LoadTGA::TGAWidth() const {
    return scale_mode_ == 0 ? width_ : scale_mode_ == 1 ? twip_width_ : 0;
}

std::int32_t LoadTGA::TGAHeight() const {
    return scale_mode_ == 0 ? height_ : scale_mode_ == 1 ? twip_height_ : 0;
}

Truth LoadTGA::Compressed() const {
    return truth(is_run_length());
}

Truth LoadTGA::IsTGA() const {
    return truth(is_tga(header_));
}

void LoadTGA::LoadTga8(const std::string& fileName) {
    InputFile file(fileName);
    header_ = read_header<TgaHeader>(file);
    read_palette(file);
    // The length is computed from the 24-bit map even when this file has another one or none; it fails when
    // no 24-bit map was ever read.
    check_subscript(0, map24_.size());
    const std::int64_t highest_entry = static_cast<std::int64_t>(map24_.size() / 3) - 1;
    const std::int64_t length =
        file.length() - static_cast<std::int64_t>(TgaHeader::size) - 3 * highest_entry + 1;
    if (length <= 0) {
        fail(Failure::SubscriptOutOfRange);
    }
    pixels_ = ByteArray(static_cast<std::size_t>(length));
    file.read(pixels_.bytes());
    take_direction();
    take_size();
    CBitmap::SetColors256(colors_.bytes());
    // Rows in the file have the full width, including the origin.
    const std::int32_t line = header_.ImageWidth;
    std::int32_t rows = height_;
    if (is_run_length()) {
        Expansion expansion = DecodeRle(pixels_.bytes(), 8, height_, width_);
        check_rows(expansion.length, height_, line);
        pixels_ = std::move(expansion.held);
        if (rows > 0) {
            // Leave out rows that the packets do not reach: CreateBitmap8 treats missing bytes as 0.
            const std::int64_t reached = (static_cast<std::int64_t>(pixels_.size()) + line - 1) / line;
            rows = static_cast<std::int32_t>(std::min<std::int64_t>(rows, reached));
        }
    }
    pixels_ = PadRows(pixels_.bytes(), rows, line);
    CBitmap::CreateBitmap8(pixels_.bytes(), width_, height_, top_down_);
}

void LoadTGA::LoadTga16(const std::string& fileName) {
    // Packets are decoded with 3 bytes per pixel, so compressed files are decoded incorrectly.
    const Expansion bytes = read_colour_bytes(fileName, 24);
    // Rows of an odd width are not padded, so the picture is skewed.
    CBitmap::CreateBitmap16(bytes.held.bytes(), width_, height_, top_down_);
}

void LoadTGA::LoadTga24(const std::string& fileName) {
    make_from_whole_bytes(read_colour_bytes(fileName, 24), 3);
}

void LoadTGA::LoadTga32(const std::string& fileName) {
    make_from_whole_bytes(read_colour_bytes(fileName, 32), 4);
}

// Reads the map directly after the header: an ID field is taken as part of it, ColorMapStart is ignored.
void LoadTGA::read_palette(InputFile& file) {
    colors_ = ByteArray(768);
    switch (header_.ColorMapDepth) {
    case 16:
        map16_ = read_map(file, header_.ColorMapLength, 2);
        put_words(colors_, map16_);
        break;
    case 24:
        map24_ = read_map(file, header_.ColorMapLength, 3);
        put_whole_bytes(colors_, map24_, 3);
        break;
    case 32:
        map32_ = read_map(file, header_.ColorMapLength, 4);
        put_whole_bytes(colors_, map32_, 4);
        break;
    default:
        break; // no map; maps of 15 bits are not supported
    }
}

void LoadTGA::take_size() {
    width_ = checked_subtract(header_.ImageWidth, header_.XOrigin);
    height_ = checked_subtract(header_.ImageHeight, header_.YOrigin);
}

void LoadTGA::take_direction() {
    top_down_ = TestBit(header_.ImageDescriptor, top_row_first_bit) != 0 ? 1 : 0;
}

bool LoadTGA::is_run_length() const {
    return header_.ImageType == 9 || header_.ImageType == 10;
}

// Reads everything after the header, expanded if the image type says so. An ID field or a colour map is taken
// as pixels.
LoadTGA::Expansion LoadTGA::read_colour_bytes(const std::string& fileName, std::int32_t packet_bits) {
    InputFile file(fileName);
    header_ = read_header<TgaHeader>(file);
    take_size();
    // The product is not used, but a row of more than 32767 bits must fail here.
    static_cast<void>(checked_multiply(std::int16_t{header_.PixelDepth}, header_.ImageWidth));
    ByteArray bytes = read_rest(file);
    take_direction();
    if (is_run_length()) {
        return DecodeRle(bytes.bytes(), packet_bits, height_, width_);
    }
    const auto length = static_cast<std::int64_t>(bytes.size());
    return {std::move(bytes), length};
}

void LoadTGA::make_from_whole_bytes(const Expansion& bytes, std::int32_t pixel_bytes) {
    const double highest_index = static_cast<double>(bytes.length) - 1;
    const auto last_pixel = round_to_even<std::int64_t>(highest_index / pixel_bytes - 1);
    const std::int64_t picture_pixels = std::int64_t{width_} * height_;
    if (last_pixel < 0 || picture_pixels <= 0) {
        fail(Failure::SubscriptOutOfRange);
    }
    if (picture_pixels * 4 > std::numeric_limits<std::int32_t>::max()) {
        fail(Failure::OutOfMemory);
    }
    // Leave out missing pixels: CreateBitmap32 makes them black.
    const std::size_t held = bytes.held.size();
    const auto step = static_cast<std::size_t>(pixel_bytes);
    const auto reached = std::min(static_cast<std::size_t>(std::min(last_pixel + 1, picture_pixels)),
                                  (held + step - 1) / step);
    pixels_ = ByteArray(reached * 4);
    for (std::size_t i = 0; i < reached; ++i) {
        const std::size_t count = std::min<std::size_t>(3, held - i * step);
        std::copy_n(bytes.held.data() + i * step, count, pixels_.data() + i * 4);
    }
    CBitmap::CreateBitmap32(pixels_.bytes(), width_, height_, top_down_);
}

LoadTGA::Expansion LoadTGA::DecodeRle(std::span<const std::uint8_t> bytes, std::int32_t bits,
                                      std::int32_t height, std::int32_t width) {
    const auto pixel_bytes = round_to_even<std::int32_t>(bits / 8.0);
    Expansion expanded;
    expanded.length = expanded_length(height, width, pixel_bytes);
    const std::int64_t held = std::min(expanded.length, max_expanded(bytes.size(), pixel_bytes));
    expanded.held = ByteArray(static_cast<std::size_t>(held));
    const std::span<std::uint8_t> target = expanded.held.bytes();
    const std::int64_t total = expanded.length - 1;
    std::int64_t written = 0;
    std::size_t at = 0;
    while (written < total && at < bytes.size()) {
        const std::uint8_t code = bytes[at++];
        const std::span<const std::uint8_t> source = bytes.subspan(at);
        const auto whole_pixel = static_cast<std::size_t>(pixel_bytes);
        if (code > 127) {
            const auto pixel = source.first(std::min(whole_pixel, source.size()));
            for (int i = 0; i < code - 127; ++i, written += pixel_bytes) {
                put_clipped(target, written, pixel);
            }
            at += pixel.size();
        } else {
            const std::size_t wanted = (std::size_t{code} + 1) * whole_pixel;
            const auto pixels = source.first(std::min(wanted, source.size()));
            put_clipped(target, written, pixels);
            written += static_cast<std::int64_t>(wanted);
            at += pixels.size();
        }
    }
    return expanded;
}

ByteArray LoadTGA::PadRows(std::span<const std::uint8_t> bytes, std::int32_t height, std::int32_t lineBytes) {
    return pad_rows(bytes, height, lineBytes, RowOrder::Kept);
}

} // namespace varnoth
