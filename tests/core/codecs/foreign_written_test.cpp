// Reads the files of the PCX and TGA writers with ImageMagick and Netpbm, and checks which pixels TGA
// compression loses.
#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/codecs/SavePCX.h"
#include "core/codecs/SaveTGA.h"
#include "support/foreign_tools.h"
#include "support/readers.h"

namespace varnoth::test {
namespace {

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
    return testing::PrintToString(size) + ", character " + std::to_string(character);
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
            random_surface(size.width, size.height, all_characters[i], static_cast<std::uint32_t>(i));
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
    const auto picture = random_surface(size.width, size.height, Character::Noise, 5);
    SaveTGA().SaveTGAinFile(path, *picture, False);
    expect_tga_reads_back(*picture, path, told(size, 0));
}

std::string name_of_size(const ::testing::TestParamInfo<Size>& size) {
    return "Of" + std::to_string(size.param.width) + "By" + std::to_string(size.param.height);
}

INSTANTIATE_TEST_SUITE_P(Sizes, ForeignWritten, ::testing::ValuesIn(sizes), name_of_size);

// Random rows that end in a run of at least three pixels, which starts after the first pixel.
Colours rows_ending_in_runs(const Size& size, std::uint32_t seed) {
    const auto width = static_cast<std::size_t>(size.width);
    const std::size_t count = width * static_cast<std::size_t>(size.height);
    Colours colours = random_colours(count, width, Character::FewColours, seed);
    for (std::size_t row = 0; row < count; row += width) {
        for (std::size_t x = width - std::min<std::size_t>(width, 3); x < width; ++x) {
            colours[row + x] = colours[row + width - std::min<std::size_t>(width, 3)];
        }
    }
    return colours;
}

TEST(ForeignWrittenTga, CompressedRowsEndingInRunsAreReadBackEqual) {
    const TemporaryFolder folder;
    const std::string path = folder.file("a.tga");
    for (const Size& size :
         {Size{2, 2}, Size{3, 1}, Size{4, 5}, Size{5, 5}, Size{31, 9}, Size{128, 7}, Size{64, 64}}) {
        const auto picture = surface_of(size.width, size.height, rows_ending_in_runs(size, 4));
        SaveTGA().SaveTGAinFile(path, *picture, True);
        ASSERT_NO_FATAL_FAILURE(expect_tga_reads_back(*picture, path, told(size, 0)));
    }
}

} // namespace
} // namespace varnoth::test
