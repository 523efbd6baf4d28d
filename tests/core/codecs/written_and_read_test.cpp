// Reads back the files of the PCX and TGA writers with the program's own readers.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/codecs/SavePCX.h"
#include "core/codecs/SaveTGA.h"
#include "support/readers.h"

namespace varnoth {
namespace {

using namespace test;

constexpr Size sizes[] = {{1, 1}, {1, 7}, {2, 2},  {3, 5},   {4, 3},
                          {5, 2}, {7, 1}, {31, 9}, {64, 64}, {255, 129}};

// The picture that a reader draws; checks its probe and its properties.
template <typename Reader>
Colours read(const std::string& path, const Size& size, Truth compress, std::int16_t bits) {
    Reader reader;
    EXPECT_EQ(probe(reader, path), (Info{True, size.width, size.height, bits}));
    reader.Load(path);
    reader.SetScaleMode(0);
    EXPECT_EQ(is_valid(reader), True);
    EXPECT_EQ(reader.Compressed(), compress);
    EXPECT_EQ(reader.Bpp(), bits);
    EXPECT_EQ(size_of(reader), size);
    return drawn_by(reader);
}

Colours read_tga(const std::string& path, const Size& size, Truth compress) {
    return read<LoadTGA>(path, size, compress, 24);
}

TEST(WrittenAndRead, PcxRoundTrips) {
    const TemporaryFolder folder;
    const std::string path = folder.file("a.pcx");
    for (const Size& size : sizes) {
        for (const Character character : all_characters) {
            const auto picture = random_surface(size.width, size.height, character, 21);
            for (const Truth compress : {True, False}) {
                SavePCX().SavePCXinFile(path, *picture, compress);
                ASSERT_EQ(read<LoadPCX>(path, size, compress, 8), colours_of(*picture)) << size;
            }
        }
    }
}

TEST(WrittenAndRead, PlainTgaRoundTripsUpright) {
    const TemporaryFolder folder;
    const std::string path = folder.file("a.tga");
    for (const Size& size : sizes) {
        for (const Character character : all_characters) {
            const auto picture = random_surface(size.width, size.height, character, 22);
            SaveTGA().SaveTGAinFile(path, *picture, False);
            ASSERT_EQ(read_tga(path, size, False), colours_of(*picture)) << size;
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
        ASSERT_EQ(read_tga(path, size, True), colours_of(picture)) << size;
    }
}

TEST(WrittenAndRead, CompressedTgaThatLostPixelsIsShiftedAndEndsInBlack) {
    const TemporaryFolder folder;
    const std::string path = folder.file("a.tga");
    // From the bottom row up: 1 2 3 | 3 4 5 | 5 5 5, of which one 3 and one 5 are omitted.
    const auto picture = surface_of(3, 3, {5, 5, 5, 3, 4, 5, 1, 2, 3});
    SaveTGA().SaveTGAinFile(path, *picture, True);
    EXPECT_EQ(read_tga(path, {3, 3}, True), (Colours{5, 0, 0, 4, 5, 5, 1, 2, 3}));
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
    const Colours read = read_tga(path, {201, 1}, True);
    for (std::size_t x = 0; x < 72; ++x) {
        ASSERT_EQ(read[x], 0x404040) << x;
    }
    EXPECT_NE(read, colours_of(picture));
}

} // namespace
} // namespace varnoth
