#include "core/codecs/SavePCX.h"

#include <random>

#include <gtest/gtest.h>

#include "core/base/bytes.h"
#include "core/base/files.h"
#include "reference/LoadPCX.h"
#include "support/TemporaryFolder.h"
#include "support/expect_failure.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

constexpr std::size_t header_bytes = 128;

Bytes encoded(const Bytes& bytes, std::int32_t line = 1) {
    const ByteArray packed = SavePCX::EncodeRle(bytes, line);
    return {packed.bytes().begin(), packed.bytes().end()};
}

Bytes written(PictureSurface& picture, Truth compress) {
    const TemporaryFolder folder;
    SavePCX writer;
    writer.SavePCXinFile(folder.file("a.pcx"), picture, compress);
    return read_file(folder.file("a.pcx"));
}

Bytes data_of(const Bytes& file) {
    return {file.begin() + header_bytes, file.end()};
}

TEST(SavePcx, CompressFalseWritesEncoding0AndPlainPlanes) {
    const auto picture = surface_of(2, 2, {0x030201, 0x060504, 0x090807, 0x0C0B0A});
    const Bytes file = written(*picture, False);
    EXPECT_EQ(file[2], 0);
    EXPECT_EQ(data_of(file), (Bytes{1, 4, 2, 5, 3, 6, 7, 10, 8, 11, 9, 12}))
        << "red, green, blue lines, top row first";
}

TEST(SavePcx, CompressTrueWritesEncoding1AndPackedPlanes) {
    const auto picture = surface_of(2, 1, {0x0302C8, 0x0302C9});
    const Bytes file = written(*picture, True);
    EXPECT_EQ(file[2], 1);
    EXPECT_EQ(data_of(file), (Bytes{193, 200, 193, 201, 194, 2, 194, 3}));
}

TEST(SavePcx, OtherCompressValuesWriteTheLastPackedPlanes) {
    const TemporaryFolder folder;
    const std::string path = folder.file("a.pcx");
    const auto picture = surface_of(2, 1, {0x030201, 0x060504});
    TestSurface earlier(2, 2, 32, 0, 0x050505);
    SavePCX writer;
    writer.SavePCXinFile(path, *picture, 1);
    Bytes file = read_file(path);
    EXPECT_EQ(file.size(), header_bytes) << "nothing was";
    EXPECT_EQ(file[2], 0);
    writer.SavePCXinFile(path, earlier, True);
    for (const Truth compress : {Truth{1}, Truth{-2}}) {
        writer.SavePCXinFile(path, *picture, compress);
        file = read_file(path);
        EXPECT_EQ(get_i16(file, 8), 2);
        EXPECT_EQ(get_i16(file, 10), 1);
        EXPECT_EQ(file[2], 0);
        EXPECT_EQ(data_of(file), (Bytes{192 + 12, 5}));
    }
}

TEST(SavePcx, PlainPlanesKeepTheLastPackedPlanes) {
    const TemporaryFolder folder;
    TestSurface picture(2, 2, 32, 0, 0x050505);
    SavePCX writer;
    writer.SavePCXinFile(folder.file("a"), picture, True);
    writer.SavePCXinFile(folder.file("b"), picture, False);
    writer.SavePCXinFile(folder.file("c"), picture, 1);
    EXPECT_EQ(data_of(read_file(folder.file("b"))), Bytes(12, 5));
    EXPECT_EQ(data_of(read_file(folder.file("c"))), (Bytes{192 + 12, 5}));
}

TEST(SavePcx, ExtraColumnOfAnOddWidthIsWhatFollowsTheRow) {
    // A row is one pixel and a padding byte. The extra pixel is the padding and the next row's blue and
    // green, or zeros after the last row.
    const auto narrow_picture = surface_of(1, 2, {0x030201, 0x060504});
    EXPECT_EQ(data_of(written(*narrow_picture, False)), (Bytes{1, 5, 2, 6, 3, 0, 4, 0, 5, 0, 6, 0}));
    // Three pixels have three bytes of padding, which are the extra pixel.
    const auto black_behind = surface_of(3, 2, {0x010101, 0x020202, 0x030303, 0x040404, 0x050505, 0x060606});
    const Bytes rows = data_of(written(*black_behind, False));
    EXPECT_EQ((Bytes{rows.begin(), rows.begin() + 4}), (Bytes{1, 2, 3, 0}));
    EXPECT_EQ((Bytes{rows.begin() + 12, rows.begin() + 16}), (Bytes{4, 5, 6, 0}));
    // Five pixels have one byte of padding, like one pixel.
    const auto five = surface_of(5, 2, {1, 1, 1, 1, 1, 0x0A0908, 1, 1, 1, 1});
    const Bytes lines = data_of(written(*five, False));
    EXPECT_EQ(lines[5], 9) << "red: the green of the next row's first pixel";
    EXPECT_EQ(lines[11], 10) << "green: its blue";
    EXPECT_EQ(lines[17], 0) << "blue: the padding byte";
}

TEST(SavePcx, WidestPictureHas32766Pixels) {
    TestSurface too_wide(32767, 1);
    EXPECT_FAILURE(written(too_wide, False), Overflow) << "its line would take 32768 bytes";
    TestSurface widest(32766, 1);
    EXPECT_EQ(get_i16(written(widest, True), 66), 32766);
}

struct RleCase {
    const char* name;
    Bytes bytes;
    Bytes encoded;
};

class SavePcxRle : public testing::TestWithParam<RleCase> {};

TEST_P(SavePcxRle, BytesAreEncodedAsRunsAndLiterals) {
    EXPECT_EQ(encoded(GetParam().bytes), GetParam().encoded);
}

INSTANTIATE_TEST_SUITE_P(
    Bytes, SavePcxRle,
    testing::Values(RleCase{"Run130IsTwoRunsOf63AndOneOf4", Bytes(130, 7), {255, 7, 255, 7, 196, 7}},
                    RleCase{"Run63", Bytes(63, 1), {255, 1}}, RleCase{"Run64", Bytes(64, 1), {255, 1, 1}},
                    RleCase{"RunsOf2", {0, 0, 255, 255}, {194, 0, 194, 255}},
                    RleCase{"Single200", {200}, {193, 200}}, RleCase{"Single192", {192}, {193, 192}},
                    RleCase{"Single191", {191}, {191}}),
    [](const auto& instance) { return instance.param.name; });

TEST(SavePcx, RunsCrossLineEndsWhateverTheLineLength) {
    // Grey of one level: nine lines of two bytes are one run.
    const auto picture = surface_of(2, 3, Colours(6, 0x070707));
    EXPECT_EQ(data_of(written(*picture, True)), (Bytes{192 + 18, 7}));
    const Bytes bytes{1, 1, 1, 200, 5, 5};
    EXPECT_EQ(encoded(bytes, 2), encoded(bytes, 6));
}

TEST(SavePcx, LineLengthOf0DividesByZero) {
    EXPECT_FAILURE(SavePCX::EncodeRle(Bytes{1, 2}, 0), DivisionByZero);
}

TEST(SavePcx, EncodedBytesDecodeToTheInput) {
    std::mt19937 random(5);
    for (int i = 0; i < 5000; ++i) {
        Bytes bytes(i < 200 ? static_cast<std::size_t>(i % 8) : random() % 400);
        const std::size_t sameness = random() % 40;
        for (std::size_t k = 0; k < bytes.size(); ++k) {
            bytes[k] =
                k > 0 && random() % 40 < sameness ? bytes[k - 1] : static_cast<std::uint8_t>(random() % 256);
        }
        Bytes packed = encoded(bytes);
        packed.push_back(0); // the spare byte
        ASSERT_EQ(reference::decode_pcx_rle(packed), bytes) << "input " << i;
    }
}

} // namespace
} // namespace varnoth::test
