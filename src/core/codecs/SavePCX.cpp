#include "core/codecs/SavePCX.h"

#include <algorithm>
#include <cstddef>

#include "core/base/files.h"
#include "core/base/numbers.h"
#include "core/codecs/PackedBytes.h"
#include "core/codecs/PcxHeader.h"
#include "core/codecs/grab_rows.h"

namespace varnoth {

namespace {

PcxHeader header_of(std::int32_t width, std::int32_t height, std::int32_t bytes_per_line, Truth compress) {
    PcxHeader header;
    header.Manufacturer = 10;
    header.Version = 5;
    header.Encoding = compress == True ? 1 : 0;
    header.BitsPerPixel = 8;
    // The origin is (1, 1), so that the last column and row are the width and height themselves.
    header.XMin = 1;
    header.YMin = 1;
    header.XMax = narrow<std::int16_t>(width);
    header.YMax = narrow<std::int16_t>(height);
    header.HDpi = 96;
    header.VDpi = 96;
    header.NPlanes = 3;
    header.BytesPerLine = narrow<std::int16_t>(bytes_per_line);
    return header;
}

// Extends rows to an even number of pixels. The extra pixel of an odd width is what follows the row in the
// grabbed bytes (padding and the start of the next row), or zeros after the last row.
ByteArray even_rows(const ByteArray& grabbed, std::int32_t stride, std::int32_t even_width,
                    std::int32_t height) {
    const auto row_bytes = static_cast<std::size_t>(checked_multiply(even_width, 3));
    const std::int32_t count = checked_multiply(checked_multiply(height, even_width), 3);
    ByteArray rows(static_cast<std::size_t>(count));
    for (std::size_t y = 0; y < static_cast<std::size_t>(height); ++y) {
        const std::size_t from = y * static_cast<std::size_t>(stride);
        const std::size_t bytes = std::min(row_bytes, grabbed.size() - from);
        std::copy_n(grabbed.data() + from, bytes, rows.data() + y * row_bytes);
    }
    return rows;
}

} // namespace

void SavePCX::SavePCXinFile(const std::string& filename, PictureSurface& ThePicture, Truth Compress) {
    compress_ = Compress;
    const PixelSize size = size_in_pixels(ThePicture);
    width_ = size.width;
    height_ = size.height;
    even_width_ = width_ + width_ % 2;
    const ByteArray grabbed = grab_rows(ThePicture, size, FirstRow::Top);
    WritePcxFile(filename, even_rows(grabbed, stride_of_24_bits(width_), even_width_, height_).bytes());
}

void SavePCX::WritePcxFile(const std::string& filename, std::span<const std::uint8_t> rows) {
    const PcxHeader header = header_of(width_, height_, even_width_, compress_);
    const ByteArray planes = SplitPlanes(rows, even_width_, height_, even_width_);
    if (file_exists(filename)) {
        delete_file(filename);
    }
    if (compress_ == True) {
        packed_ = EncodeRle(planes.bytes(), even_width_);
    }
    OutputFile file(filename);
    file.write(header.to_bytes());
    file.write(compress_ == False ? planes.bytes() : packed_.bytes());
    file.close();
}

ByteArray SavePCX::SplitPlanes(std::span<const std::uint8_t> rows, std::int32_t width, std::int32_t height,
                               std::int32_t bytesPerLine) {
    const auto pixels = static_cast<std::size_t>(width);
    const auto line = static_cast<std::size_t>(bytesPerLine);
    ByteArray planes(static_cast<std::size_t>(height) * line * 3);
    for (std::size_t y = 0; y < static_cast<std::size_t>(height); ++y) {
        const std::span<const std::uint8_t> from = rows.subspan(y * pixels * 3, pixels * 3);
        std::uint8_t* to = planes.data() + 3 * line * y;
        for (std::size_t x = 0; x < pixels; ++x) {
            to[x] = from[3 * x + 2];
            to[x + line] = from[3 * x + 1];
            to[x + 2 * line] = from[3 * x];
        }
    }
    return planes;
}

ByteArray SavePCX::EncodeRle(std::span<const std::uint8_t> bytes, std::int32_t bytesPerLine) {
    constexpr std::size_t longest_run = 63;
    const std::size_t room = encoder_room(bytes.size(), bytesPerLine);
    PackedBytes packed(std::max(room, 2 * bytes.size()));
    for (std::size_t i = 0; i < bytes.size();) {
        const std::uint8_t value = bytes[i];
        std::size_t length = 1;
        while (i + length < bytes.size() && bytes[i + length] == value && length < longest_run) {
            ++length;
        }
        // A value from 192 on needs a count byte (193 for a single one); smaller values need none.
        if (length > 1 || value >= 192) {
            packed.append(static_cast<std::uint8_t>(192 + length));
        }
        packed.append(value);
        i += length;
    }
    return packed.take();
}

} // namespace varnoth
