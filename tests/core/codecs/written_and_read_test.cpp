// Reads back the files of the PCX and TGA writers with the program's own readers.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/codecs/LoadPCX.h"
#include "core/codecs/LoadTGA.h"
#include "core/codecs/SavePCX.h"
#include "core/codecs/SaveTGA.h"
#include "support/TemporaryFolder.h"
#include "support/pictures.h"

namespace varnoth {
namespace {

using test::all_characters;
using test::Character;
using test::colours_of;
using test::TemporaryFolder;
using test::TestSurface;

struct Size {
    std::int32_t width;
    std::int32_t height;
};

constexpr Size sizes[] = {{1, 1}, {1, 7}, {2, 2},  {3, 5},   {4, 3},
                          {5, 2}, {7, 1}, {31, 9}, {64, 64}, {255, 129}};

void expect_pcx_comes_back(PictureSurface& picture, const std::string& path, Truth compress) {
    SavePCX().SavePCXinFile(path, picture, compress);
    LoadPCX reader;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int16_t bits = 0;
    ASSERT_EQ(reader.GetInfoPCX(path, width, height, bits), True);
    ASSERT_EQ(width, picture.bitmap().width());
    ASSERT_EQ(height, picture.bitmap().height());
    ASSERT_EQ(bits, 8);
    reader.Load(path);
    reader.SetScaleMode(0);
    ASSERT_EQ(reader.IsPCX(), True);
    ASSERT_EQ(reader.Compressed(), compress);
    ASSERT_EQ(reader.Bpp(), 8);
    ASSERT_EQ(reader.Header().NPlanes, 3);
    ASSERT_EQ(reader.PCXWidth(), width);
    ASSERT_EQ(reader.PCXHeight(), height);
    TestSurface drawn(1, 1);
    reader.DrawPCX(drawn);
    ASSERT_EQ(drawn.bitmap().width(), width);
    ASSERT_EQ(colours_of(drawn), colours_of(picture));
}

TEST(WrittenAndRead, PcxRoundTripsWith3PlanesOf8Bits) {
    const TemporaryFolder folder;
    for (const Size& size : sizes) {
        for (const Character character : all_characters) {
            const auto picture = test::random_surface(size.width, size.height, character, 21);
            for (const Truth compress : {True, False}) {
                ASSERT_NO_FATAL_FAILURE(expect_pcx_comes_back(*picture, folder.file("a.pcx"), compress))
                    << size.width << " by " << size.height << " compressed " << compress;
            }
        }
    }
}

// The picture that LoadTGA reads; checks the probe and the object against `width`, `height` and `compress`.
std::vector<Colour> read_tga(const std::string& path, const Size& size, Truth compress) {
    LoadTGA reader;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int16_t bits = 0;
    EXPECT_EQ(reader.GetInfoTGA(path, width, height, bits), True);
    EXPECT_EQ(width, size.width);
    EXPECT_EQ(height, size.height);
    EXPECT_EQ(bits, 24);
    reader.Load(path);
    reader.SetScaleMode(0);
    EXPECT_EQ(reader.IsTGA(), True);
    EXPECT_EQ(reader.Compressed(), compress);
    EXPECT_EQ(reader.Bpp(), 24);
    EXPECT_EQ(reader.TGAWidth(), size.width);
    EXPECT_EQ(reader.TGAHeight(), size.height);
    TestSurface drawn(1, 1);
    reader.DrawTGA(drawn);
    EXPECT_EQ(drawn.bitmap().width(), size.width);
    return colours_of(drawn);
}

TEST(WrittenAndRead, PlainTgaRoundTripsUpright) {
    const TemporaryFolder folder;
    const std::string path = folder.file("a.tga");
    for (const Size& size : sizes) {
        for (const Character character : all_characters) {
            const auto picture = test::random_surface(size.width, size.height, character, 22);
            SaveTGA().SaveTGAinFile(path, *picture, False);
            ASSERT_EQ(read_tga(path, size, False), colours_of(*picture))
                << size.width << " by " << size.height;
        }
    }
}

TEST(WrittenAndRead, CompressedTgaRoundTripsIfRowsEndInRuns) {
    const TemporaryFolder folder;
    const std::string path = folder.file("a.tga");
    for (const Size& size : {Size{2, 3}, Size{5, 5}, Size{128, 4}, Size{200, 30}}) {
        TestSurface picture(size.width, size.height);
        for (std::int32_t y = 0; y < size.height; ++y) {
            picture.Line(0, y, size.width - 1, y, 0x010203 * (y + 1));
            picture.Line(0, y, size.width / 2 - 2, y, 0x040506);
        }
        SaveTGA().SaveTGAinFile(path, picture, True);
        ASSERT_EQ(read_tga(path, size, True), colours_of(picture)) << size.width << " by " << size.height;
    }
}

TEST(WrittenAndRead, CompressedTgaThatLostPixelsIsShiftedAndEndsInBlack) {
    const TemporaryFolder folder;
    const std::string path = folder.file("a.tga");
    // From the bottom row up: 1 2 3 | 3 4 5 | 5 5 5, of which one 3 and one 5 are omitted.
    const auto picture = test::surface_of(3, 3, {5, 5, 5, 3, 4, 5, 1, 2, 3});
    SaveTGA().SaveTGAinFile(path, *picture, True);
    EXPECT_EQ(read_tga(path, {3, 3}, True), (std::vector<Colour>{5, 0, 0, 4, 5, 5, 1, 2, 3}));
}

TEST(WrittenAndRead, LongRawPacketOfCompressedTgaIsReadAsARun) {
    const TemporaryFolder folder;
    const std::string path = folder.file("a.tga");
    // 201 pixels without equal neighbours: a raw packet of 200 with the length byte of a run of 72.
    TestSurface picture(201, 1);
    for (std::int32_t x = 0; x < 201; ++x) {
        picture.PSet(x, 0, 0x404040 + x);
    }
    SaveTGA().SaveTGAinFile(path, picture, True);
    const std::vector<Colour> read = read_tga(path, {201, 1}, True);
    for (std::size_t x = 0; x < 72; ++x) {
        ASSERT_EQ(read[x], 0x404040) << x;
    }
    EXPECT_NE(read, colours_of(picture));
}

} // namespace
} // namespace varnoth
