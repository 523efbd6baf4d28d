#include "cli/written_pictures.h"

#include <algorithm>

#include <QBuffer>
#include <QByteArray>
#include <QImage>

#include "cli/gif_writer.h"
#include "core/base/RunTimeFailure.h"
#include "core/codecs/write_pcx.h"
#include "core/codecs/write_tga.h"

namespace varnoth::cli {

namespace {

std::vector<std::uint8_t> encode_with_qt(const QImage& image, const char* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (image.isNull() || !buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, format)) {
        fail(Failure::Overflow);
    }
    return {bytes.begin(), bytes.end()};
}

std::vector<std::uint8_t> encode_with_qt(const IndexedPicture& picture, const char* format) {
    // The BMP writer reads rows up to a multiple of 4 bytes, and writes what it finds there.
    const auto width = static_cast<std::size_t>(picture.width);
    const std::size_t stride = (width + 3) / 4 * 4;
    std::vector<std::uint8_t> rows(stride * static_cast<std::size_t>(picture.height));
    for (std::size_t y = 0; y * width < picture.indices.size(); ++y) {
        std::ranges::copy(picture.indices.subspan(y * width, width), rows.data() + y * stride);
    }
    QImage image(rows.data(), picture.width, picture.height, static_cast<qsizetype>(stride),
                 QImage::Format_Indexed8);
    image.setColorTable(QList<QRgb>(picture.colours.begin(), picture.colours.end()));
    return encode_with_qt(image, format);
}

std::vector<std::uint8_t> encode_gif(const IndexedPicture& picture) {
    GifOptions options;
    options.width = picture.width;
    options.height = picture.height;
    options.colours = picture.colours;
    GifWriter writer(options);
    writer.add({0, 0, picture.width, picture.height, picture.indices});
    return writer.finish();
}

} // namespace

std::vector<std::uint8_t> encode(const IndexedPicture& picture, PictureFormat format) {
    switch (format) {
    case PictureFormat::Png:
        return encode_with_qt(picture, "png");
    case PictureFormat::Bmp:
        return encode_with_qt(picture, "bmp");
    case PictureFormat::Tga:
        return write_tga(picture);
    case PictureFormat::Pcx:
        return write_pcx(picture);
    case PictureFormat::Gif:
        break;
    }
    return encode_gif(picture);
}

std::vector<std::uint8_t> encode(const RgbaPicture& picture, PictureFormat format) {
    if (format == PictureFormat::Tga) {
        return write_tga(picture);
    }
    static_assert(sizeof(QRgb) == sizeof(std::uint32_t));
    const auto* const bytes = reinterpret_cast<const uchar*>(picture.pixels.data());
    return encode_with_qt(QImage(bytes, picture.width, picture.height, QImage::Format_ARGB32), "png");
}

RgbaPicture with_colours(const IndexedPicture& picture) {
    RgbaPicture result{picture.width, picture.height, {}};
    result.pixels.reserve(picture.indices.size());
    for (const std::uint8_t index : picture.indices) {
        result.pixels.push_back(picture.colours[index]);
    }
    return result;
}

} // namespace varnoth::cli
