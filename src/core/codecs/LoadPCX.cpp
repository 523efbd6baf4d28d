#include "core/codecs/LoadPCX.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <new>

#include "core/base/RunTimeFailure.h"
#include "core/base/numbers.h"
#include "core/codecs/CBitmap.h"
#include "core/codecs/reader_parts.h"

namespace varnoth {

namespace {

constexpr std::uint8_t palette_marker = 12;
constexpr std::size_t palette_bytes = 768;

bool is_pcx(const PcxHeader& header) {
    return header.Manufacturer == 10 && header.Encoding < 2 &&
           (header.Version == 0 || header.Version == 2 || header.Version == 3 || header.Version == 5);
}

std::int16_t extent(std::int16_t first, std::int16_t last) {
    return checked_add(checked_subtract(last, first), 1);
}

// The 256 colours at the end of the file; a grey ramp when the marker byte before them is missing.
std::array<std::uint8_t, palette_bytes> read_palette(InputFile& file) {
    std::array<std::uint8_t, 1 + palette_bytes> tail{};
    file.seek(file.length() - static_cast<std::int64_t>(tail.size()));
    file.read(tail);
    std::array<std::uint8_t, palette_bytes> palette{};
    if (tail[0] == palette_marker) {
        std::copy(tail.begin() + 1, tail.end(), palette.begin());
        return palette;
    }
    for (std::size_t i = 0; i < palette.size(); ++i) {
        palette[i] = static_cast<std::uint8_t>(i / 3);
    }
    return palette;
}

// Spreads each plane byte over 4 bytes: its bits, most significant first, become the lowest bits of 8
// nibbles, high nibble first.
using NibbleBits = std::array<std::array<std::uint8_t, 4>, 256>;

constexpr NibbleBits lowest_bits = [] {
    NibbleBits table{};
    for (unsigned value = 0; value < table.size(); ++value) {
        for (unsigned k = 0; k < 4; ++k) {
            const unsigned pair = value >> (6 - 2 * k);
            table[value][k] = static_cast<std::uint8_t>((pair & 2) << 3 | (pair & 1));
        }
    }
    return table;
}();

// Converts lines of three 8-bit planes to 32-bit pixels, bottom row first.
ByteArray join_planes(std::span<const std::uint8_t> bytes, std::int32_t width, std::int32_t height,
                      std::int32_t plane_bytes) {
    const std::int64_t total = std::int64_t{width} * height * 4;
    if (total <= 0) {
        fail(Failure::SubscriptOutOfRange);
    }
    if (height > 0) {
        // The first green and the last blue byte are the extreme offsets that could be out of range.
        check_subscript(plane_bytes, bytes.size());
        check_subscript((3 * (std::int64_t{height} - 1) + 2) * plane_bytes + width - 1, bytes.size());
    }
    if (total > std::numeric_limits<std::int32_t>::max()) {
        fail(Failure::OutOfMemory);
    }
    ByteArray pixels(static_cast<std::size_t>(total));
    std::uint8_t* pixel = pixels.data();
    for (std::int32_t row = height - 1; row >= 0; --row) {
        const auto plane = static_cast<std::size_t>(plane_bytes);
        const std::uint8_t* red = bytes.data() + 3 * static_cast<std::size_t>(row) * plane;
        for (std::int32_t x = 0; x < width; ++x, ++red, pixel += 4) {
            pixel[2] = red[0];
            pixel[1] = red[plane];
            pixel[0] = red[2 * plane];
        }
    }
    return pixels;
}

} // namespace

Truth LoadPCX::GetInfoPCX(const std::string& fileName, std::int32_t& width, std::int32_t& height,
                          std::int16_t& bpp) const {
    try {
        InputFile file(fileName);
        const auto header = read_header<PcxHeader>(file);
        width = extent(header.XMin, header.XMax);
        height = extent(header.YMin, header.YMax);
        bpp = header.BitsPerPixel;
        return truth(is_pcx(header));
    } catch (const RunTimeFailure&) {
        return False;
    } catch (const std::bad_alloc&) {
        return False;
    }
}

void LoadPCX::Load(const std::string& fileName) {
    {
        InputFile file(fileName);
        header_ = read_header<PcxHeader>(file);
    }
    width_ = extent(header_.XMin, header_.XMax);
    height_ = extent(header_.YMin, header_.YMax);
    line_bytes_ = checked_multiply(std::int16_t{header_.NPlanes}, header_.BytesPerLine);
    const CBitmap::Extent twips = CBitmap::PixelsToTwips(width_, height_);
    twip_width_ = twips.width;
    twip_height_ = twips.height;
    // Only bits and planes decide; a file that is_pcx() rejects is decoded too.
    const int bits = header_.BitsPerPixel;
    const int planes = header_.NPlanes;
    if (bits == 1 && planes == 1) {
        LoadPcx1(fileName);
    } else if ((bits == 1 && planes == 4) || (bits == 4 && planes == 1)) {
        LoadPcx4(fileName);
    } else if (bits == 8 && planes == 1) {
        LoadPcx8(fileName);
    } else if (bits == 8 && planes == 3) {
        LoadPcx24(fileName);
    }
}

std::int32_t LoadPCX::PCXWidth() const {
    return scale_mode_ == 0 ? width_ : scale_mode_ == 1 ? twip_width_ : 0;
}

std::int32_t LoadPCX::PCXHeight() const {
    return scale_mode_ == 0 ? height_ : scale_mode_ == 1 ? twip_height_ : 0;
}

Truth LoadPCX::IsPCX() const {
    return truth(is_pcx(header_));
}

void LoadPCX::DrawPCX(PictureSurface& target) const {
    CBitmap::DrawBitmap(width_, height_, target, autoscale_);
}

void LoadPCX::LoadPcx8(const std::string& fileName) {
    InputFile file(fileName);
    read_header_and_bytes(file);
    CBitmap::SetColors256(read_palette(file));
    expand();
    pixels_ = FlipRows(pixels_.bytes(), height_, line_bytes_);
    CBitmap::CreateBitmap8(pixels_.bytes(), width_, height_, top_down_);
}

void LoadPCX::LoadPcx1(const std::string& fileName) {
    InputFile file(fileName);
    read_header_and_bytes(file);
    expand();
    pixels_ = FlipRows(pixels_.bytes(), height_, line_bytes_);
    // Always black and white; the file's colour map is ignored.
    CBitmap::SetMonoColors();
    CBitmap::CreateBitmap1(pixels_.bytes(), width_, height_, top_down_);
}

void LoadPCX::LoadPcx4(const std::string& fileName) {
    InputFile file(fileName);
    read_header_and_bytes(file);
    // Half the width, rounded up to an even number of bytes; the file's BytesPerLine is ignored.
    const std::int32_t half = (width_ + (width_ % 2 != 0 ? 1 : 0)) / 2;
    const std::int32_t line = half + (half % 2 != 0 ? 1 : 0);
    CBitmap::SetColors16(header_.ColorMap);
    expand();
    std::int32_t width = width_;
    if (header_.NPlanes == 4) {
        width = RoundWidth(width_);
        if (width > 0 && height_ > 0 && !CBitmap::is_possible_size(width, height_)) {
            // MergePlanes would allocate this size even for a file of a few bytes.
            CBitmap::CurrentBitmap = nullptr;
            return;
        }
        pixels_ = MergePlanes(pixels_.bytes(), header_.BytesPerLine, width, height_);
    }
    pixels_ = FlipRows(pixels_.bytes(), height_, line);
    CBitmap::CreateBitmap4(pixels_.bytes(), width, height_, top_down_);
}

void LoadPCX::LoadPcx24(const std::string& fileName) {
    InputFile file(fileName);
    read_header_and_bytes(file);
    expand();
    pixels_ = join_planes(pixels_.bytes(), width_, height_, header_.BytesPerLine);
    CBitmap::CreateBitmap32(pixels_.bytes(), width_, height_, top_down_);
}

void LoadPCX::read_header_and_bytes(InputFile& file) {
    header_ = read_header<PcxHeader>(file);
    pixels_ = read_rest(file);
}

void LoadPCX::expand() {
    if (header_.Encoding == 1) {
        pixels_ = DecodeRle(pixels_.bytes());
    }
}

ByteArray LoadPCX::DecodeRle(std::span<const std::uint8_t> bytes) {
    // Calls take(count, value) for every run up to the end of the bytes; a palette after the picture is
    // expanded too.
    const auto walk = [&](auto&& take) {
        for (std::size_t i = 0; i + 1 < bytes.size(); ++i) {
            if (bytes[i] < 192) {
                take(std::size_t{1}, bytes[i]);
            } else {
                // A count of 0 drops the value.
                const std::size_t count = bytes[i] - std::size_t{192};
                take(count, bytes[++i]);
            }
        }
    };
    std::size_t total = 0;
    walk([&](std::size_t count, std::uint8_t) { total += count; });
    ByteArray expanded(total);
    std::uint8_t* target = expanded.data();
    walk([&](std::size_t count, std::uint8_t value) { target = std::fill_n(target, count, value); });
    return expanded;
}

ByteArray LoadPCX::FlipRows(std::span<const std::uint8_t> bytes, std::int32_t height,
                            std::int32_t lineBytes) {
    return pad_rows(bytes, height, lineBytes, RowOrder::Reversed);
}

std::int32_t LoadPCX::RoundWidth(std::int32_t width) {
    const std::int32_t even = width + (width % 2 != 0 ? 1 : 0);
    return even + (even / 2 % 2 != 0 ? 2 : 0);
}

ByteArray LoadPCX::MergePlanes(std::span<const std::uint8_t> bytes, std::int32_t bytesPerLine,
                               std::int32_t width, std::int32_t height) {
    const std::int32_t line = width / 2;
    const std::int64_t total = std::int64_t{line} * height;
    if (total <= 0) {
        fail(Failure::SubscriptOutOfRange);
    }
    const auto byte_at = [&](std::int64_t at) {
        const bool present = at >= 0 && at < static_cast<std::int64_t>(bytes.size());
        return present ? bytes[static_cast<std::size_t>(at)] : std::uint8_t{0};
    };
    ByteArray merged(static_cast<std::size_t>(total));
    for (std::int32_t row = 0; row < height; ++row) {
        const std::int64_t plane0 = std::int64_t{4} * bytesPerLine * row;
        const std::int64_t farthest = plane0 + (line - 1) / 4;
        if (plane0 >= static_cast<std::int64_t>(bytes.size()) || farthest < 0) {
            break; // only zeros from here on: after the bytes or, with lines of negative length, before them
        }
        std::uint8_t* target = merged.data() + std::int64_t{line} * row;
        if (bytesPerLine == 0 && row > 0) {
            std::copy_n(merged.data(), line, target); // with lines of 0 bytes all rows are equal
            continue;
        }
        for (std::int32_t at = 0; at < line; at += 4) {
            const std::int64_t source = plane0 + at / 4;
            const auto group = MergeBytes(byte_at(source), byte_at(source + bytesPerLine),
                                          byte_at(source + std::int64_t{2} * bytesPerLine),
                                          byte_at(source + std::int64_t{3} * bytesPerLine));
            std::copy_n(group.begin(), std::min(line - at, 4), target + at);
        }
    }
    return merged;
}

std::array<std::uint8_t, 4> LoadPCX::MergeBytes(std::uint8_t plane0, std::uint8_t plane1, std::uint8_t plane2,
                                                std::uint8_t plane3) {
    std::array<std::uint8_t, 4> bytes{};
    for (std::size_t k = 0; k < bytes.size(); ++k) {
        bytes[k] = static_cast<std::uint8_t>(lowest_bits[plane0][k] | lowest_bits[plane1][k] << 1 |
                                             lowest_bits[plane2][k] << 2 | lowest_bits[plane3][k] << 3);
    }
    return bytes;
}

} // namespace varnoth
