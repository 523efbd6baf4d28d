// PCX files that other programs wrote, for both readers.
#include "core/codecs/CBitmap.h"
#include "core/codecs/ForeignPictures.h"
#include "core/codecs/read_pcx.h"
#include "reference/LoadPCX.h"
#include "support/expect_failure.h"

namespace varnoth::test {
namespace {

// Programs that decode a file like LoadPCX. Netpbm knows no plain files.
enum class Decoders { Both, ImageMagick, Netpbm };

struct PcxCase {
    const char* name;
    Palette palette;
    const char* convert; ///< options of ImageMagick, or ""
    const char* netpbm;  ///< options of ppmtopcx, or ""
    int bits, planes, encoding;
    Decoders decoders = Decoders::Both;
};

const PcxCase pcx_cases[] = {
    {"Plain24Bit", Palette::Any, "-type TrueColor -compress none", "", 8, 3, 0, Decoders::ImageMagick},
    {"Compressed24Bit", Palette::Any, "-type TrueColor -compress RLE", "", 8, 3, 1},
    {"Netpbm24Bit", Palette::Any, "", "-24bit", 8, 3, 1},
    {"Plain8Bit", Palette::Of200, "-compress none", "", 8, 1, 0, Decoders::ImageMagick},
    {"Compressed8Bit", Palette::Of200, "-compress RLE", "", 8, 1, 1},
    {"Netpbm8Bit", Palette::Of200, "", "-8bit", 8, 1, 1},
    {"FourPlanes", Palette::Of16, "", "-planes=4", 1, 4, 1},
    {"BlackAndWhite", Palette::BlackAndWhite, "", "-planes=1 -palette=map.ppm", 1, 1, 1, Decoders::Netpbm},
};

class ForeignPcx : public ForeignPictures, public testing::WithParamInterface<PcxCase> {};

TEST_P(ForeignPcx, PixelsMatchOtherDecoders) {
    const PcxCase& each = GetParam();
    write_sources(each.palette);
    if (each.convert[0] == '\0') {
        netpbm(std::string("ppmtopcx ") + each.netpbm, "pcx");
    } else {
        convert_with_palette(each.palette, each.convert, "pcx");
    }
    expect_layout(each.bits, each.planes, each.encoding);
    std::vector<std::vector<ForeignPicture>> decoded;
    if (each.decoders != Decoders::Netpbm) {
        decoded.push_back(decoded_by_convert("pcx"));
    }
    if (each.decoders != Decoders::ImageMagick) {
        decoded.push_back(decoded_by("pcxtoppm", "pcx"));
    }
    expect_equal<LoadPCX>("pcx", decoded);
    expect_rgba("pcx", read_pcx);
}

INSTANTIATE_TEST_SUITE_P(Files, ForeignPcx, testing::ValuesIn(pcx_cases),
                         [](const auto& instance) { return instance.param.name; });

TEST_F(ForeignPictures, PcxOriginNotZero) {
    write_sources(Palette::Of16);
    netpbm("ppmtopcx -planes=4 -xpos=20 -ypos=30", "pcx");
    EXPECT_EQ(pcx_header(0).XMin, 20);
    EXPECT_EQ(pcx_header(0).YMin, 30);
    expect_equal<LoadPCX>("pcx", {decoded_by("pcxtoppm", "pcx")});
    expect_rgba("pcx", read_pcx);
}

TEST_F(ForeignPictures, Pcx4BitLinesOfLoadPcxHaveAnEvenNumberOfBytes) {
    write_sources(Palette::Of16);
    netpbm("ppmtopcx -packed -palette=map.ppm", "pcx");
    expect_layout(4, 1, 1);
    expect_rgba("pcx", read_pcx);
    int skewed = 0;
    int refused = 0;
    for (std::size_t i = 0; i < sources.size(); ++i) {
        SCOPED_TRACE(path(i, "pcx"));
        const auto width = static_cast<std::size_t>(sizes[i].width);
        const auto height = static_cast<std::size_t>(sizes[i].height);
        const std::size_t file_line = (width + 1) / 2;
        const std::size_t line = file_line + file_line % 2;
        LoadPCX reader;
        // The plain bytes of the file: whole lines of BytesPerLine.
        Bytes bytes = read_file(path(i, "pcx"));
        bytes.erase(bytes.begin(), bytes.begin() + PcxHeader::size);
        bytes.push_back(0);
        bytes = reference::decode_pcx_rle(bytes);
        ASSERT_EQ(bytes.size(), file_line * height);
        if ((height - 1) * line >= bytes.size()) {
            EXPECT_FAILURE(reader.Load(path(i, "pcx")), SubscriptOutOfRange);
            ++refused;
            continue;
        }
        reader.Load(path(i, "pcx"));
        Colours expected;
        for (std::size_t y = 0; y < height; ++y) {
            for (std::size_t x = 0; x < width; ++x) {
                const std::size_t at = y * line + x / 2;
                const int byte = at < bytes.size() ? bytes[at] : 0;
                expected.push_back(map.at(static_cast<std::size_t>(x % 2 == 0 ? byte >> 4 : byte & 15)));
            }
        }
        EXPECT_TRUE(same(drawn_by(reader), expected, sizes[i].width));
        EXPECT_EQ(expected == sources[i], line == file_line || height == 1);
        skewed += expected == sources[i] ? 0 : 1;
    }
    EXPECT_GE(skewed, 1);
    EXPECT_GE(refused, 3);
}

TEST_F(ForeignPictures, Pcx1BitInOtherColoursIsBlackAndWhiteInLoadPcx) {
    write_sources(Palette::RedAndBlue);
    netpbm("ppmtopcx -planes=1 -palette=map.ppm", "pcx");
    expect_layout(1, 1, 1);
    expect_rgba("pcx", read_pcx);
    // White where the source has the second colour of the file's map.
    for (std::size_t i = 0; i < sources.size(); ++i) {
        const PcxHeader header = pcx_header(i);
        const Colour second = make_colour(header.ColorMap[3], header.ColorMap[4], header.ColorMap[5]);
        Colours expected;
        for (const Colour colour : sources[i]) {
            expected.push_back(colour == second ? 0xFFFFFF : 0x000000);
        }
        LoadPCX reader;
        reader.Load(path(i, "pcx"));
        EXPECT_TRUE(same(drawn_by(reader), expected, sizes[i].width)) << i;
    }
}

TEST_F(ForeignPictures, Pcx1BitWithSetBitsForBlackIsInverted) {
    // ImageMagick writes 1 bit for pictures with a palette and sets the bits of the black pixels, which
    // contradicts the map that it writes. Netpbm reads such a file as LoadPCX does.
    sources_of({{3, 2}, {4, 3}, {5, 5}, {33, 9}, {256, 256}}, Palette::BlackAndWhite);
    netpbm("ppmtogif -mapfile=map.ppm", "gif");
    for (Colours& colours : sources) {
        for (Colour& colour : colours) {
            colour ^= 0xFFFFFF;
        }
    }
    convert("-compress none", "pcx", "gif");
    expect_layout(1, 1, 0);
    expect_equal<LoadPCX>("pcx", {});
    convert("-compress RLE", "pcx", "gif");
    expect_layout(1, 1, 1);
    expect_equal<LoadPCX>("pcx", {decoded_by("pcxtoppm", "pcx")});
}

TEST_F(ForeignPictures, PcxOf2Or3PlanesIsNotDecodedByLoadPcx) {
    write_sources(Palette::RedAndBlue);
    for (const int planes : {2, 3}) {
        netpbm("ppmtopcx -palette=map.ppm -planes=" + std::to_string(planes), "pcx");
        expect_layout(1, planes, 1);
        expect_rgba("pcx", read_pcx);
        for (std::size_t i = 0; i < sources.size(); ++i) {
            const auto old = put_old_picture();
            LoadPCX reader;
            reader.Load(path(i, "pcx"));
            EXPECT_EQ(CBitmap::CurrentBitmap, old);
            EXPECT_EQ(reader.IsPCX(), True);
            EXPECT_EQ(reader.Width(), sizes[i].width);
        }
    }
}

TEST_F(ForeignPictures, PcxAlphaIsInTheFourthPlane) {
    write_sources(Palette::Any);
    netpbm("convert - " + red_as_alpha + "-type TrueColorAlpha pcx:-", "pcx");
    expect_layout(8, 4, 1);
    expect_rgba("pcx", read_pcx, Alpha::SameAsRed);
}

} // namespace
} // namespace varnoth::test
