#include "core/codecs/SaveTGA.h"

#include <random>

#include <gtest/gtest.h>

#include "core/base/bytes.h"
#include "core/base/files.h"
#include "reference/TgaRle.h"
#include "support/TemporaryFolder.h"
#include "support/expect_failure.h"
#include "support/pictures.h"

namespace varnoth {
namespace {

using test::read_file;
using test::surface_of;
using test::TemporaryFolder;
using test::TestSurface;
using Bytes = std::vector<std::uint8_t>;

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

std::size_t pixels_in(const Packets& packets) {
    std::size_t count = 0;
    for (const auto& [code, levels] : packets) {
        count += static_cast<std::size_t>(code % 128) + 1;
    }
    return count;
}

Bytes written(PictureSurface& picture, Truth compress) {
    const TemporaryFolder folder;
    SaveTGA().SaveTGAinFile(folder.file("a.tga"), picture, compress);
    return read_file(folder.file("a.tga"));
}

Bytes data_of(const Bytes& file) {
    return {file.begin() + header_bytes, file.end()};
}

// Levels from `first` on, no two neighbours equal.
Bytes counting(std::size_t count, int first = 1) {
    Bytes levels(count);
    for (std::size_t i = 0; i < count; ++i) {
        levels[i] = static_cast<std::uint8_t>((static_cast<std::size_t>(first) + i) % 251);
    }
    return levels;
}

TEST(SaveTga, OneColourOf4By3EncodesAsThreeRuns) {
    const auto picture = surface_of(4, 3, std::vector<Colour>(12, 0x302010));
    const Bytes file = written(*picture, True);
    EXPECT_EQ(file[2], 10);
    EXPECT_EQ(data_of(file), (Bytes{131, 0x30, 0x20, 0x10, 131, 0x30, 0x20, 0x10, 131, 0x30, 0x20, 0x10}));
}

TEST(SaveTga, FourthOf4DifferentPixelsJoinsThePacketOfTheNextRow) {
    const Packets packets = packets_of(encoded(greys({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}), 4));
    EXPECT_EQ(packets[0], (std::pair<int, Bytes>{2, {1, 2, 3}}));
    // The fourth pixel and all later ones: the packet crosses the row's end, and no later row end is
    // detected.
    EXPECT_EQ(packets[1], (std::pair<int, Bytes>{8, {4, 5, 6, 7, 8, 9, 10, 11, 12}}));
    EXPECT_EQ(packets.size(), 2U);
}

TEST(SaveTga, LastBlackPixelOfThreeRowsIsOmitted) {
    const Packets packets = packets_of(encoded(greys({0, 0, 1, 0, 1, 1, 1, 1, 0, 0, 1, 0}), 4));
    EXPECT_EQ(packets, (Packets{{129, {0}}, {0, {1}}, {0, {0}}, {131, {1}}, {129, {0}}, {0, {1}}}));
    EXPECT_EQ(pixels_in(packets), 11U);
}

TEST(SaveTga, OnePixelWideEqualNeighboursAreOmitted) {
    EXPECT_EQ(encoded(greys({0, 0, 1, 1}), 1), (Bytes{0, 0, 0, 0, 0, 1, 1, 1}));
}

TEST(SaveTga, BlackPictureOnePixelWideEncodesAsNothing) {
    EXPECT_EQ(encoded(greys({0}), 1), Bytes{});
    TestSurface picture(1, 3);
    EXPECT_EQ(written(picture, True).size(), header_bytes);
}

TEST(SaveTga, CompressFalseWritesHeaderAndPlainPixelsOfType2) {
    for (const std::int32_t width : {1, 2, 3, 4, 5, 7}) {
        const Bytes file = written(*test::random_surface(width, 3, test::Character::Noise, 3), False);
        EXPECT_EQ(file.size(), header_bytes + static_cast<std::size_t>(3 * width * 3));
        EXPECT_EQ(file[2], 2);
    }
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

TEST(SaveTga, RunHasAtMost128Pixels) {
    const Packets packets = packets_of(encoded(greys(Bytes(300, 9)), 300));
    EXPECT_EQ(packets, (Packets{{255, {9}}, {255, {9}}, {128 + 43, {9}}}));
}

TEST(SaveTga, RunEndsAtTheEndOfItsRow) {
    EXPECT_EQ(packets_of(encoded(greys(Bytes(6, 9)), 3)), (Packets{{130, {9}}, {130, {9}}}));
}

TEST(SaveTga, LastPixelOfARowIsOmittedIfItEqualsTheNextOne) {
    // 1 2 | 2 3: the second pixel is omitted, so the following ones are one position early.
    const Packets packets = packets_of(encoded(greys({1, 2, 2, 3}), 2));
    EXPECT_EQ(packets, (Packets{{0, {1}}, {0, {2}}, {0, {3}}}));
}

TEST(SaveTga, OnePixelPacketAcrossARowEndKeepsRowsInStep) {
    // 1 2 | 3 3 | 4 4: only the 2 crosses the row end, so runs still end with their rows.
    const Packets packets = packets_of(encoded(greys({1, 2, 3, 3, 3, 3}), 2));
    EXPECT_EQ(packets, (Packets{{0, {1}}, {0, {2}}, {129, {3}}, {129, {3}}}));
}

TEST(SaveTga, LongerPacketAcrossARowEndLetsRunsCrossLaterRowEnds) {
    const Packets packets = packets_of(encoded(greys({1, 2, 3, 4, 5, 5, 5, 5, 5, 5}), 2));
    EXPECT_EQ(packets, (Packets{{0, {1}}, {2, {2, 3, 4}}, {128 + 5, {5}}}));
}

TEST(SaveTga, LastBlackPixelAfterARawPacketIsOmitted) {
    EXPECT_EQ(packets_of(encoded(greys({1, 2, 0}), 3)), (Packets{{1, {1, 2}}}));
    EXPECT_EQ(packets_of(encoded(greys({1, 2, 4}), 3)), (Packets{{1, {1, 2}}, {0, {4}}}));
}

TEST(SaveTga, RunMayIncludeTheExtraZeroPixel) {
    // Out of step, the black run at the end misses the picture's end and counts one pixel too many.
    const Packets packets = packets_of(encoded(greys({1, 2, 3, 4, 0, 0}), 2));
    EXPECT_EQ(packets, (Packets{{0, {1}}, {2, {2, 3, 4}}, {128 + 2, {0}}}));
    EXPECT_EQ(pixels_in(packets), 7U);
}

TEST(SaveTga, RowsEndingInRunsAreEncodedWithoutLoss) {
    std::mt19937 random(7);
    for (int i = 0; i < 200; ++i) {
        const std::size_t width = 2 + random() % 300;
        Bytes levels;
        for (std::size_t y = 0; y < 4; ++y) {
            levels.insert(levels.end(), width, static_cast<std::uint8_t>(random() % 256));
        }
        Bytes unpacked;
        for (const auto& [code, pixels] :
             packets_of(encoded(greys(levels), static_cast<std::int32_t>(width)))) {
            unpacked.insert(unpacked.end(), code < 128 ? 0U : static_cast<std::size_t>(code) - 127,
                            pixels[0]);
        }
        // A row of 129 or 257 pixels leaves a single pixel after a full run, which is no longer a run.
        if (width % 128 != 1) {
            ASSERT_EQ(unpacked, levels) << width;
        }
    }
}

TEST(SaveTga, PixelAfterAFullRunIsOmittedIfTheNextRowIsEqual) {
    EXPECT_EQ(packets_of(encoded(greys(Bytes(258, 9)), 129)), (Packets{{255, {9}}, {255, {9}}, {0, {9}}}));
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
        const auto plain_failure = test::failure_in([&] { plain = reference::encode_tga_rle(bytes, line); });
        const auto shipped_failure = test::failure_in([&] { shipped = encoded(bytes, line); });
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

TEST(SaveTga, HeaderHasTypeSizeAndDepthAndZerosElsewhere) {
    TestSurface picture(300, 2);
    Bytes expected(header_bytes);
    expected[2] = 2;
    expected[12] = 300 - 256;
    expected[13] = 1;
    expected[14] = 2;
    expected[16] = 24;
    Bytes header = written(picture, False);
    header.resize(header_bytes);
    EXPECT_EQ(header, expected);
    expected[2] = 10;
    header = written(picture, True);
    header.resize(header_bytes);
    EXPECT_EQ(header, expected);
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

TEST(SaveTga, ExistingFileIsReplacedWithoutAsking) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.tga", Bytes(5000, 1));
    TestSurface picture(2, 2);
    SaveTGA().SaveTGAinFile(path, picture, False);
    EXPECT_EQ(read_file(path).size(), header_bytes + 12);
}

TEST(SaveTga, ReadOnlyFileIsKeptAndIsAFailure) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.tga", Bytes{1, 2, 3});
    std::filesystem::permissions(path, std::filesystem::perms::owner_read);
    TestSurface picture(2, 2);
    EXPECT_FAILURE(SaveTGA().SaveTGAinFile(path, picture, True), PermissionDenied);
    EXPECT_EQ(read_file(path), (Bytes{1, 2, 3}));
}

TEST(SaveTga, FolderAsTargetOrMissingFolderIsAFailure) {
    const TemporaryFolder folder;
    TestSurface picture(2, 2);
    EXPECT_FAILURE(SaveTGA().SaveTGAinFile(folder.path(), picture, False), PermissionDenied);
    EXPECT_FAILURE(SaveTGA().SaveTGAinFile(folder.file("none/a.tga"), picture, False), PathNotFound);
}

TEST(SaveTga, PictureWithoutPixelsFailsAndKeepsTheOldFile) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.tga", Bytes{1, 2, 3});
    TestSurface no_width(0, 2);
    TestSurface no_height(2, 0);
    EXPECT_FAILURE(SaveTGA().SaveTGAinFile(path, no_width, False), SubscriptOutOfRange);
    EXPECT_FAILURE(SaveTGA().SaveTGAinFile(path, no_height, True), SubscriptOutOfRange);
    EXPECT_EQ(read_file(path), (Bytes{1, 2, 3}));
}

TEST(SaveTga, TooLargeSideOverflowsAndKeepsTheOldFile) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.tga", Bytes{1, 2, 3});
    TestSurface wide(32768, 1);
    TestSurface high(1, 32768);
    EXPECT_FAILURE(SaveTGA().SaveTGAinFile(path, wide, False), Overflow);
    EXPECT_FAILURE(SaveTGA().SaveTGAinFile(path, high, False), Overflow);
    EXPECT_EQ(read_file(path), (Bytes{1, 2, 3}));
    TestSurface widest(32767, 1);
    SaveTGA().SaveTGAinFile(path, widest, True);
    EXPECT_EQ(get_i16(read_file(path), 12), 32767);
}

TEST(SaveTga, SizesAreInPixelsAndScaleModesAreRestored) {
    TestSurface picture(4, 3);
    picture.ScaleMode = ScaleTwips;
    picture.Parent()->ScaleMode = ScaleTwips;
    const Bytes file = written(picture, False);
    EXPECT_EQ(get_i16(file, 12), 4);
    EXPECT_EQ(get_i16(file, 14), 3);
    EXPECT_EQ(picture.ScaleMode, ScaleTwips);
    EXPECT_EQ(picture.Parent()->ScaleMode, ScaleTwips);
}

TEST(SaveTga, TopLevelFormCanBeWritten) {
    PictureSurface form({nullptr, 2, 1, 32, 0, 0x332211});
    EXPECT_EQ(data_of(written(form, False)), (Bytes{0x33, 0x22, 0x11, 0x33, 0x22, 0x11}));
}

TEST(SaveTga, OneObjectWritesSeveralFiles) {
    const TemporaryFolder folder;
    SaveTGA writer;
    TestSurface large(9, 9);
    TestSurface small(2, 1, 32, 0, 0x050505);
    writer.SaveTGAinFile(folder.file("a"), large, True);
    writer.SaveTGAinFile(folder.file("b"), small, False);
    writer.SaveTGAinFile(folder.file("c"), small, True);
    EXPECT_EQ(data_of(read_file(folder.file("b"))), Bytes(6, 5));
    EXPECT_EQ(data_of(read_file(folder.file("c"))), (Bytes{129, 5, 5, 5}));
}

} // namespace
} // namespace varnoth
