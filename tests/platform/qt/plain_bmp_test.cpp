// The quick way through plain BMP files, held equal to Qt's own reading, and what it leaves to Qt.
#include <random>

#include <gtest/gtest.h>

#include <QImage>

#include "platform/qt/made_pictures.h"
#include "platform/qt/plain_bmp.h"
#include "support/TemporaryFolder.h"
#include "support/pictures.h"

namespace varnoth {
namespace {

using test::Bytes;
using test::MadeBmp;

class PlainBmp : public testing::Test {
  protected:
    std::optional<Bitmap> read(const Bytes& file) const {
        InputFile input(folder_.write("plain.bmp", file));
        return read_plain_bmp(input);
    }

    QImage read_by_qt(const Bytes& file) const {
        QImage image;
        image.load(QString::fromStdString(folder_.write("plain.bmp", file)), "bmp");
        return image.convertToFormat(QImage::Format_RGB32);
    }

    test::TemporaryFolder folder_;
};

MadeBmp random_picture(std::mt19937& random, std::int32_t width, std::int32_t height) {
    const auto row_bytes = (static_cast<std::size_t>(width) * 3 + 3) / 4 * 4;
    MadeBmp bmp{width, height, 24, 0, {}, Bytes(row_bytes * static_cast<std::size_t>(std::abs(height)))};
    for (std::uint8_t& byte : bmp.data) {
        byte = static_cast<std::uint8_t>(random());
    }
    return bmp;
}

void expect_equal(const Bitmap& ours, const QImage& theirs) {
    ASSERT_EQ(ours.width(), theirs.width());
    ASSERT_EQ(ours.height(), theirs.height());
    ASSERT_EQ(ours.bits_per_pixel(), 32);
    for (std::int32_t y = 0; y < ours.height(); ++y) {
        for (std::int32_t x = 0; x < ours.width(); ++x) {
            const std::uint8_t* pixel = ours.row(y) + 4 * x;
            ASSERT_EQ(ours.pixel(x, y), make_colour(static_cast<std::uint8_t>(qRed(theirs.pixel(x, y))),
                                                    static_cast<std::uint8_t>(qGreen(theirs.pixel(x, y))),
                                                    static_cast<std::uint8_t>(qBlue(theirs.pixel(x, y)))))
                << x << ", " << y;
            ASSERT_EQ(pixel[3], 0);
        }
    }
}

TEST_F(PlainBmp, EverySizeBottomUpAndTopDownReadsAsByQt) {
    std::mt19937 random(1);
    for (const std::int32_t width : {1, 2, 3, 4, 5, 31, 256}) {
        for (const std::int32_t height : {1, -1, 2, -3, 17, 256, -256}) {
            SCOPED_TRACE(std::to_string(width) + " by " + std::to_string(height));
            const Bytes file = random_picture(random, width, height).file();
            const auto picture = read(file);
            ASSERT_TRUE(picture);
            expect_equal(*picture, read_by_qt(file));
        }
    }
}

TEST_F(PlainBmp, ARowOfMoreThanItReadsAtOnceReadsAsByQt) {
    std::mt19937 random(2);
    const Bytes file = random_picture(random, 30'000, 3).file();
    const auto picture = read(file);
    ASSERT_TRUE(picture);
    expect_equal(*picture, read_by_qt(file));
}

TEST_F(PlainBmp, WhateverElseTheHeaderTellsItReadsAsByQt) {
    std::mt19937 random(3);
    for (int i = 0; i < 200; ++i) {
        SCOPED_TRACE(i);
        MadeBmp bmp = random_picture(random, 5, 4);
        bmp.between.resize(random() % 3 == 0 ? random() % 40 : 0);
        Bytes file = bmp.file();
        // The file's size, the reserved words, the pixels' size, the resolution, the colours in use.
        for (const std::size_t at : {2, 3, 6, 7, 8, 9, 34, 35, 38, 39, 42, 43, 50, 51}) {
            file[at] = static_cast<std::uint8_t>(random());
        }
        file[46] = static_cast<std::uint8_t>(random() % 4);
        file.resize(file.size() + random() % 8);
        const auto picture = read(file);
        ASSERT_TRUE(picture);
        expect_equal(*picture, read_by_qt(file));
    }
}

TEST_F(PlainBmp, EveryOtherKindIsLeftToQt) {
    std::mt19937 random(4);
    const Bytes file = random_picture(random, 5, 4).file();
    ASSERT_TRUE(read(file));

    struct Change {
        const char* what;
        std::size_t at;
        std::uint8_t value;
    };

    for (const Change& change :
         {Change{"first letter", 0, 'b'}, Change{"second letter", 1, 'm'},
          Change{"pixels within the headers", 10, 53}, Change{"another header", 14, 108},
          Change{"no width", 18, 0}, Change{"a negative width", 21, 0x80}, Change{"no height", 22, 0},
          Change{"two planes", 26, 2}, Change{"32 bits", 28, 32}, Change{"compression", 30, 1},
          Change{"pixels cut short", 10, 58}}) {
        Bytes changed = file;
        changed[change.at] = change.value;
        EXPECT_FALSE(read(changed)) << change.what;
    }
    for (std::size_t size = 0; size < file.size(); ++size) {
        EXPECT_FALSE(read(Bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size)))) << size;
    }
}

TEST_F(PlainBmp, APictureOfMorePixelsThanTheLimitIsLeftToQt) {
    Bytes file = MadeBmp{65'536, 1'025, 24, 0, {}, {}}.file();
    const std::string path = folder_.write("large.bmp", file);
    std::filesystem::resize_file(path, 54 + 65'536ULL * 3 * 1'025);
    InputFile input(path);
    EXPECT_FALSE(read_plain_bmp(input));
}

} // namespace
} // namespace varnoth
