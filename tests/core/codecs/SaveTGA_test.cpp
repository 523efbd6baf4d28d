#include "core/codecs/SaveTGA.h"

#include <random>

#include <gtest/gtest.h>

#include "core/base/bytes.h"
#include "core/base/files.h"
#include "reference/TgaRle.h"
#include "support/TemporaryFolder.h"
#include "support/expect_failure.h"
#include "support/pictures.h"
#include "support/readers.h"

namespace varnoth::test {
namespace {

constexpr std::size_t header_bytes = 18;

// Pixels of three equal bytes, in file order.
Bytes greys(const Bytes& levels) {
    Bytes bytes;
    for (const std::uint8_t level : levels) {
        bytes.insert(bytes.end(), 3, level);
    }
    return bytes;
}

Bytes encoded(const Bytes& bytes, std::int32_t width) {
    const ByteArray packed = SaveTGA::EncodeRle(bytes, width);
    return {packed.bytes().begin(), packed.bytes().end()};
}

// The packets of a stream: length byte and first channel of the following pixels.
using Packets = std::vector<std::pair<int, Bytes>>;

// Long raw packets cannot be distinguished from runs, so this reads only streams with short raw packets.
Packets packets_of(const Bytes& stream) {
    Packets packets;
    for (std::size_t at = 0; at < stream.size();) {
        const int code = stream[at++];
        const std::size_t pixels = code < 128 ? static_cast<std::size_t>(code) + 1 : 1;
        Bytes levels;
        for (std::size_t i = 0; i < pixels; ++i, at += 3) {
            levels.push_back(stream.at(at));
        }
        packets.emplace_back(code, levels);
    }
    return packets;
}

Bytes written(PictureSurface& picture, Truth compress) {
    const TemporaryFolder folder;
    SaveTGA().SaveTGAinFile(folder.file("a.tga"), picture, compress);
    return read_file(folder.file("a.tga"));
}

Bytes data_of(const Bytes& file) {
    return {file.begin() + header_bytes, file.end()};
}

struct PacketCase {
    const char* name;
    Bytes levels; ///< of grey pixels, bottom row first
    std::int32_t width;
    Packets packets;
};

const PacketCase packet_cases[] = {
    {"OneColourIsARunPerRow", Bytes(6, 9), 3, {{130, {9}}, {130, {9}}}},
    {"RunHasAtMost128Pixels", Bytes(300, 9), 300, {{255, {9}}, {255, {9}}, {128 + 43, {9}}}},
    {"PixelAfterAFullRunIsOmittedIfTheNextRowIsEqual",
     Bytes(258, 9),
     129,
     {{255, {9}}, {255, {9}}, {0, {9}}}},
    // The packet with the fourth pixel crosses the row's end, and no later row end is detected.
    {"LastOf4DifferentPixelsJoinsThePacketOfTheNextRow",
     {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12},
     4,
     {{2, {1, 2, 3}}, {8, {4, 5, 6, 7, 8, 9, 10, 11, 12}}}},
    {"LastBlackPixelOfThreeRowsIsOmitted",
     {0, 0, 1, 0, 1, 1, 1, 1, 0, 0, 1, 0},
     4,
     {{129, {0}}, {0, {1}}, {0, {0}}, {131, {1}}, {129, {0}}, {0, {1}}}},
    {"LastBlackPixelAfterARawPacketIsOmitted", {1, 2, 0}, 3, {{1, {1, 2}}}},
    {"LastOtherPixelAfterARawPacketIsNotOmitted", {1, 2, 4}, 3, {{1, {1, 2}}, {0, {4}}}},
    {"OnePixelWideEqualNeighboursAreOmitted", {0, 0, 1, 1}, 1, {{0, {0}}, {0, {1}}}},
    {"LastPixelOfARowIsOmittedIfItEqualsTheNextOne", {1, 2, 2, 3}, 2, {{0, {1}}, {0, {2}}, {0, {3}}}},
    {"TwoSuccessiveRowEndsAreOmitted",
     {1, 2, 3, 3, 4, 5, 5, 5, 5},
     3,
     {{1, {1, 2}}, {1, {3, 4}}, {130, {5}}}},
    // Only the 2 crosses the row end, so runs still end with their rows.
    {"OnePixelPacketAcrossARowEndKeepsRowsInStep",
     {1, 2, 3, 3, 3, 3},
     2,
     {{0, {1}}, {0, {2}}, {129, {3}}, {129, {3}}}},
    {"LongerPacketAcrossARowEndLetsRunsCrossLaterRowEnds",
     {1, 2, 3, 4, 5, 5, 5, 5, 5, 5},
     2,
     {{0, {1}}, {2, {2, 3, 4}}, {128 + 5, {5}}}},
    // Out of step, the black run at the end misses the picture's end and counts one pixel too many.
    {"RunMayIncludeTheExtraZeroPixel", {1, 2, 3, 4, 0, 0}, 2, {{0, {1}}, {2, {2, 3, 4}}, {128 + 2, {0}}}},
};

class SaveTgaRle : public testing::TestWithParam<PacketCase> {};

TEST_P(SaveTgaRle, PixelsAreEncodedAsPackets) {
    EXPECT_EQ(packets_of(encoded(greys(GetParam().levels), GetParam().width)), GetParam().packets);
}

INSTANTIATE_TEST_SUITE_P(Pixels, SaveTgaRle, testing::ValuesIn(packet_cases),
                         [](const auto& instance) { return instance.param.name; });

TEST(SaveTga, BlackPictureOnePixelWideEncodesAsNothing) {
    EXPECT_EQ(encoded(greys({0}), 1), Bytes{});
    TestSurface picture(1, 3);
    EXPECT_EQ(written(picture, True).size(), header_bytes);
}

TEST(SaveTga, RawPacketOf300PixelsOverflowsAndLeavesNoFile) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.tga", Bytes{1, 2, 3});
    TestSurface picture(300, 1);
    for (std::int32_t x = 0; x < 300; ++x) {
        picture.PSet(x, 0, x + 1);
    }
    EXPECT_FAILURE(SaveTGA().SaveTGAinFile(path, picture, True), Overflow);
    EXPECT_FALSE(file_exists(path)) << "the old file is deleted before the pixels are encoded";
}

TEST(SaveTga, RawPacketsOf129To256PixelsGetARunLengthByte) {
    // A row ends its raw packet one pixel early.
    EXPECT_EQ(encoded(greys(counting(130)), 130)[0], 128);
    EXPECT_EQ(encoded(greys(counting(257)), 257)[0], 255);
    EXPECT_EQ(encoded(greys(counting(129)), 129)[0], 127);
    EXPECT_FAILURE(SaveTGA::EncodeRle(greys(counting(258)), 258), Overflow);
    const Bytes stream = encoded(greys(counting(257)), 257);
    EXPECT_EQ(stream.size(), 1 + 256 * 3 + 1 + 3U)
        << "all pixels are there, behind a length that is not theirs";
}

TEST(SaveTga, EncoderMatchesTheReference) {
    std::mt19937 random(11);
    int overflows = 0;
    for (int i = 0; i < 8000; ++i) {
        const bool tiny = i < 4000;
        const std::size_t width = 1 + random() % (tiny ? 5 : 300);
        const std::size_t height = 1 + random() % (tiny ? 5 : 4);
        const std::size_t colours = 1 + random() % (tiny ? 3 : 256);
        const std::size_t sameness = random() % 11;
        // A partial last row distinguishes the two ways of counting rows.
        Bytes levels(width * height + (i % 4 == 0 ? random() % width : 0));
        for (std::size_t k = 0; k < levels.size(); ++k) {
            levels[k] = k > 0 && random() % 10 < sameness ? levels[k - 1]
                                                          : static_cast<std::uint8_t>(random() % colours);
        }
        const Bytes bytes = greys(levels);
        const auto line = static_cast<std::int32_t>(width);
        Bytes plain;
        Bytes shipped;
        const auto plain_failure = failure_in([&] { plain = reference::encode_tga_rle(bytes, line); });
        const auto shipped_failure = failure_in([&] { shipped = encoded(bytes, line); });
        ASSERT_EQ(shipped_failure, plain_failure) << "picture " << i;
        ASSERT_EQ(shipped, plain) << "picture " << i;
        overflows += shipped_failure.has_value() ? 1 : 0;
    }
    EXPECT_GT(overflows, 0);
}

TEST(SaveTga, PixelsAreComparedInAllThreeChannels) {
    EXPECT_EQ(encoded({1, 2, 3, 1, 2, 4, 1, 5, 4, 6, 5, 4}, 4),
              (Bytes{2, 1, 2, 3, 1, 2, 4, 1, 5, 4, 0, 6, 5, 4}));
}

TEST(SaveTga, WidthOf0DividesByZero) {
    EXPECT_FAILURE(SaveTGA::EncodeRle(greys({1, 2}), 0), DivisionByZero);
}

TEST(SaveTga, BottomRowIsFirstInBlueGreenRed) {
    const auto picture = surface_of(1, 2, {0x030201, 0x060504});
    EXPECT_EQ(data_of(written(*picture, False)), (Bytes{6, 5, 4, 3, 2, 1}));
}

TEST(SaveTga, OtherCompressValuesWritePlainPixelsOfType0) {
    const auto picture = surface_of(1, 1, {0x030201});
    const Bytes file = written(*picture, 1);
    EXPECT_EQ(file[2], 0);
    EXPECT_EQ(data_of(file), (Bytes{3, 2, 1}));
}

// Reads back, with the program's own reader, compressed files that lost pixels.
Colours written_and_read(PictureSurface& picture) {
    const TemporaryFolder folder;
    const std::string path = folder.file("a.tga");
    SaveTGA().SaveTGAinFile(path, picture, True);
    LoadTGA reader;
    reader.Load(path);
    return drawn_by(reader);
}

TEST(SaveTga, CompressedFileWithLostPixelsIsReadShifted) {
    // From the bottom row up: 1 2 3 | 3 4 5 | 5 5 5, of which one 3 and one 5 are omitted.
    EXPECT_EQ(written_and_read(*surface_of(3, 3, {5, 5, 5, 3, 4, 5, 1, 2, 3})),
              (Colours{5, 0, 0, 4, 5, 5, 1, 2, 3}));
}

TEST(SaveTga, LongRawPacketIsReadAsARun) {
    // 201 pixels without equal neighbours: a raw packet of 200 with the length byte of a run of 72.
    const Colours colours = series(201, 0x404040);
    const Colours read = written_and_read(*surface_of(201, 1, colours));
    EXPECT_EQ((Colours{read.begin(), read.begin() + 72}), Colours(72, 0x404040));
    EXPECT_NE(read, colours);
}

} // namespace
} // namespace varnoth::test
