#include "qt/QtPictureLoader.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <new>
#include <span>

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QImageReader>

#include "core/base/ByteArray.h"
#include "core/base/RunTimeFailure.h"
#include "core/base/files.h"
#include "core/codecs/read_bmp.h"
#include "core/image/Bitmap.h"

namespace varnoth {

namespace {

enum class Content { Bmp, Jpeg };

/// Identifies the file by its first two bytes.
Content content_of(InputFile& file) {
    using Magic = std::array<std::uint8_t, 2>;
    Magic magic{};
    file.read(magic);
    if (magic == Magic{'B', 'M'}) {
        return Content::Bmp;
    }
    if (magic == Magic{0xFF, 0xD8}) {
        return Content::Jpeg;
    }
    fail(Failure::InvalidPicture);
}

RGBQUAD quad_of_rgb(QRgb rgb) {
    return {static_cast<std::uint8_t>(qBlue(rgb)), static_cast<std::uint8_t>(qGreen(rgb)),
            static_cast<std::uint8_t>(qRed(rgb)), 0};
}

Bitmap bitmap_of(const QImage& image) {
    Bitmap bitmap(image.width(), image.height(), 32, Bitmap::Rows::Surface);
    const auto width = static_cast<std::size_t>(image.width());
    for (int y = 0; y < image.height(); ++y) {
        const auto* from = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        std::uint8_t* to = bitmap.row(y);
        for (std::size_t x = 0; x < width; ++x) {
            const RGBQUAD pixel = quad_of_rgb(from[x]);
            std::memcpy(to + 4 * x, &pixel, sizeof pixel);
        }
    }
    return bitmap;
}

Bitmap read_jpeg(std::span<const std::uint8_t> file) {
    QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(file.data()),
                                               static_cast<qsizetype>(file.size()));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "jpg");
    reader.setAutoDetectImageFormat(false); // no other format
    reader.setAutoTransform(false);
    const QSize size = reader.size();
    if (std::int64_t{size.width()} * size.height() > QtPictureLoader::max_pixels) {
        fail(Failure::OutOfMemory);
    }
    const QImage image = reader.read();
    if (image.isNull()) {
        fail(Failure::InvalidPicture);
    }
    return bitmap_of(image.convertToFormat(QImage::Format_RGB32));
}

} // namespace

Picture QtPictureLoader::load(const std::string& path) {
    try {
        InputFile file(path);
        const Content content = content_of(file);
        file.seek(0);
        ByteArray whole = ByteArray::for_overwrite(static_cast<std::size_t>(file.length()));
        const std::span<const std::uint8_t> bytes = whole.bytes().first(file.read(whole.bytes()));
        return make_picture(content == Content::Bmp ? read_bmp(bytes, max_pixels) : read_jpeg(bytes));
    } catch (const std::bad_alloc&) {
        fail(Failure::OutOfMemory);
    }
}

} // namespace varnoth
