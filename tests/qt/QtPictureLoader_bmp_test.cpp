// BMP files through the loader, and the BMP reader compared with Qt's.
#include <bit>
#include <optional>

#include <gtest/gtest.h>

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QImageReader>

#include "core/codecs/read_bmp.h"
#include "qt/made_pictures.h"
#include "support/TemporaryFolder.h"
#include "support/expect_failure.h"
#include "support/made_bmp.h"
#include "support/thoroughness.h"

namespace varnoth::test {
namespace {

// ---- The loader

TEST(QtPictureLoaderBmp, DecodesAFileWhateverItsExtension) {
    const TemporaryFolder folder;
    const MadeBmp bmp{1, 2, 24, 0, {}, {3, 2, 1, 0, 6, 5, 4, 0}};
    for (const char* name : {"picture.bmp", "picture.jpg"}) {
        EXPECT_EQ(load(folder.write(name, bmp.file())).colours, (std::vector<Colour>{0x060504, 0x030201}))
            << name;
    }
}

TEST(QtPictureLoaderBmp, RowsMissingFromATruncatedFileAreBlack) {
    const TemporaryFolder folder;
    const MadeBmp bmp{1, -2, 24, 0, {}, {3, 2, 1, 0}};
    EXPECT_EQ(load(folder.write("picture.bmp", bmp.file())).colours, (std::vector<Colour>{0x030201, 0}));
}

TEST(QtPictureLoaderBmp, TooManyPixelsAreOutOfMemory) {
    const TemporaryFolder folder;
    const MadeBmp bmp{8193, 8192, 24, 0, {}, {1, 2, 3, 0}};
    EXPECT_FAILURE(load(folder.write("picture.bmp", bmp.file())), OutOfMemory);
}

// ---- Qt's reader

/// Decodes a file with Qt. Qt reuses the given image if it has the right size and format, and leaves pixels
/// that run-length encoding skips unchanged, so the image is filled with 0 first.
std::optional<QImage> read_by_qt(const Bytes& file) {
    QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(file.data()),
                                               static_cast<qsizetype>(file.size()));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "bmp");
    const QSize size = reader.size();
    QImage image(size.width(), std::abs(size.height()), reader.imageFormat());
    image.fill(0);
    return reader.read(&image) ? std::optional(image) : std::nullopt;
}

/// Repeats the bits of a short channel. Qt leaves its low bits 0.
std::uint8_t with_bits_repeated(int value, int bits) {
    int widened = bits == 0 ? 0 : value >> (8 - bits) << (8 - bits);
    for (int filled = bits; filled > 0 && filled < 8; filled *= 2) {
        widened |= widened >> filled;
    }
    return static_cast<std::uint8_t>(widened);
}

/// The number of bits of red, green and blue in a pixel.
std::array<int, 3> channel_bits(const MadeBmp& bmp) {
    if (bmp.compression == 3) {
        const auto& masks = bmp.header_masks;
        return {std::popcount(masks[0]), std::popcount(masks[1]), std::popcount(masks[2])};
    }
    return bmp.bits == 16 ? std::array{5, 5, 5} : std::array{8, 8, 8};
}

/// Converts Qt's image. An index beyond the colour table is black.
ForeignPicture picture_by_qt(const QImage& image, const std::array<int, 3>& bits) {
    const bool is_indexed = image.depth() <= 8;
    ForeignPicture picture{image.width(), image.height(), {}};
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const bool is_black = is_indexed && image.pixelIndex(x, y) >= image.colorCount();
            const QRgb pixel = is_black ? 0 : image.pixel(x, y);
            picture.colours.push_back(make_colour(with_bits_repeated(qRed(pixel), bits[0]),
                                                  with_bits_repeated(qGreen(pixel), bits[1]),
                                                  with_bits_repeated(qBlue(pixel), bits[2])));
        }
    }
    return picture;
}

constexpr std::int64_t most_pixels = 1 << 12;

TEST(BmpComparedWithQt, RandomFilesOfEveryVariantAreDecodedEqually) {
    RandomBmps random(1);
    for (unsigned round = 0; round < cases(5000U); ++round) {
        const MadeBmp bmp = random.next();
        SCOPED_TRACE(std::to_string(round) + ": header of " + std::to_string(bmp.header_size) + ", " +
                     std::to_string(bmp.bits) + " bits, compression " + std::to_string(bmp.compression));
        const std::optional<QImage> image = read_by_qt(bmp.file());
        ASSERT_TRUE(image);
        const ForeignPicture theirs = picture_by_qt(*image, channel_bits(bmp));
        const ForeignPicture ours = picture_of(read_bmp(bmp.file(), most_pixels));
        ASSERT_EQ(ours.width, theirs.width);
        ASSERT_EQ(ours.height, theirs.height);
        ASSERT_EQ(ours.colours, theirs.colours);
    }
}

/// Whether Qt knows the size of the header. It treats a header of any other size like one of 12 bytes.
bool has_known_header(const Bytes& file) {
    const std::uint32_t size = get_u32(file, 14);
    return size == 12 || size == 40 || size == 64 || size == 108 || size == 124;
}

// Each file is padded, so that a broken header does not make it a truncated file: for those the readers
// differ on purpose.
TEST(BmpComparedWithQt, BrokenHeadersAreAcceptedOrRejectedEqually) {
    RandomBmps random(3);
    unsigned accepted = 0;
    unsigned rejected = 0;
    for (unsigned round = 0; round < cases(20'000U); ++round) {
        const MadeBmp bmp = random.next();
        Bytes file = bmp.file();
        const auto headers = static_cast<std::int32_t>(14 + std::min<std::size_t>(bmp.header_size, 40));
        for (std::int32_t change = random.number(1, 3); change > 0; --change) {
            const auto at = static_cast<std::size_t>(random.number(0, headers - 1));
            file[at] =
                random.number(0, 1) == 0 ? random.byte() : static_cast<std::uint8_t>(random.number(0, 4));
        }
        if (get_u32(file, 10) > file.size()) {
            continue;
        }
        file.resize(file.size() + 4 * most_pixels + 1024);
        std::optional<Bitmap> ours;
        const auto failure = failure_in([&] { ours = read_bmp(file, most_pixels); });
        if (failure == Failure::OutOfMemory) {
            continue; // Qt has a different limit
        }
        SCOPED_TRACE(round);
        const std::optional<QImage> theirs = read_by_qt(file);
        const bool accepted_by_qt = theirs && has_known_header(file);
        ASSERT_EQ(failure, accepted_by_qt ? std::nullopt : std::optional(Failure::InvalidPicture));
        if (!accepted_by_qt) {
            ++rejected;
            continue;
        }
        ++accepted;
        ASSERT_EQ(ours->width(), theirs->width());
        ASSERT_EQ(ours->height(), theirs->height());
        const auto compression = get_u32(file, 14) == 12 ? 0 : get_u32(file, 30);
        if (compression == 0) {
            const bool has_short_channels = get_u16(file, get_u32(file, 14) == 12 ? 24 : 28) == 16;
            const std::array<int, 3> bits = has_short_channels ? std::array{5, 5, 5} : std::array{8, 8, 8};
            ASSERT_EQ(picture_of(*ours).colours, picture_by_qt(*theirs, bits).colours);
        }
    }
    EXPECT_GT(accepted, cases(1000U));
    EXPECT_GT(rejected, cases(1000U));
}

} // namespace
} // namespace varnoth::test
