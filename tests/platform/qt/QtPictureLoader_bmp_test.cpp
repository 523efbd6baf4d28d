// BMP files through the loader: what tools write in every depth, what they do not write composed by hand, and
// files that are cut or broken.
#include <malloc.h>

#include <gtest/gtest.h>

#include "platform/qt/QtPictureLoader.h"
#include "platform/qt/made_pictures.h"
#include "support/TemporaryFolder.h"
#include "support/expect_failure.h"
#include "support/foreign_tools.h"
#include "support/pictures.h"

namespace varnoth {
namespace {

using test::Bytes;
using test::Character;
using test::dwords;
using test::ForeignPicture;
using test::load;
using test::MadeBmp;
using test::picture_from_tool;
using test::striking_table;

constexpr Colour black = 0;

struct Size {
    std::int32_t width;
    std::int32_t height;
};

constexpr Size odd_sizes[] = {{1, 1}, {2, 3}, {3, 2}, {4, 4}, {5, 3}, {17, 9}, {256, 256}};

class QtPictureLoaderBmp : public testing::Test {
  protected:
    std::string write(const MadeBmp& bmp) const { return folder_.write("made.bmp", bmp.file()); }

    std::string write(const Bytes& bytes) const { return folder_.write("made.bmp", bytes); }

    /// Lets a command turn in.ppm into out.bmp for every size and holds the loader equal to what ImageMagick
    /// reads from it.
    void expect_read_as_by_imagemagick(Character character, const std::string& command) const {
        std::uint32_t seed = 0;
        for (const Size size : odd_sizes) {
            SCOPED_TRACE(command + " at " + std::to_string(size.width) + "x" + std::to_string(size.height));
            const auto count = static_cast<std::size_t>(size.width * size.height);
            test::write_ppm(
                folder_.file("in.ppm"), size.width,
                test::random_colours(count, static_cast<std::size_t>(size.width), character, ++seed));
            test::run_tool("cd " + folder_.path() + "; " + command);
            expect_equal_to_imagemagick(folder_.file("out.bmp"), size);
        }
    }

    static void expect_equal_to_imagemagick(const std::string& path, Size size) {
        const ForeignPicture theirs = picture_from_tool("convert " + path + " -alpha off -depth 8 ppm:-");
        const ForeignPicture ours = load(path);
        ASSERT_EQ(ours.width, size.width);
        ASSERT_EQ(ours.height, size.height);
        EXPECT_EQ(ours.colours, theirs.colours);
    }

    test::TemporaryFolder folder_;
};

/// Bits a pixel that a file's header tells, so that a tool's choice cannot empty a test.
std::uint16_t bits_of(const std::string& path) {
    const Bytes bytes = test::read_file(path);
    return get_u16(bytes, get_u32(bytes, 14) == 12 ? 24 : 28);
}

TEST_F(QtPictureLoaderBmp, ReadsTrueColourOf24BitsAsOthersDo) {
    expect_read_as_by_imagemagick(Character::Noise, "convert in.ppm -type TrueColor BMP3:out.bmp");
    EXPECT_EQ(bits_of(folder_.file("out.bmp")), 24);
}

TEST_F(QtPictureLoaderBmp, ReadsTheOlderHeaderAsOthersDo) {
    expect_read_as_by_imagemagick(Character::Noise, "convert in.ppm -type TrueColor BMP2:out.bmp");
    EXPECT_EQ(test::read_file(folder_.file("out.bmp"))[14], 12);
    expect_read_as_by_imagemagick(Character::FewColours, "ppmtobmp -os2 -bpp=8 in.ppm > out.bmp");
    EXPECT_EQ(test::read_file(folder_.file("out.bmp"))[14], 12);
}

TEST_F(QtPictureLoaderBmp, ReadsIndicesOf8BitsAsOthersDo) {
    expect_read_as_by_imagemagick(Character::Smooth,
                                  "convert in.ppm -colors 200 -type Palette -compress None BMP3:out.bmp");
    EXPECT_EQ(bits_of(folder_.file("out.bmp")), 8);
    expect_read_as_by_imagemagick(Character::FewColours, "ppmtobmp -windows -bpp=8 in.ppm > out.bmp");
}

TEST_F(QtPictureLoaderBmp, ReadsIndicesOf4BitsAsOthersDo) {
    expect_read_as_by_imagemagick(Character::Smooth,
                                  "pnmquant 16 in.ppm | ppmtobmp -windows -bpp=4 > out.bmp");
    EXPECT_EQ(bits_of(folder_.file("out.bmp")), 4);
}

TEST_F(QtPictureLoaderBmp, ReadsIndicesOf1BitAsOthersDo) {
    expect_read_as_by_imagemagick(Character::Smooth, "convert in.ppm -monochrome BMP3:out.bmp");
    EXPECT_EQ(bits_of(folder_.file("out.bmp")), 1);
    expect_read_as_by_imagemagick(Character::Noise, "pnmquant 2 in.ppm | ppmtobmp -windows -bpp=1 > out.bmp");
    EXPECT_EQ(bits_of(folder_.file("out.bmp")), 1);
}

TEST_F(QtPictureLoaderBmp, ReadsWordsOf16BitsAsOthersDo) {
    expect_read_as_by_imagemagick(Character::Noise,
                                  "convert in.ppm -type TrueColor -define bmp:subtype=RGB565 BMP:out.bmp");
    EXPECT_EQ(bits_of(folder_.file("out.bmp")), 16);
    expect_read_as_by_imagemagick(Character::Noise,
                                  "convert in.ppm -type TrueColor -define bmp:subtype=RGB555 BMP:out.bmp");
    EXPECT_EQ(bits_of(folder_.file("out.bmp")), 16);
}

TEST_F(QtPictureLoaderBmp, DropsTheAlphaChannelWithoutBlending) {
    expect_read_as_by_imagemagick(Character::Noise,
                                  "convert in.ppm -alpha set -channel A -evaluate set 40% BMP:out.bmp");
    EXPECT_EQ(bits_of(folder_.file("out.bmp")), 32);
}

TEST_F(QtPictureLoaderBmp, ReadsRunLengthEncodingOf8BitsAsOthersDo) {
    expect_read_as_by_imagemagick(Character::Runs,
                                  "convert in.ppm -colors 200 -type Palette -compress RLE BMP3:out.bmp");
    EXPECT_EQ(get_u32(test::read_file(folder_.file("out.bmp")), 30), 1U);
}

TEST_F(QtPictureLoaderBmp, ReadsRunLengthEncodingOf4BitsAsOthersDo) {
    // Bottom row: a run of five from alternating nibbles, end of row; top row: three literals, a run of two.
    const MadeBmp bmp{5, 2, 4, 2, striking_table(16), {5, 0x12, 0, 0, 0, 3, 0x45, 0x60, 2, 0x77, 0, 0, 0, 1}};
    const std::string path = write(bmp);
    const ForeignPicture ours = load(path);
    const auto entry = [](std::uint32_t i) {
        const std::uint32_t rgb = 0xFFC080U - i * 0x070503U;
        return make_colour(static_cast<std::uint8_t>(rgb >> 16), static_cast<std::uint8_t>(rgb >> 8),
                           static_cast<std::uint8_t>(rgb));
    };
    EXPECT_EQ(ours.colours, (std::vector<Colour>{entry(4), entry(5), entry(6), entry(7), entry(7), entry(1),
                                                 entry(2), entry(1), entry(2), entry(1)}));
    expect_equal_to_imagemagick(path, {5, 2});
}

TEST_F(QtPictureLoaderBmp, APixelThatRunLengthEncodingSkipsIsOfIndex0) {
    // One pixel of index 1, a jump of two to the right, one pixel of index 2, end.
    const MadeBmp bmp{4, 2, 8, 1, striking_table(4), {1, 1, 0, 2, 2, 0, 1, 2, 0, 1}};
    const Colour zero = make_colour(0xFF, 0xC0, 0x80);
    const Colour first = make_colour(0xFF - 0x07, 0xC0 - 0x05, 0x80 - 0x03);
    const Colour second = make_colour(0xFF - 0x0E, 0xC0 - 0x0A, 0x80 - 0x06);
    EXPECT_EQ(load(write(bmp)).colours,
              (std::vector<Colour>{zero, zero, zero, zero, first, zero, zero, second}));
}

TEST_F(QtPictureLoaderBmp, ReadsPlainWordsOf16BitsWithTheirHighBitsRepeated) {
    const MadeBmp bmp{3, 1, 16, 0, {}, {0xFF, 0x7F, 0x1F, 0x00, 0x21, 0x04, 0, 0}};
    const std::string path = write(bmp);
    EXPECT_EQ(load(path).colours, (std::vector<Colour>{0xFFFFFF, 0xFF0000, 0x080808}));
    expect_equal_to_imagemagick(path, {3, 1});
}

TEST_F(QtPictureLoaderBmp, ReadsMasksInAnyOrder) {
    // Red in the lowest byte, blue in the highest of three.
    const MadeBmp bmp{2, 1, 32, 3, dwords({0x0000FF, 0x00FF00, 0xFF0000}), {1, 2, 3, 99, 4, 5, 6, 0}};
    EXPECT_EQ(load(write(bmp)).colours, (std::vector<Colour>{0x030201, 0x060504}));
}

TEST_F(QtPictureLoaderBmp, ChannelsOfAnyWidthRepeatTheirBits) {
    // Red of 4 bits, green of 3, blue of 1; the highest and lowest values, then one in between.
    const MadeBmp bmp{3, 1, 16, 3, dwords({0xF0, 0x0E, 0x01}), {0xFF, 0, 0, 0, 0x94, 0, 0, 0}};
    EXPECT_EQ(load(write(bmp)).colours, (std::vector<Colour>{0xFFFFFF, 0, make_colour(0x99, 0x49, 0)}));
}

TEST_F(QtPictureLoaderBmp, ThePaddingByteOf32BitsIsDropped) {
    const MadeBmp bmp{2, 1, 32, 0, {}, {1, 2, 3, 99, 4, 5, 6, 255}};
    EXPECT_EQ(load(write(bmp)).colours, (std::vector<Colour>{0x010203, 0x040506}));
}

TEST_F(QtPictureLoaderBmp, ReadsTopDownRows) {
    const MadeBmp bmp{1, -2, 24, 0, {}, {3, 2, 1, 0, 6, 5, 4, 0}};
    const std::string path = write(bmp);
    EXPECT_EQ(load(path).colours, (std::vector<Colour>{0x030201, 0x060504}));
    expect_equal_to_imagemagick(path, {1, 2});
}

TEST_F(QtPictureLoaderBmp, AnIndexBeyondTheColourTableIsBlack) {
    const MadeBmp bmp{4, 1, 8, 0, striking_table(2), {0, 1, 2, 255}};
    const std::vector<Colour> colours = load(write(bmp)).colours;
    EXPECT_EQ(colours,
              (std::vector<Colour>{make_colour(0xFF, 0xC0, 0x80),
                                   make_colour(0xFF - 0x07, 0xC0 - 0x05, 0x80 - 0x03), black, black}));
}

TEST_F(QtPictureLoaderBmp, TheEndingOfTheNameDoesNotMatter) {
    const MadeBmp bmp{1, 1, 24, 0, {}, {3, 2, 1, 0}};
    EXPECT_EQ(load(folder_.write("picture.jpg", bmp.file())).colours, (std::vector<Colour>{0x030201}));
}

// ---- Files that are cut. In each, all pixels are of a colour that is not black and not index 0.

struct CutCase {
    const char* name;
    MadeBmp bmp;
};

std::vector<CutCase> cut_cases() {
    const Bytes ones_1(8 * 9, 0xFF);
    const Bytes ones_4(8 * 9, 0x11);
    const Bytes ones_8(12 * 9, 1);
    Bytes rle_8;
    Bytes rle_4;
    for (int row = 0; row < 9; ++row) {
        rle_8.insert(rle_8.end(), {7, 1, 0, 4, 1, 1, 1, 1, 0, 0});
        rle_4.insert(rle_4.end(), {7, 0x11, 0, 4, 0x11, 0x11, 0, 0});
    }
    rle_8.insert(rle_8.end(), {0, 1});
    rle_4.insert(rle_4.end(), {0, 1});
    const Bytes masks = dwords({0xF800, 0x07E0, 0x001F});
    return {{"1 bit", {37, 9, 1, 0, striking_table(2), ones_1}},
            {"4 bits", {11, 9, 4, 0, striking_table(16), ones_4}},
            {"8 bits", {11, 9, 8, 0, striking_table(256), ones_8}},
            {"16 bits", {11, 9, 16, 0, {}, Bytes(24 * 9, 0x55)}},
            {"16 bits with masks", {11, 9, 16, 3, masks, Bytes(24 * 9, 0x55)}},
            {"24 bits", {11, 9, 24, 0, {}, Bytes(36 * 9, 0x55)}},
            {"32 bits", {11, 9, 32, 0, {}, Bytes(44 * 9, 0x55)}},
            {"24 bits top-down", {11, -9, 24, 0, {}, Bytes(36 * 9, 0x55)}},
            {"8 bits run-length encoded", {11, 9, 8, 1, striking_table(256), rle_8}},
            {"4 bits run-length encoded", {11, 9, 4, 2, striking_table(16), rle_4}}};
}

/// The loader's answer over memory that the allocator has filled with a pattern; empty for InvalidPicture.
std::vector<Colour> load_over_poison(const std::string& path, int pattern) {
    mallopt(M_PERTURB, pattern);
    std::vector<Colour> colours;
    const auto failure = test::failure_in([&] { colours = load(path).colours; });
    mallopt(M_PERTURB, 0);
    EXPECT_TRUE(!failure || *failure == Failure::InvalidPicture);
    return colours;
}

TEST_F(QtPictureLoaderBmp, ACutFileGivesItsPixelsAndBlackWhateverTheMemoryHeld) {
    for (const CutCase& cut_case : cut_cases()) {
        SCOPED_TRACE(cut_case.name);
        const Bytes whole = cut_case.bmp.file();
        const std::vector<Colour> all = load(write(whole)).colours;
        ASSERT_NE(all[0], black);
        ASSERT_EQ(std::count(all.begin(), all.end(), all[0]), static_cast<std::ptrdiff_t>(all.size()));
        std::ptrdiff_t pixels_before = 0;
        for (std::size_t length = 0; length < whole.size(); length += length < 40 ? 13 : 3) {
            const std::string path = write(Bytes(whole.begin(), whole.begin() + static_cast<int>(length)));
            const std::vector<Colour> colours = load_over_poison(path, 0x55);
            ASSERT_EQ(colours, load_over_poison(path, 0xAA)) << "cut at " << length;
            const auto brought = std::count(colours.begin(), colours.end(), all[0]);
            const auto missing = std::count(colours.begin(), colours.end(), black);
            ASSERT_EQ(brought + missing, static_cast<std::ptrdiff_t>(colours.size())) << "cut at " << length;
            ASSERT_GE(brought, pixels_before) << "cut at " << length;
            pixels_before = brought;
        }
        // The last cut is within the last row.
        EXPECT_GE(pixels_before, static_cast<std::ptrdiff_t>(all.size()) * 8 / 9);
    }
}

TEST_F(QtPictureLoaderBmp, EveryRowThatACutFileBringsWholeIsThere) {
    for (const CutCase& cut_case : cut_cases()) {
        if (cut_case.bmp.compression == 1 || cut_case.bmp.compression == 2) {
            continue; // rows of run-length encoded files have no fixed length
        }
        SCOPED_TRACE(cut_case.name);
        const Bytes whole = cut_case.bmp.file();
        const std::vector<Colour> all = load(write(whole)).colours;
        const auto width = static_cast<std::size_t>(cut_case.bmp.width);
        const std::size_t row_bytes = cut_case.bmp.data.size() / 9;
        for (std::size_t rows = 0; rows <= 9; ++rows) {
            const std::size_t length = whole.size() - (9 - rows) * row_bytes;
            const std::vector<Colour> colours =
                load(write(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length))))
                    .colours;
            for (std::size_t stored = 0; stored < 9; ++stored) {
                const std::size_t y = cut_case.bmp.height > 0 ? 8 - stored : stored;
                for (std::size_t x = 0; x < width; ++x) {
                    ASSERT_EQ(colours[y * width + x], stored < rows ? all[0] : black)
                        << rows << " rows, at " << x << ", " << y;
                }
            }
        }
    }
}

TEST_F(QtPictureLoaderBmp, AFileCutInItsHeadersDoesNotDecode) {
    for (const CutCase& cut_case : cut_cases()) {
        SCOPED_TRACE(cut_case.name);
        const Bytes whole = cut_case.bmp.file();
        for (const std::size_t length : {0U, 1U, 2U, 13U, 14U, 17U, 18U, 30U, 53U}) {
            const std::string path = write(Bytes(whole.begin(), whole.begin() + static_cast<int>(length)));
            EXPECT_FAILURE(load(path), InvalidPicture);
        }
    }
}

TEST_F(QtPictureLoaderBmp, PixelsThatWouldBeginBeyondTheEndOfTheFileDoNotDecode) {
    Bytes bytes = MadeBmp{1, 1, 24, 0, {}, {3, 2, 1, 0}}.file();
    put_u32(bytes, 10, 59);
    EXPECT_FAILURE(load(write(bytes)), InvalidPicture);
    put_u32(bytes, 10, 58);
    EXPECT_EQ(load(write(bytes)).colours, (std::vector<Colour>{black}));
}

TEST_F(QtPictureLoaderBmp, BrokenBytesEndInAPictureOrInInvalidPicture) {
    std::mt19937 random(7);
    for (const CutCase& cut_case : cut_cases()) {
        for (int round = 0; round < 100; ++round) {
            Bytes bytes = cut_case.bmp.file();
            for (int change = 0; change < 3; ++change) {
                // Sizes stay, so that a picture stays small; everything else may break.
                std::size_t at = random() % bytes.size();
                at = at >= 18 && at < 26 ? at + 8 : at;
                bytes[at] = static_cast<std::uint8_t>(random());
            }
            const std::string path = write(bytes);
            ASSERT_EQ(load_over_poison(path, 0x55), load_over_poison(path, 0xAA))
                << cut_case.name << " " << round;
        }
    }
}

TEST_F(QtPictureLoaderBmp, APictureOfMorePixelsThanTheLimitIsOutOfMemory) {
    MadeBmp bmp{8193, 8192, 24, 0, {}, {1, 2, 3, 0}};
    EXPECT_FAILURE(load(write(bmp)), OutOfMemory);
    bmp.width = 0x7FFFFFFF;
    bmp.height = 0x7FFFFFFF;
    const auto failure = test::failure_in([&] { load(write(bmp)); });
    EXPECT_TRUE(failure == Failure::OutOfMemory || failure == Failure::InvalidPicture);
}

TEST_F(QtPictureLoaderBmp, ASizeOfZeroDoesNotDecode) {
    MadeBmp bmp{0, 5, 24, 0, {}, {1, 2, 3, 0}};
    EXPECT_FAILURE(load(write(bmp)), InvalidPicture);
    bmp.width = 5;
    bmp.height = 0;
    EXPECT_FAILURE(load(write(bmp)), InvalidPicture);
}

} // namespace
} // namespace varnoth
