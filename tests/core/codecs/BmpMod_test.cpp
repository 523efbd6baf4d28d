#include "core/codecs/BmpMod.h"

#include <gtest/gtest.h>

#include "core/base/bytes.h"
#include "support/TemporaryFolder.h"
#include "support/codec_files.h"
#include "support/expect_failure.h"

namespace varnoth::test {
namespace {

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

struct Change {
    std::size_t at;
    std::int32_t value;
    std::size_t bytes = 4;
};

struct HeaderCase {
    const char* name;
    std::vector<Change> changes;
    Probe expected;
};

const HeaderCase header_cases[] = {
    {"ImageSizeOf0IsAccepted", {{34, 0}}, {True, 7, 5, 24, 0}},
    {"NegativeImageSizeIsAccepted", {{34, -5}}, {True, 7, 5, 24, 0}},
    {"ImageSizeEqualToTheFileSizeIsRejected", {{34, 1000}}, refused},
    {"NegativeFileSizeIsRejected", {{2, -1}}, refused},
    {"FileSizeOf0IsRejected", {{2, 0}, {34, 0}}, refused},
    {"TopDownBitmapIsRejected", {{22, -5}}, refused},
    {"HeightOf0IsRejected", {{22, 0}}, refused},
    {"WidthOf0IsRejected", {{18, 0}}, refused},
    {"NegativeWidthIsRejected", {{18, -7}}, refused},
    {"PixelOffsetBelow54IsRejected", {{10, 53}}, refused},
    {"PixelOffsetBeyondTheFileIsAccepted", {{10, 0x7FFFFFFF}}, {True, 7, 5, 24, 0}},
    {"PixelOffsetWithinTheColourTableIsAccepted", {{28, 8, 2}}, {True, 7, 5, 8, 0}},
    {"HeaderOf12BytesIsRejected", {{14, 12}}, refused},
    {"HeaderOf108BytesIsRejected", {{14, 108}}, refused},
    {"FirstByteMustBeB", {{0, 'b', 1}}, refused},
    {"SecondByteMustBeM", {{1, 'b', 1}}, refused},
    {"NoPlaneIsRejected", {{26, 0, 2}}, refused},
    {"TwoPlanesAreRejected", {{26, 2, 2}}, refused},
    {"DepthAndCompressionAreNotChecked", {{28, -3, 2}, {30, 32767}}, {True, 7, 5, -3, 32767}},
    {"RejectedFileDoesNotOverflow", {{30, 32768}, {26, 2, 2}}, refused},
};

class BmpModHeaders : public BmpModTest, public testing::WithParamInterface<HeaderCase> {};

TEST_P(BmpModHeaders, ProbeGivesTheExpectedResult) {
    Bytes bytes = acceptable_head();
    for (const Change& change : GetParam().changes) {
        for (std::size_t i = 0; i < change.bytes; ++i) {
            bytes[change.at + i] = static_cast<std::uint8_t>(change.value >> (8 * i));
        }
    }
    EXPECT_EQ(probe(bytes), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, BmpModHeaders, testing::ValuesIn(header_cases),
                         [](const auto& instance) { return instance.param.name; });

TEST_F(BmpModTest, CompressionAbove32767OverflowsAfterOtherResults) {
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
} // namespace varnoth::test
