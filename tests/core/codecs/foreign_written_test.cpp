// Reads the files of the PCX and TGA writers with ImageMagick and Netpbm, and checks which pixels TGA
// compression loses.
#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/codecs/SavePCX.h"
#include "core/codecs/SaveTGA.h"
#include "support/TemporaryFolder.h"
#include "support/foreign_tools.h"
#include "support/pictures.h"

namespace varnoth {
namespace {

using test::all_characters;
using test::Character;
using test::colours_of;
using test::ForeignPicture;
using test::picture_from_tool;
using test::TemporaryFolder;
using test::TestSurface;

struct Size {
    std::int32_t width;
    std::int32_t height;
};

// The size in failure messages.
void PrintTo(const Size& size, std::ostream* stream) {
    *stream << size.width << " by " << size.height;
}

// Widths 1 to 5, where padding differs, some odd ones, and a whole frame.
constexpr Size sizes[] = {{1, 1}, {1, 5},  {2, 3},   {3, 4},   {4, 1},
                          {5, 2}, {31, 9}, {65, 33}, {257, 3}, {256, 256}};

// ImageMagick returns the rows in file order and states their orientation.
std::string imagemagick(const std::string& path) {
    return "convert '" + path + "' -auto-orient -depth 8 ppm:-";
}

void expect_same(const ForeignPicture& read, const PictureSurface& picture, const std::string& what) {
    ASSERT_EQ(read.width, picture.bitmap().width()) << what;
    ASSERT_EQ(read.height, picture.bitmap().height()) << what;
    ASSERT_EQ(read.colours, colours_of(picture)) << what;
}

void expect_tga_reads_back(const PictureSurface& picture, const std::string& path, const std::string& what) {
    expect_same(picture_from_tool(imagemagick(path)), picture, "ImageMagick, " + what);
    expect_same(picture_from_tool("tgatoppm '" + path + "'"), picture, "Netpbm, " + what);
}

// Netpbm does not read uncompressed PCX files.
void expect_pcx_reads_back(const PictureSurface& picture, const std::string& path, Truth compress,
                           const std::string& what) {
    expect_same(picture_from_tool(imagemagick(path)), picture, "ImageMagick, " + what);
    if (compress == True) {
        expect_same(picture_from_tool("pcxtoppm '" + path + "'"), picture, "Netpbm, " + what);
    }
}

std::string told(const Size& size, std::size_t character) {
    return std::to_string(size.width) + " by " + std::to_string(size.height) + ", character " +
           std::to_string(character);
}

class ForeignWritten : public ::testing::TestWithParam<Size> {};

TEST_P(ForeignWritten, PcxIsReadBackEqualPlainAndCompressed) {
    const TemporaryFolder folder;
    const Size size = GetParam();
    const std::string path = folder.file("a.pcx");
    // Each picture takes three runs of the tools, so only one size is tested with several kinds of pictures.
    const std::size_t step = size.width == 65 ? 2 : std::size(all_characters);
    for (std::size_t i = 0; i < std::size(all_characters); i += step) {
        const auto picture =
            test::random_surface(size.width, size.height, all_characters[i], static_cast<std::uint32_t>(i));
        for (const Truth compress : {True, False}) {
            SavePCX().SavePCXinFile(path, *picture, compress);
            ASSERT_NO_FATAL_FAILURE(expect_pcx_reads_back(*picture, path, compress, told(size, i)));
        }
    }
}

TEST_P(ForeignWritten, PlainTgaIsReadBackEqual) {
    const TemporaryFolder folder;
    const Size size = GetParam();
    const std::string path = folder.file("a.tga");
    const auto picture = test::random_surface(size.width, size.height, Character::Noise, 5);
    SaveTGA().SaveTGAinFile(path, *picture, False);
    expect_tga_reads_back(*picture, path, told(size, 0));
}

std::string name_of_size(const ::testing::TestParamInfo<Size>& size) {
    return "Of" + std::to_string(size.param.width) + "By" + std::to_string(size.param.height);
}

INSTANTIATE_TEST_SUITE_P(Sizes, ForeignWritten, ::testing::ValuesIn(sizes), name_of_size);

// Random rows that end in a run of at least three pixels, which starts after the first pixel.
std::vector<Colour> rows_ending_in_runs(const Size& size, std::uint32_t seed) {
    const auto width = static_cast<std::size_t>(size.width);
    const std::size_t count = width * static_cast<std::size_t>(size.height);
    std::vector<Colour> colours = test::random_colours(count, width, Character::FewColours, seed);
    for (std::size_t row = 0; row < count; row += width) {
        for (std::size_t x = width - std::min<std::size_t>(width, 3); x < width; ++x) {
            colours[row + x] = colours[row + width - std::min<std::size_t>(width, 3)];
        }
    }
    return colours;
}

TEST(ForeignWrittenTga, CompressedTgaIsReadBackEqualIfRowsEndInRuns) {
    const TemporaryFolder folder;
    const std::string path = folder.file("a.tga");
    for (const Size& size :
         {Size{2, 2}, Size{3, 1}, Size{4, 5}, Size{5, 5}, Size{31, 9}, Size{128, 7}, Size{64, 64}}) {
        const auto picture = test::surface_of(size.width, size.height, rows_ending_in_runs(size, 4));
        SaveTGA().SaveTGAinFile(path, *picture, True);
        ASSERT_NO_FATAL_FAILURE(expect_tga_reads_back(*picture, path, told(size, 0)));
    }
}

TEST(ForeignWrittenTga, CompressedTgaOfPlainAreasIsReadBackEqual) {
    const TemporaryFolder folder;
    const std::string path = folder.file("a.tga");
    TestSurface picture(256, 256, 32, 0, 0x203040);
    picture.Line(50, 60, 150, 200, 0xFF0080);
    picture.Line(70, 80, 90, 100, 0);
    SaveTGA().SaveTGAinFile(path, picture, True);
    ASSERT_LT(test::read_file(path).size(), 8000U);
    expect_tga_reads_back(picture, path, "plain areas");
}

// The pixels that the packets of a compressed TGA encode, in file order.
std::vector<Colour> unpacked(const std::vector<std::uint8_t>& file) {
    std::vector<Colour> colours;
    const auto pixel = [&](std::size_t at) {
        return make_colour(file.at(at + 2), file.at(at + 1), file.at(at));
    };
    for (std::size_t at = 18; at < file.size();) {
        const std::size_t code = file[at++];
        const bool is_run = code >= 128;
        const std::size_t count = code % 128 + 1;
        for (std::size_t i = 0; i < count; ++i) {
            colours.push_back(pixel(is_run ? at : at + 3 * i));
        }
        at += is_run ? 3 : 3 * count;
    }
    return colours;
}

struct Lossy {
    std::int32_t width;
    std::vector<Colour> rows;     ///< in file order, the bottom row first
    std::vector<Colour> unpacked; ///< the expected result
};

// One letter per pixel, rows from the bottom up; the expected results follow from how raw packets end at row
// ends.
const Lossy lossy_pictures[] = {
    // The 2 at the row's end equals the start of the next row and is lost.
    {2, {1, 2, 2, 3}, {1, 2, 3}},
    // No equal pixels: nothing is lost.
    {2, {1, 2, 3, 4}, {1, 2, 3, 4}},
    // The last pixel is black after a raw packet: it equals the zero pixel after the picture.
    {3, {1, 2, 0}, {1, 2}},
    // Black and white rows that lose the very last pixel only.
    {4, {0, 0, 1, 0, 1, 1, 1, 1, 0, 0, 1, 0}, {0, 0, 1, 0, 1, 1, 1, 1, 0, 0, 1}},
    // One pixel wide: equal neighbours are lost.
    {1, {0, 0, 1, 1}, {0, 1}},
    {1, {5, 5, 5, 6, 6, 7}, {5, 6, 7}},
    // Out of step, the black run at the end includes the zero pixel after the picture.
    {2, {1, 2, 3, 4, 0, 0}, {1, 2, 3, 4, 0, 0, 0}},
    // Two successive row ends are lost; the plain row after them is complete.
    {3, {1, 2, 3, 3, 4, 5, 5, 5, 5}, {1, 2, 3, 4, 5, 5, 5}},
};

TEST(ForeignWrittenTga, CompressedTgaLosesExactlyTheExpectedPixels) {
    const TemporaryFolder folder;
    const std::string path = folder.file("a.tga");
    for (const Lossy& lossy : lossy_pictures) {
        const auto height = static_cast<std::int32_t>(lossy.rows.size()) / lossy.width;
        TestSurface picture(lossy.width, height);
        for (std::size_t i = 0; i < lossy.rows.size(); ++i) {
            const auto at = static_cast<std::int32_t>(i);
            picture.PSet(at % lossy.width, height - 1 - at / lossy.width, lossy.rows[i]);
        }
        SaveTGA().SaveTGAinFile(path, picture, True);
        EXPECT_EQ(unpacked(test::read_file(path)), lossy.unpacked) << testing::PrintToString(lossy.rows);
    }
}

TEST(ForeignWrittenTga, PhotographLosesRowEndsThatEqualTheNextPixel) {
    // Seven pixels per row without equal neighbours, except that row ends equal the start of the next row.
    // Each lost end keeps the row counter in step, so every row loses its last pixel.
    constexpr std::int32_t width = 7;
    constexpr std::int32_t height = 6;
    std::vector<Colour> rows;
    for (std::int32_t i = 0; i < width * height; ++i) {
        rows.push_back(i % width == 0 && i > 0 ? rows.back() : 1000 + 37 * i);
    }
    TestSurface picture(width, height);
    std::vector<Colour> expected;
    for (std::int32_t i = 0; i < width * height; ++i) {
        const auto at = static_cast<std::size_t>(i);
        picture.PSet(i % width, height - 1 - i / width, rows[at]);
        if (i % width != width - 1 || i == width * height - 1) {
            expected.push_back(rows[at]);
        }
    }
    const TemporaryFolder folder;
    SaveTGA().SaveTGAinFile(folder.file("a.tga"), picture, True);
    EXPECT_EQ(unpacked(test::read_file(folder.file("a.tga"))), expected);
}

} // namespace
} // namespace varnoth
