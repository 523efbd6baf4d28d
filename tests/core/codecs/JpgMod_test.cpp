#include "core/codecs/JpgMod.h"

#include <gtest/gtest.h>

#include "support/TemporaryFolder.h"
#include "support/codec_files.h"
#include "support/expect_failure.h"

namespace varnoth::test {
namespace {

const Bytes start{0xFF, 0xD8};
const Bytes jfif{0xFF, 0xE0, 0, 16, 'J', 'F', 'I', 'F', 0, 1, 1, 0, 0, 1, 0, 1, 0, 0};
const Bytes scan{0xFF, 0xDA, 0, 8, 1, 1, 0, 0, 63, 0, 1, 2, 3};

// A segment; its length field counts itself and the body.
Bytes segment(std::uint8_t marker, const Bytes& body) {
    const std::size_t length = body.size() + 2;
    return joined(
        {{0xFF, marker, static_cast<std::uint8_t>(length >> 8), static_cast<std::uint8_t>(length & 0xFF)},
         body});
}

Bytes frame(std::uint8_t marker, int width, int height) {
    const auto byte = [](int value) { return static_cast<std::uint8_t>(value); };
    return segment(marker, {8, byte(height >> 8), byte(height & 255), byte(width >> 8), byte(width & 255), 1,
                            1, 0x11, 0});
}

struct Probe {
    Truth answer = 77;
    std::int32_t width = 77;
    std::int32_t height = 77;

    friend bool operator==(const Probe&, const Probe&) = default;
};

const Probe nothing_found{False, 77, 77};

class JpgModTest : public testing::Test {
  protected:
    Probe probe(const std::vector<Bytes>& pieces) {
        Probe result;
        const std::string path = folder.write("a.jpg", joined(pieces));
        result.answer = JpgMod::ProbeJpeg(path, result.width, result.height);
        return result;
    }

    TemporaryFolder folder;
};

struct WalkCase {
    const char* name;
    std::vector<Bytes> pieces;
    Probe expected;
};

const Bytes app0_of_another_kind = segment(0xE0, {'J', 'F', 'X', 'X', 0, 1});

const WalkCase walk_cases[] = {
    {"BaselineFrameGivesItsSize", {start, jfif, frame(0xC0, 300, 513), scan}, {True, 300, 513}},
    {"FirstFrameEndsTheWalk", {start, frame(0xC0, 3, 5), frame(0xC0, 7, 9), scan}, {True, 3, 5}},
    {"OverflowingLengthAfterTheFrameIsNotRead",
     {start, frame(0xC0, 3, 5), {0xFF, 0xE2, 0x80, 0x00}},
     {True, 3, 5}},
    {"OtherFirstByte", {{0xFE, 0xD8}, frame(0xC0, 3, 5)}, nothing_found},
    {"OtherSecondByte", {{0xFF, 0xD9}, frame(0xC0, 3, 5)}, nothing_found},
    {"EmptyFile", {}, nothing_found},
    {"OneByte", {{0xFF}}, nothing_found},
    {"OnlyTheStartMarker", {start}, nothing_found},
    {"App0WithoutJfifEndsTheWalk", {start, app0_of_another_kind, frame(0xC0, 3, 5)}, nothing_found},
    {"App0OfLowerCaseEndsTheWalk",
     {start, segment(0xE0, {'j', 'f', 'i', 'f', 0, 1}), frame(0xC0, 3, 5)},
     nothing_found},
    {"SecondApp0WithoutJfifEndsTheWalk",
     {start, jfif, app0_of_another_kind, frame(0xC0, 3, 5)},
     nothing_found},
    {"App1InsteadOfApp0IsSkipped",
     {start, segment(0xE1, {'E', 'x', 'i', 'f', 0, 0, 0xFF, 0xDA, 0, 2}), frame(0xC0, 3, 5)},
     {True, 3, 5}},
    {"ScanEndsTheWalk", {start, jfif, frame(0xC2, 3, 5), scan, frame(0xC0, 7, 9)}, nothing_found},
    {"StrayBytesBetweenSegmentsAreSkipped",
     {start, {1, 2, 3, 0, 254}, jfif, {7, 0xFF, 0, 0, 0, 9}, frame(0xC0, 3, 5)},
     {True, 3, 5}},
    {"FrameAfterManySegmentsIsFound",
     {start, segment(0xE2, Bytes(9000, 0xFF)), segment(0xDB, Bytes(5000, 0xFF)), Bytes(4095),
      frame(0xC0, 3, 5)},
     {True, 3, 5}},
    // The walk then reaches the length itself and skips it as stray bytes.
    {"SegmentLengthOf0StillAdvances",
     {start, {0xFF, 0xDB, 0, 0}, {0xFF, 0xDB, 0, 0}, frame(0xC0, 3, 5)},
     {True, 3, 5}},
    {"SegmentBeyondTheEndIsRejected", {start, {0xFF, 0xDB, 0x7F, 0xFF}, frame(0xC0, 3, 5)}, nothing_found},
    // Bytes beyond the end are 0.
    {"MarkerBeyondTheEnd", {start, {0xFF}}, nothing_found},
    {"FrameBeyondTheEnd", {start, {0xFF, 0xC0}}, {True, 0, 0}},
    {"FrameTruncatedInItsHeight", {start, {0xFF, 0xC0, 0, 17, 8, 1}}, {True, 0, 256}},
    {"App0TruncatedInItsName", {start, {0xFF, 0xE0, 0, 16, 'J', 'F'}}, nothing_found},
};

class JpgModWalk : public JpgModTest, public testing::WithParamInterface<WalkCase> {};

TEST_P(JpgModWalk, ProbeGivesTheExpectedResult) {
    EXPECT_EQ(probe(GetParam().pieces), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, JpgModWalk, testing::ValuesIn(walk_cases),
                         [](const auto& instance) { return instance.param.name; });

TEST_F(JpgModTest, OtherFrameKindsAreSkipped) {
    for (const std::uint8_t marker :
         Bytes{0xC1, 0xC3, 0xC5, 0xC6, 0xC7, 0xC9, 0xCA, 0xCB, 0xCD, 0xCE, 0xCF}) {
        EXPECT_EQ(probe({start, jfif, frame(marker, 3, 5), scan}), nothing_found);
    }
}

TEST_F(JpgModTest, OtherSegmentsAreSkippedByTheirLength) {
    // Each body contains a frame header of another size, which must not be read.
    for (const std::uint8_t marker : Bytes{0x01, 0xC4, 0xDB, 0xDD, 0xE2, 0xED, 0xEE, 0xFE}) {
        EXPECT_EQ(probe({start, segment(marker, frame(0xC0, 90, 91)), frame(0xC0, 3, 5)}),
                  (Probe{True, 3, 5}));
    }
}

TEST_F(JpgModTest, StuffedByteIsSkippedButItsLengthIsRead) {
    EXPECT_FAILURE(probe({start, {0xFF, 0x00, 0x80, 0x00}, frame(0xC0, 3, 5)}), Overflow);
}

TEST_F(JpgModTest, FillByteIsReadAsAMarkerWithALength) {
    // 255 255 192 0: the format would skip the fill byte; here the length byte 192 overflows.
    EXPECT_FAILURE(probe({start, {0xFF}, frame(0xC0, 3, 5)}), Overflow);
}

TEST_F(JpgModTest, SideOf32768OverflowsAndOneOf32767DoesNot) {
    EXPECT_EQ(probe({start, frame(0xC0, 32767, 32767)}), (Probe{True, 32767, 32767}));
    EXPECT_FAILURE(probe({start, frame(0xC0, 32768, 5)}), Overflow);
    EXPECT_FAILURE(probe({start, frame(0xC0, 5, 65535)}), Overflow);
    Probe result;
    const std::string path = folder.file("a.jpg");
    EXPECT_FAILURE(JpgMod::ProbeJpeg(path, result.width, result.height), Overflow);
    EXPECT_EQ(result, (Probe{77, 77, 77}));
}

TEST_F(JpgModTest, SegmentLengthOf32768Overflows) {
    EXPECT_FAILURE(probe({start, {0xFF, 0xE2, 0x80, 0x00}}), Overflow);
    EXPECT_EQ(probe({start, segment(0xE2, Bytes(32765)), frame(0xC0, 3, 5)}), (Probe{True, 3, 5}));
}

TEST_F(JpgModTest, MissingFileIsAFailure) {
    Probe result;
    EXPECT_FAILURE(JpgMod::ProbeJpeg(folder.file("none.jpg"), result.width, result.height), FileNotFound);
}

} // namespace
} // namespace varnoth::test
