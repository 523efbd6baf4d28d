#include "platform/qt/QtPictureLoader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <optional>
#include <span>
#include <utility>

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QImageReader>

#include "base/RunTimeFailure.h"
#include "base/bytes.h"
#include "base/files.h"
#include "platform/Bitmap.h"
#include "platform/packed_indices.h"
#include "platform/qt/cut_bmp.h"
#include "platform/qt/cut_jpeg.h"
#include "platform/qt/plain_bmp.h"

namespace varnoth {

namespace {

constexpr std::size_t file_header_size = 14; // of a BMP file

enum class Content { Bmp, Jpeg };

using Magic = std::array<std::uint8_t, 2>;

Content content_of(const Magic& magic) {
    if (magic == Magic{'B', 'M'}) {
        return Content::Bmp;
    }
    if (magic == Magic{0xFF, 0xD8}) {
        return Content::Jpeg;
    }
    fail(Failure::InvalidPicture);
}

std::span<const std::uint8_t> bytes_of(const QByteArray& array) {
    // Qt keeps bytes as signed characters.
    return {reinterpret_cast<const std::uint8_t*>(array.constData()), static_cast<std::size_t>(array.size())};
}

struct EncodedPicture {
    Content content;
    QByteArray file;
};

Content read_content(InputFile& file) {
    Magic magic{};
    file.read(magic);
    return content_of(magic);
}

EncodedPicture read_whole(InputFile& file, Content content) {
    file.seek(0);
    QByteArray bytes(file.length(), '\0');
    const std::size_t read =
        file.read({reinterpret_cast<std::uint8_t*>(bytes.data()), static_cast<std::size_t>(bytes.size())});
    bytes.truncate(static_cast<qsizetype>(read));
    return {content, bytes};
}

void check_size(std::int64_t width, std::int64_t height) {
    if (width * height > QtPictureLoader::most_pixels) {
        fail(Failure::OutOfMemory);
    }
}

/// A picture whose every byte is 0. Qt decodes into a picture that already has the right size and format as
/// it stands.
QImage zeroed_image(const QSize& size, QImage::Format format) {
    if (size.isEmpty() || format == QImage::Format_Invalid) {
        fail(Failure::InvalidPicture);
    }
    check_size(size.width(), size.height());
    QImage image(size, format);
    if (image.isNull()) {
        fail(Failure::OutOfMemory);
    }
    std::memset(image.bits(), 0, static_cast<std::size_t>(image.sizeInBytes()));
    return image;
}

/// The size that the reader announces; it tells a BMP file whose rows run downward by a negative height.
QSize announced_size(const QImageReader& reader) {
    const QSize size = reader.size();
    if (size.height() == std::numeric_limits<int>::min()) {
        fail(Failure::InvalidPicture);
    }
    return {size.width(), std::abs(size.height())};
}

/// `format` is what the picture is known to decode to, or Format_Invalid to go by what the reader announces.
QImage decode(const EncodedPicture& picture, QImage::Format format = QImage::Format_Invalid) {
    QBuffer buffer;
    buffer.setData(picture.file);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, picture.content == Content::Bmp ? "bmp" : "jpg");
    reader.setAutoDetectImageFormat(false); // the content has been looked at: no other reader shall try
    reader.setAutoTransform(false);
    QImage image = zeroed_image(announced_size(reader),
                                format == QImage::Format_Invalid ? reader.imageFormat() : format);
    const uchar* const memory = image.constBits();
    if (!reader.read(&image)) {
        fail(Failure::InvalidPicture);
    }
    if (image.constBits() != memory && format != image.format()) {
        // The announced format was another one, so Qt has made a picture over memory of its own.
        return decode(picture, image.format());
    }
    return image;
}

RGBQUAD quad_of_rgb(QRgb rgb) {
    return {static_cast<std::uint8_t>(qBlue(rgb)), static_cast<std::uint8_t>(qGreen(rgb)),
            static_cast<std::uint8_t>(qRed(rgb)), 0};
}

Bitmap bitmap_of_size(const QImage& image) {
    return Bitmap(image.width(), image.height(), 32, Bitmap::Rows::Surface);
}

/// Rows below `rows` stay black.
Bitmap bitmap_of_colours(const QImage& image, int rows) {
    // Colours as they stand: alpha is dropped.
    const QImage colours = image.convertToFormat(QImage::Format_RGB32);
    Bitmap bitmap = bitmap_of_size(image);
    for (int y = 0; y < rows; ++y) {
        const auto* from = reinterpret_cast<const QRgb*>(colours.constScanLine(y));
        std::uint8_t* to = bitmap.row(y);
        for (int x = 0; x < image.width(); ++x) {
            const RGBQUAD pixel = quad_of_rgb(from[x]);
            std::memcpy(to + std::size_t{4} * static_cast<std::size_t>(x), &pixel, sizeof pixel);
        }
    }
    return bitmap;
}

/// Bits a pixel that the file spends on red, green and blue. Masks stand at the same place in every header
/// that has them (BITMAPINFOHEADER with BI_BITFIELDS, BITMAPV4HEADER and later).
std::array<int, 3> channel_bits(std::span<const std::uint8_t> file) {
    constexpr std::size_t header_with_masks = 66;
    constexpr std::uint32_t without_compression = 0;
    const bool long_header = file.size() >= 54 && get_u32(file, 14) >= 40;
    const int bits = long_header ? get_u16(file, 28) : 24;
    if (bits != 16 && bits != 32) {
        return {8, 8, 8};
    }
    if (get_u32(file, 30) == without_compression) {
        return bits == 16 ? std::array{5, 5, 5} : std::array{8, 8, 8};
    }
    if (file.size() < header_with_masks) {
        return {8, 8, 8};
    }
    const auto width = [&](std::size_t at) { return std::min(8, std::popcount(get_u32(file, at))); };
    return {width(54), width(58), width(62)};
}

/// Every byte value with its highest bits repeated downward over the rest.
std::array<std::uint8_t, 256> repeated_bits(int bits) {
    std::array<std::uint8_t, 256> result{};
    for (unsigned value = 0; bits > 0 && value < result.size(); ++value) {
        unsigned widened = value >> (8 - bits) << (8 - bits);
        for (int filled = bits; filled < 8; filled *= 2) {
            widened |= widened >> filled;
        }
        result[value] = static_cast<std::uint8_t>(widened);
    }
    return result;
}

/// Qt widens short channels with zeros, so that white is not white; here their high bits are repeated.
void widen_short_channels(Bitmap& bitmap, const std::array<int, 3>& bits) {
    if (bits == std::array{8, 8, 8}) {
        return;
    }
    const auto red = repeated_bits(bits[0]);
    const auto green = repeated_bits(bits[1]);
    const auto blue = repeated_bits(bits[2]);
    const std::span<std::uint8_t> bytes = bitmap.bytes();
    for (std::size_t at = 0; at < bytes.size(); at += 4) {
        bytes[at] = blue[bytes[at]];
        bytes[at + 1] = green[bytes[at + 1]];
        bytes[at + 2] = red[bytes[at + 2]];
    }
}

/// An index beyond the colour table is black.
Bitmap bitmap_of_indices(const QImage& image) {
    std::array<RGBQUAD, 256> colours{};
    const QList<QRgb> table = image.colorTable();
    for (std::size_t i = 0; i < colours.size() && i < static_cast<std::size_t>(table.size()); ++i) {
        colours[i] = quad_of_rgb(table[static_cast<qsizetype>(i)]);
    }
    Bitmap bitmap = bitmap_of_size(image);
    const auto width = static_cast<std::size_t>(image.width());
    for (int y = 0; y < image.height(); ++y) {
        const uchar* row = image.constScanLine(y);
        std::uint8_t* to = bitmap.row(y);
        for (std::size_t x = 0; x < width; ++x) {
            std::memcpy(to + 4 * x, &colours[get_packed_index(row, x, image.depth())], sizeof(RGBQUAD));
        }
    }
    return bitmap;
}

Bitmap bitmap_of_bmp(const QImage& image, std::span<const std::uint8_t> file) {
    if (image.format() == QImage::Format_Indexed8 || image.format() == QImage::Format_Mono) {
        return bitmap_of_indices(image);
    }
    Bitmap bitmap = bitmap_of_colours(image, image.height());
    widen_short_channels(bitmap, channel_bits(file));
    return bitmap;
}

/// The picture continued behind its cut.
EncodedPicture continued(const EncodedPicture& picture, std::size_t end,
                         std::span<const std::uint8_t> filler) {
    EncodedPicture longer = picture;
    longer.file.truncate(static_cast<qsizetype>(end));
    longer.file.append(reinterpret_cast<const char*>(filler.data()), static_cast<qsizetype>(filler.size()));
    return longer;
}

/// Makes every pixel black in which the two pictures behind it differ.
void blacken_differences(Bitmap& bitmap, const QImage& image, const QImage& other) {
    const int depth = image.depth();
    for (int y = 0; y < bitmap.height(); ++y) {
        const uchar* row = image.constScanLine(y);
        const uchar* other_row = other.constScanLine(y);
        for (std::size_t x = 0; x < static_cast<std::size_t>(bitmap.width()); ++x) {
            const bool equal = depth == 32
                                   ? std::memcmp(row + 4 * x, other_row + 4 * x, 4) == 0
                                   : get_packed_index(row, x, depth) == get_packed_index(other_row, x, depth);
            if (!equal) {
                std::memset(bitmap.row(y) + 4 * x, 0, 4);
            }
        }
    }
}

Bitmap load_bmp(const EncodedPicture& picture) {
    const std::span<const std::uint8_t> file = bytes_of(picture.file);
    if (file.size() < file_header_size || get_u32(file, 10) > file.size()) {
        // Cut before its pixels begin; Qt would take what stands there in their place.
        fail(Failure::InvalidPicture);
    }
    // Filled up with one value and with another, a cut file shows in the difference what it does not bring:
    // memory that was black before would not do, as a decoder may set it, and index 0 may be any colour.
    const std::optional<BmpCut> cut = find_bmp_cut(file);
    if (cut) {
        check_size(static_cast<std::int64_t>(cut->width), static_cast<std::int64_t>(cut->rows));
    }
    const auto decode_with = [&](std::uint8_t value) {
        return cut ? decode(continued(picture, cut->end, bmp_filler(*cut, value))) : decode(picture);
    };
    const QImage image = decode_with(0x00);
    Bitmap bitmap = bitmap_of_bmp(image, file);
    if (cut) {
        blacken_differences(bitmap, image, decode_with(0xFF));
    }
    return bitmap;
}

/// The number of rows at the top in which both pictures have the same pixels.
int equal_rows(const QImage& image, const QImage& other) {
    const auto row_bytes =
        static_cast<std::size_t>(image.width()) * static_cast<std::size_t>(image.depth()) / 8;
    int rows = 0;
    while (rows < image.height() &&
           std::memcmp(image.constScanLine(rows), other.constScanLine(rows), row_bytes) == 0) {
        ++rows;
    }
    return rows;
}

/// A file cut in its first scan: black from the first row on that changes with what follows the cut.
Bitmap load_cut_jpeg(const EncodedPicture& picture, const JpegCut& cut) {
    const auto decode_with = [&](unsigned number) {
        return decode(continued(picture, cut.end, jpeg_filler(cut, number)));
    };
    const QImage image = decode_with(0);
    int rows = image.height();
    for (unsigned number = 1; number < jpeg_fillers; ++number) {
        rows = std::min(rows, equal_rows(image, decode_with(number)));
    }
    return bitmap_of_colours(image, rows);
}

Bitmap load_jpeg(const EncodedPicture& picture) {
    const std::optional<JpegCut> cut = find_jpeg_cut(bytes_of(picture.file));
    if (cut && cut->in_first_scan) {
        return load_cut_jpeg(picture, *cut);
    }
    // What a later scan lacks is detail only: every row is there.
    const QImage image = cut ? decode(continued(picture, cut->end, {})) : decode(picture);
    return bitmap_of_colours(image, image.height());
}

} // namespace

Picture QtPictureLoader::load(const std::string& path) {
    try {
        InputFile file(path);
        const Content content = read_content(file);
        if (content == Content::Jpeg) {
            return make_picture(load_jpeg(read_whole(file, content)));
        }
        file.seek(0);
        if (std::optional<Bitmap> plain = read_plain_bmp(file)) {
            return make_picture(std::move(*plain));
        }
        return make_picture(load_bmp(read_whole(file, content)));
    } catch (const std::bad_alloc&) {
        fail(Failure::OutOfMemory);
    }
}

} // namespace varnoth
