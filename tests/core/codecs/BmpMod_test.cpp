#include "core/codecs/BmpMod.h"

#include <gtest/gtest.h>

#include "core/base/bytes.h"
#include "support/TemporaryFolder.h"
#include "support/codec_files.h"
#include "support/expect_failure.h"

namespace varnoth {
namespace {

using namespace test;

// The 54 bytes of a valid bitmap of 7 by 5 at 24 bits.
Bytes acceptable_head() {
    Bytes bytes(54);
    bytes[0] = 'B';
    bytes[1] = 'M';
    put_i32(bytes, 2, 1000);
    put_i32(bytes, 10, 54);
    put_i32(bytes, 14, 40);
    put_i32(bytes, 18, 7);
    put_i32(bytes, 22, 5);
    put_i16(bytes, 26, 1);
    put_i16(bytes, 28, 24);
    put_i32(bytes, 30, 0);
    put_i32(bytes, 34, 999);
    return bytes;
}

struct Probe {
    Truth answer = 77;
    std::int32_t width = 77;
    std::int32_t height = 77;
    std::int16_t bitCount = 77;
    std::int16_t compression = 77;

    friend bool operator==(const Probe&, const Probe&) = default;
};

const Probe refused{False, -1, -1, -1, -1};

class BmpModTest : public testing::Test {
  protected:
    Probe probe(const Bytes& bytes) {
        Probe result;
        result.answer = BmpMod::ProbeBmp(folder.write("a.bmp", bytes), result.width, result.height,
                                         result.bitCount, result.compression);
        return result;
    }

    Probe probe_with(std::size_t at, std::int32_t value) {
        Bytes bytes = acceptable_head();
        put_i32(bytes, at, value);
        return probe(bytes);
    }

    TemporaryFolder folder;
};

TEST_F(BmpModTest, ValidHeaderGivesSizeDepthAndCompression) {
    EXPECT_EQ(probe(acceptable_head()), (Probe{True, 7, 5, 24, 0}));
}

TEST_F(BmpModTest, ImageSizeOf0IsAccepted) {
    EXPECT_EQ(probe_with(34, 0).answer, True);
}

TEST_F(BmpModTest, FileSizeOf0IsRejected) {
    Bytes bytes = acceptable_head();
    put_i32(bytes, 2, 0);
    put_i32(bytes, 34, 0);
    EXPECT_EQ(probe(bytes), refused);
}

TEST_F(BmpModTest, ImageSizeMustBeBelowFileSizeAsSignedNumbers) {
    EXPECT_EQ(probe_with(34, 1000), refused);
    EXPECT_EQ(probe_with(34, -5).answer, True);
    EXPECT_EQ(probe_with(2, -1), refused);
}

TEST_F(BmpModTest, TopDownBitmapIsRejectedWithResultsMinus1) {
    EXPECT_EQ(probe_with(22, -5), refused);
    EXPECT_EQ(probe_with(22, 0), refused);
}

TEST_F(BmpModTest, WidthOf0OrBelowIsRejected) {
    EXPECT_EQ(probe_with(18, 0), refused);
    EXPECT_EQ(probe_with(18, -7), refused);
}

TEST_F(BmpModTest, PixelOffsetIsOnlyCheckedAgainst54) {
    EXPECT_EQ(probe_with(10, 53), refused);
    EXPECT_EQ(probe_with(10, 0x7FFFFFFF).answer, True);
    // A colour table follows, but an offset of 54 is still accepted.
    Bytes bytes = acceptable_head();
    put_i16(bytes, 28, 8);
    bytes.resize(54 + 1024);
    EXPECT_EQ(probe(bytes), (Probe{True, 7, 5, 8, 0}));
}

TEST_F(BmpModTest, OnlyThe40ByteHeaderIsAccepted) {
    EXPECT_EQ(probe_with(14, 12), refused);
    EXPECT_EQ(probe_with(14, 108), refused);
}

TEST_F(BmpModTest, FirstTwoBytesMustBeBM) {
    for (const std::size_t at : {0U, 1U}) {
        Bytes bytes = acceptable_head();
        bytes[at] = 'b';
        EXPECT_EQ(probe(bytes), refused);
    }
}

TEST_F(BmpModTest, PlaneCountMustBe1) {
    for (const std::int16_t planes : {std::int16_t{0}, std::int16_t{2}}) {
        Bytes bytes = acceptable_head();
        put_i16(bytes, 26, planes);
        EXPECT_EQ(probe(bytes), refused);
    }
}

TEST_F(BmpModTest, DepthAndCompressionAreNotChecked) {
    Bytes bytes = acceptable_head();
    put_i16(bytes, 28, -3);
    put_i32(bytes, 30, 32767);
    EXPECT_EQ(probe(bytes), (Probe{True, 7, 5, -3, 32767}));
}

TEST_F(BmpModTest, CompressionAbove32767OverflowsAfterTheOtherResults) {
    for (const std::int32_t compression : {32768, 0x10000, -1}) {
        Bytes bytes = acceptable_head();
        put_i32(bytes, 30, compression);
        const std::string path = folder.write("a.bmp", bytes);
        Probe result;
        EXPECT_FAILURE(
            BmpMod::ProbeBmp(path, result.width, result.height, result.bitCount, result.compression),
            Overflow);
        EXPECT_EQ(result, (Probe{77, 7, 5, 24, -1}));
    }
}

TEST_F(BmpModTest, RejectedFileDoesNotOverflow) {
    Bytes bytes = acceptable_head();
    put_i32(bytes, 30, 32768);
    put_i16(bytes, 26, 2);
    EXPECT_EQ(probe(bytes), refused);
}

TEST_F(BmpModTest, FileOfFewerThan54BytesIsRejectedAfterAValidOne) {
    EXPECT_EQ(probe(acceptable_head()).answer, True);
    for (const std::size_t length : {0U, 1U, 14U, 53U}) {
        Bytes bytes = acceptable_head();
        bytes.resize(length);
        EXPECT_EQ(probe(bytes), refused) << length;
    }
}

TEST_F(BmpModTest, TruncatedFileKeepsTheRecordsOfThePreviousOne) {
    EXPECT_EQ(probe(acceptable_head()).answer, True);
    EXPECT_EQ(BmpMod::FileHeader.bfSize, 1000);
    EXPECT_EQ(BmpMod::InfoHeader.biWidth, 7);
    EXPECT_EQ(probe(Bytes{'B', 'M', 1, 2, 3}), refused);
    EXPECT_EQ(BmpMod::FileHeader.bfSize, 1000);
    EXPECT_EQ(probe_with(18, -9), refused);
    EXPECT_EQ(BmpMod::InfoHeader.biWidth, -9);
}

TEST_F(BmpModTest, MissingFileFailsWithResultsMinus1) {
    Probe result;
    EXPECT_FAILURE(BmpMod::ProbeBmp(folder.file("none.bmp"), result.width, result.height, result.bitCount,
                                    result.compression),
                   FileNotFound);
    EXPECT_EQ(result, (Probe{77, -1, -1, -1, -1}));
}

} // namespace
} // namespace varnoth
