// Files that other programs wrote: what the readers draw is held equal to what those programs decode, and
// where a reader is different on purpose, to what it is meant to draw instead.
#include <random>
#include <sstream>

#include <gtest/gtest.h>

#include "codecs/BmpMod.h"
#include "codecs/CBitmap.h"
#include "codecs/JpgMod.h"
#include "codecs/LoadPCX.h"
#include "codecs/LoadTGA.h"
#include "reference/LoadPCX.h"
#include "support/TemporaryFolder.h"
#include "support/codec_files.h"
#include "support/expect_failure.h"
#include "support/foreign_tools.h"
#include "support/pictures.h"

namespace varnoth {
namespace {

using test::Bytes;
using test::ForeignPicture;
using test::TestSurface;

using Colours = std::vector<Colour>;

struct Size {
    std::int32_t width, height;
};

constexpr Size usual_sizes[] = {{1, 1}, {1, 3}, {2, 3},  {3, 2},   {4, 1},
                                {5, 4}, {7, 5}, {33, 9}, {255, 2}, {256, 256}};

enum class Palette { Any, Of200, Of16, RedAndBlue, BlackAndWhite, Greys };

// The colours of a palette; of any colour, none.
Colours colours_in(Palette palette) {
    std::mt19937 random(7);
    Colours colours;
    switch (palette) {
    case Palette::Any:
        break;
    case Palette::Of200:
    case Palette::Of16:
        for (std::size_t i = 0; i < (palette == Palette::Of16 ? 16U : 200U); ++i) {
            colours.push_back(static_cast<Colour>(random() % 0x1000000));
        }
        break;
    case Palette::RedAndBlue:
        colours = {0x0000FF, 0xFF0000};
        break;
    case Palette::BlackAndWhite:
        colours = {0x000000, 0xFFFFFF};
        break;
    case Palette::Greys:
        for (Colour i = 0; i < 256; ++i) {
            colours.push_back(i * 0x010101);
        }
        break;
    }
    return colours;
}

// Colours of these, or any, in runs of random length.
Colours random_runs(const Colours& choice, std::size_t count, std::uint32_t seed) {
    std::mt19937 random(seed);
    Colours colours;
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0 && random() % 3 == 0) {
            colours.push_back(colours.back());
        } else {
            colours.push_back(choice.empty() ? static_cast<Colour>(random() % 0x1000000)
                                             : choice[random() % choice.size()]);
        }
    }
    return colours;
}

// All the PPM pictures that a command prints one behind the other.
std::vector<ForeignPicture> pictures_from_tool(const std::string& command) {
    std::istringstream stream(test::run_tool(command));
    std::vector<ForeignPicture> pictures;
    std::string type;
    while (stream >> type) {
        ForeignPicture picture;
        int depth = 0;
        stream >> picture.width >> picture.height >> depth;
        stream.get();
        EXPECT_TRUE(type == "P5" || type == "P6") << type;
        EXPECT_EQ(depth, 255);
        const auto byte = [&] { return static_cast<std::uint8_t>(stream.get()); };
        for (std::int32_t i = 0; i < picture.width * picture.height && stream; ++i) {
            const std::uint8_t red = byte();
            const std::uint8_t green = type == "P6" ? byte() : red;
            const std::uint8_t blue = type == "P6" ? byte() : red;
            picture.colours.push_back(make_colour(red, green, blue));
        }
        pictures.push_back(std::move(picture));
    }
    return pictures;
}

testing::AssertionResult same(const Colours& drawn, const Colours& expected, std::int32_t width) {
    if (drawn.size() != expected.size()) {
        return testing::AssertionFailure() << drawn.size() << " pixels, expected " << expected.size();
    }
    for (std::size_t i = 0; i < drawn.size(); ++i) {
        if (drawn[i] != expected[i]) {
            const auto across = static_cast<std::size_t>(width);
            return testing::AssertionFailure()
                   << "pixel " << i % across << ", " << i / across << " is " << std::hex << drawn[i]
                   << ", expected " << expected[i] << " (width " << std::dec << width << ")";
        }
    }
    return testing::AssertionSuccess();
}

Colours drawn_by(const LoadPCX& reader) {
    TestSurface target(1, 1);
    reader.DrawPCX(target);
    EXPECT_EQ(target.bitmap().width(), reader.Width());
    return test::colours_of(target);
}

Colours drawn_by(const LoadTGA& reader) {
    TestSurface target(1, 1);
    reader.DrawTGA(target);
    EXPECT_EQ(target.bitmap().width(), reader.Width());
    return test::colours_of(target);
}

Truth probe(LoadPCX& reader, const std::string& path, Size& size, std::int16_t& bpp) {
    return reader.GetInfoPCX(path, size.width, size.height, bpp);
}

Truth probe(LoadTGA& reader, const std::string& path, Size& size, std::int16_t& bpp) {
    return reader.GetInfoTGA(path, size.width, size.height, bpp);
}

class ForeignPictures : public testing::Test {
  protected:
    /// Writes one source picture of each of the usual sizes, 0.ppm and so on, and the palette as map.ppm.
    void write_sources(Palette palette) {
        sources_of({std::begin(usual_sizes), std::end(usual_sizes)}, palette);
    }

    void sources_of(const std::vector<Size>& wanted, Palette palette) {
        sizes = wanted;
        map = colours_in(palette);
        if (!map.empty()) {
            test::write_ppm(folder.file("map.ppm"), static_cast<std::int32_t>(map.size()), map);
        }
        sources.clear();
        for (const Size& size : sizes) {
            const auto count = static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
            const auto seed = static_cast<std::uint32_t>(sources.size());
            sources.push_back(random_runs(map, count, seed));
            test::write_ppm(folder.file(std::to_string(seed) + ".ppm"), size.width, sources.back());
        }
    }

    /// "0.ppm 1.ppm ..." with another ending.
    std::string names(const std::string& ending) const {
        std::string all;
        for (std::size_t i = 0; i < sources.size(); ++i) {
            all += std::to_string(i) + "." + ending + " ";
        }
        return all;
    }

    // One thread: on a busy machine ImageMagick's threads wait for each other longer than they work.
    std::string in_folder(const std::string& command) const {
        return "cd " + folder.path() + "; export OMP_NUM_THREADS=1; " + command;
    }

    std::string path(std::size_t i, const std::string& ending) const {
        return folder.file(std::to_string(i) + "." + ending);
    }

    /// Lets ImageMagick write every source with these options.
    void convert(const std::string& options, const std::string& ending, const std::string& from = "ppm") {
        test::run_tool(in_folder("convert " + names(from) + options + " +adjoin %d." + ending));
    }

    /// Runs a Netpbm program on every source, by standard input.
    void netpbm(const std::string& program, const std::string& ending, const std::string& from = "ppm") {
        test::run_tool(in_folder("for i in " + numbers() + "; do " + program + " < $i." + from + " > $i." +
                                 ending + "; done"));
    }

    /// Without -auto-orient, ImageMagick leaves the rows in the order of the file.
    std::vector<ForeignPicture> decoded_by_convert(const std::string& ending) {
        return pictures_from_tool(
            in_folder("convert " + names(ending) + "-auto-orient -alpha off -depth 8 ppm:-"));
    }

    std::vector<ForeignPicture> decoded_by(const std::string& program, const std::string& ending) {
        return pictures_from_tool(
            in_folder("for i in " + numbers() + "; do " + program + " $i." + ending + "; done"));
    }

    /// Every file of that ending: the probe tells its size and what a new reader draws is what the sources,
    /// and all the foreign decoders, show.
    template <typename Reader>
    void expect_equal(const std::string& ending, const std::vector<std::vector<ForeignPicture>>& decoded) {
        for (std::size_t i = 0; i < sources.size(); ++i) {
            SCOPED_TRACE(path(i, ending));
            Reader reader;
            Size size{};
            std::int16_t bpp = 0;
            EXPECT_EQ(probe(reader, path(i, ending), size, bpp), True);
            EXPECT_EQ(size.width, sizes[i].width);
            EXPECT_EQ(size.height, sizes[i].height);
            reader.Load(path(i, ending));
            EXPECT_EQ(reader.Bpp(), bpp);
            const Colours drawn = drawn_by(reader);
            EXPECT_TRUE(same(drawn, sources[i], size.width));
            for (const std::vector<ForeignPicture>& pictures : decoded) {
                ASSERT_EQ(pictures.size(), sources.size());
                EXPECT_TRUE(same(drawn, pictures[i].colours, size.width));
            }
        }
    }

    void expect_equal_pcx() {
        expect_equal<LoadPCX>("pcx", {decoded_by_convert("pcx"), decoded_by("pcxtoppm", "pcx")});
    }

    void expect_equal_tga() {
        expect_equal<LoadTGA>("tga", {decoded_by_convert("tga"), decoded_by("tgatoppm", "tga")});
    }

    PcxHeader pcx_header(std::size_t i) const {
        const Bytes bytes = test::read_file(path(i, "pcx"));
        return PcxHeader::from_bytes(std::span<const std::uint8_t>(bytes).first<PcxHeader::size>());
    }

    TgaHeader tga_header(std::size_t i) const {
        const Bytes bytes = test::read_file(path(i, "tga"));
        return TgaHeader::from_bytes(std::span<const std::uint8_t>(bytes).first<TgaHeader::size>());
    }

    /// Every PCX file has this layout.
    void expect_layout(int bits, int planes, int encoding) const {
        for (std::size_t i = 0; i < sources.size(); ++i) {
            EXPECT_EQ(pcx_header(i).BitsPerPixel, bits) << i;
            EXPECT_EQ(pcx_header(i).NPlanes, planes) << i;
            EXPECT_EQ(pcx_header(i).Encoding, encoding) << i;
        }
    }

    /// What is drawn of the 1-bit PCX files is white where the sources have the second colour of the file's
    /// map, else black.
    void expect_white_for_the_second_colour() const {
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

    /// Every TGA file is of this kind.
    void expect_kind(int type, int depth, int descriptor_bit_5) const {
        for (std::size_t i = 0; i < sources.size(); ++i) {
            EXPECT_EQ(tga_header(i).ImageType, type) << i;
            EXPECT_EQ(tga_header(i).PixelDepth, depth) << i;
            EXPECT_EQ(tga_header(i).ImageDescriptor & 32, descriptor_bit_5) << i;
        }
    }

    /// "width height" of every file, as ImageMagick tells it.
    std::vector<std::string> identified(const std::string& ending) {
        std::istringstream text(test::run_tool(in_folder("identify -format '%w %h\\n' " + names(ending))));
        std::vector<std::string> lines;
        for (std::string line; std::getline(text, line);) {
            lines.push_back(line);
        }
        return lines;
    }

    test::TemporaryFolder folder;
    std::vector<Size> sizes;
    Colours map;
    std::vector<Colours> sources;

  private:
    std::string numbers() const {
        std::string all;
        for (std::size_t i = 0; i < sources.size(); ++i) {
            all += std::to_string(i) + " ";
        }
        return all;
    }
};

// PCX.

TEST_F(ForeignPictures, PcxOf24BitsPlainAndCompressed) {
    write_sources(Palette::Any);
    convert("-type TrueColor -compress none", "pcx");
    expect_layout(8, 3, 0);
    expect_equal<LoadPCX>("pcx", {decoded_by_convert("pcx")}); // Netpbm knows no plain PCX

    convert("-type TrueColor -compress RLE", "pcx");
    expect_layout(8, 3, 1);
    expect_equal_pcx();
    netpbm("ppmtopcx -24bit", "pcx");
    expect_layout(8, 3, 1);
    expect_equal_pcx();
}

TEST_F(ForeignPictures, PcxOf8BitsWithAPalettePlainAndCompressed) {
    write_sources(Palette::Of200);
    netpbm("ppmtogif", "gif");
    convert("-compress none", "pcx", "gif");
    expect_layout(8, 1, 0);
    expect_equal<LoadPCX>("pcx", {decoded_by_convert("pcx")});
    convert("-compress RLE", "pcx", "gif");
    expect_layout(8, 1, 1);
    expect_equal_pcx();
    netpbm("ppmtopcx -8bit", "pcx");
    expect_layout(8, 1, 1);
    expect_equal_pcx();
}

TEST_F(ForeignPictures, PcxOfFourPlanes) {
    write_sources(Palette::Of16);
    netpbm("ppmtopcx -planes=4", "pcx");
    expect_layout(1, 4, 1);
    expect_equal_pcx();
}

TEST_F(ForeignPictures, PcxWithAnOriginOtherThanZero) {
    write_sources(Palette::Of16);
    netpbm("ppmtopcx -planes=4 -xpos=20 -ypos=30", "pcx");
    EXPECT_EQ(pcx_header(0).XMin, 20);
    EXPECT_EQ(pcx_header(0).YMin, 30);
    expect_equal<LoadPCX>("pcx", {decoded_by("pcxtoppm", "pcx")});
}

TEST_F(ForeignPictures, PcxOf4BitsIsTakenInLinesOfAnEvenNumberOfBytesWhateverTheFileSays) {
    write_sources(Palette::Of16);
    netpbm("ppmtopcx -packed -palette=map.ppm", "pcx");
    expect_layout(4, 1, 1);
    int skewed = 0;
    int refused = 0;
    for (std::size_t i = 0; i < sources.size(); ++i) {
        SCOPED_TRACE(path(i, "pcx"));
        const auto width = static_cast<std::size_t>(sizes[i].width);
        const auto height = static_cast<std::size_t>(sizes[i].height);
        const std::size_t file_line = (width + 1) / 2;
        const std::size_t line = file_line + file_line % 2;
        LoadPCX reader;
        // The plain bytes of the file, of which there are whole lines of its own length.
        Bytes bytes = test::read_file(path(i, "pcx"));
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

TEST_F(ForeignPictures, PcxOf4BitsOfWidthsThatFitAreEqual) {
    sources_of({{3, 2}, {4, 3}, {7, 5}, {8, 2}, {11, 7}, {256, 256}}, Palette::Of16);
    netpbm("ppmtopcx -packed -palette=map.ppm", "pcx");
    expect_layout(4, 1, 1);
    expect_equal<LoadPCX>("pcx", {decoded_by("pcxtoppm", "pcx")});
}

TEST_F(ForeignPictures, PcxOf1BitInBlackAndWhite) {
    write_sources(Palette::BlackAndWhite);
    netpbm("ppmtopcx -planes=1 -palette=map.ppm", "pcx");
    expect_layout(1, 1, 1);
    expect_equal<LoadPCX>("pcx", {decoded_by("pcxtoppm", "pcx")});
}

TEST_F(ForeignPictures, PcxOf1BitInOtherColoursComesOutBlackAndWhiteAllTheSame) {
    write_sources(Palette::RedAndBlue);
    netpbm("ppmtopcx -planes=1 -palette=map.ppm", "pcx");
    expect_layout(1, 1, 1);
    expect_white_for_the_second_colour();
}

TEST_F(ForeignPictures, PcxOf1BitWhoseSetBitsStandForBlackComesOutInverted) {
    // ImageMagick writes 1 bit for pictures that come with a palette, and sets the bits of the black pixels,
    // against the map that it writes. Netpbm reads such a file as it is read here.
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

TEST_F(ForeignPictures, PcxOf2Or3PlanesDecodesNothing) {
    write_sources(Palette::RedAndBlue);
    for (const char* options : {"-planes=2", "-planes=3"}) {
        netpbm(std::string("ppmtopcx ") + options, "pcx");
        for (std::size_t i = 0; i < sources.size(); ++i) {
            const auto old = test::put_old_picture();
            LoadPCX reader;
            reader.Load(path(i, "pcx"));
            EXPECT_EQ(CBitmap::CurrentBitmap, old);
            EXPECT_EQ(reader.IsPCX(), True);
            EXPECT_EQ(reader.Width(), sizes[i].width);
        }
    }
}

// TGA.

// ImageMagick writes the rows as it holds them and only notes the orientation.
const std::string bottom_up = "-flip -orient BottomLeft ";

TEST_F(ForeignPictures, TgaOf24BitsPlainAndCompressed) {
    write_sources(Palette::Any);
    convert(bottom_up + "-type TrueColor -compress none", "tga");
    expect_kind(2, 24, 0);
    expect_equal_tga();
    convert(bottom_up + "-type TrueColor -compress RLE", "tga");
    expect_kind(10, 24, 0);
    expect_equal_tga();
    netpbm("pamtotga -rgb -norle", "tga");
    expect_kind(2, 24, 0);
    expect_equal_tga();
    netpbm("pamtotga -rgb", "tga");
    expect_kind(10, 24, 0);
    expect_equal_tga();
}

TEST_F(ForeignPictures, TgaWithItsTopRowFirst) {
    write_sources(Palette::Any);
    convert("-type TrueColor -orient TopLeft -compress none", "tga");
    expect_kind(2, 24, 32);
    expect_equal_tga();
    convert("-type TrueColor -orient TopLeft -compress RLE", "tga");
    expect_kind(10, 24, 32);
    expect_equal_tga();
}

TEST_F(ForeignPictures, TgaOf32BitsLosesItsAlpha) {
    write_sources(Palette::Any);
    const std::string with_alpha = "-alpha set -channel A -evaluate set 40% +channel ";
    convert(bottom_up + with_alpha + "-compress none", "tga");
    expect_kind(2, 32, 0);
    expect_equal_tga();
    convert(bottom_up + with_alpha + "-compress RLE", "tga");
    expect_kind(10, 32, 0);
    expect_equal_tga();
    netpbm("ppmtopgm", "pgm");
    netpbm("pamstack -tupletype=RGB_ALPHA - $i.pgm", "pam");
    netpbm("pamtotga -norle", "tga", "pam");
    expect_kind(2, 32, 0);
    expect_equal<LoadTGA>("tga", {decoded_by_convert("tga")});
}

TEST_F(ForeignPictures, TgaOf8BitsWithAMapOf24) {
    write_sources(Palette::Of200);
    netpbm("ppmtogif", "gif");
    convert(bottom_up + "-compress none", "tga", "gif");
    expect_kind(1, 8, 0);
    expect_equal_tga();
    convert(bottom_up + "-compress RLE", "tga", "gif");
    expect_kind(9, 8, 0);
    expect_equal_tga();
    netpbm("pamtotga -cmap -norle", "tga");
    expect_kind(1, 8, 0);
    expect_equal_tga();
    netpbm("pamtotga -cmap", "tga");
    expect_kind(9, 8, 0);
    expect_equal_tga();
}

TEST_F(ForeignPictures, TgaOf8BitsInGreysFailsOnANewObjectAndIsBlackOnOneThatHasReadAMap) {
    write_sources(Palette::Of200);
    netpbm("pamtotga -cmap -norle", "tga");
    // The picture of one pixel has a map of one entry, so that the length of what follows is not cut.
    LoadTGA used;
    used.Load(path(0, "tga"));
    write_sources(Palette::Greys);
    for (const char* compression : {"none", "RLE"}) {
        convert(std::string("-type Grayscale -compress ") + compression, "tga");
        for (std::size_t i = 0; i < sources.size(); ++i) {
            LoadTGA reader;
            EXPECT_FAILURE(reader.Load(path(i, "tga")), SubscriptOutOfRange) << i;
        }
    }
    expect_kind(11, 8, 0);
    convert("-type Grayscale -compress none", "tga");
    expect_kind(3, 8, 0);
    for (std::size_t i = 0; i < sources.size(); ++i) {
        used.Load(path(i, "tga"));
        EXPECT_TRUE(same(drawn_by(used), Colours(sources[i].size(), 0), sizes[i].width)) << i;
    }
}

TEST_F(ForeignPictures, TgaWithAMapOf15BitsIsTakenForOneWithoutAMap) {
    write_sources(Palette::Of200);
    netpbm("pamtotga -cmap -norle", "tga");
    LoadTGA used;
    used.Load(path(0, "tga"));
    netpbm("pamtotga -cmap16 -norle", "tga");
    for (std::size_t i = 0; i < sources.size(); ++i) {
        EXPECT_EQ(tga_header(i).ColorMapDepth, 15);
        LoadTGA reader;
        EXPECT_FAILURE(reader.Load(path(i, "tga")), SubscriptOutOfRange);
        used.Load(path(i, "tga"));
        EXPECT_TRUE(same(drawn_by(used), Colours(sources[i].size(), 0), sizes[i].width)) << i;
    }
}

TEST_F(ForeignPictures, TgaWithAnIdShowsTheIdAsPixels) {
    write_sources(Palette::Any);
    netpbm("pamtotga -rgb -norle -name=four", "tga");
    for (std::size_t i = 0; i < sources.size(); ++i) {
        ASSERT_EQ(tga_header(i).IDLength, 4);
        ASSERT_EQ(tga_header(i).ImageDescriptor & 32, 0);
        const Bytes bytes = test::read_file(path(i, "tga"));
        LoadTGA reader;
        reader.Load(path(i, "tga"));
        Colours expected;
        for (std::int32_t y = sizes[i].height - 1; y >= 0; --y) {
            for (std::int32_t x = 0; x < sizes[i].width; ++x) {
                const std::size_t at =
                    TgaHeader::size + static_cast<std::size_t>(3 * (y * sizes[i].width + x));
                expected.push_back(make_colour(bytes.at(at + 2), bytes.at(at + 1), bytes.at(at)));
            }
        }
        EXPECT_TRUE(same(drawn_by(reader), expected, sizes[i].width)) << i;
        EXPECT_EQ(expected.at(expected.size() - static_cast<std::size_t>(sizes[i].width)),
                  make_colour('u', 'o', 'f'));
    }
}

// Probes.

struct Told {
    Truth answer = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int16_t bit_count = 0;
    std::int16_t compression = 0;
};

TEST_F(ForeignPictures, BmpProbesTellTheSizesOfBottomUpFilesWithA40ByteHeader) {
    write_sources(Palette::Of200);
    const auto expect_sizes = [&](int bit_count) {
        const std::vector<std::string> expected = identified("bmp");
        for (std::size_t i = 0; i < sources.size(); ++i) {
            Told told;
            told.answer =
                BmpMod::ProbeBmp(path(i, "bmp"), told.width, told.height, told.bit_count, told.compression);
            EXPECT_EQ(told.answer, True) << i;
            EXPECT_EQ(std::to_string(told.width) + " " + std::to_string(told.height), expected.at(i));
            EXPECT_EQ(told.bit_count, bit_count) << i;
            EXPECT_EQ(told.compression, 0) << i;
        }
    };
    test::run_tool(in_folder("convert " + names("ppm") + "-type TrueColor +adjoin BMP3:%d.bmp"));
    expect_sizes(24);
    netpbm("ppmtobmp -windows -bpp=24", "bmp");
    expect_sizes(24);
    netpbm("ppmtobmp -windows -bpp=8", "bmp");
    expect_sizes(8);
}

TEST_F(ForeignPictures, BmpProbesRefuseTheOlderAndTheLongerHeaders) {
    write_sources(Palette::Of200);
    const auto expect_refused = [&] {
        for (std::size_t i = 0; i < sources.size(); ++i) {
            Told told;
            EXPECT_EQ(
                BmpMod::ProbeBmp(path(i, "bmp"), told.width, told.height, told.bit_count, told.compression),
                False);
            EXPECT_EQ(told.width, -1);
        }
    };
    netpbm("ppmtobmp -os2 -bpp=24", "bmp");
    expect_refused();
    test::run_tool(in_folder("convert " + names("ppm") + "-type TrueColor +adjoin BMP4:%d.bmp"));
    expect_refused();
}

TEST_F(ForeignPictures, JpegProbesTellTheSizesOfBaselineFiles) {
    write_sources(Palette::Any);
    const auto expect_sizes = [&] {
        const std::vector<std::string> expected = identified("jpg");
        for (std::size_t i = 0; i < sources.size(); ++i) {
            Told told;
            EXPECT_EQ(JpgMod::ProbeJpeg(path(i, "jpg"), told.width, told.height), True) << i;
            EXPECT_EQ(std::to_string(told.width) + " " + std::to_string(told.height), expected.at(i));
        }
    };
    convert("", "jpg");
    expect_sizes();
    netpbm("pnmtojpeg", "jpg");
    expect_sizes();
}

TEST_F(ForeignPictures, JpegProbesFindNoSizeInProgressiveFiles) {
    write_sources(Palette::Any);
    const auto expect_nothing = [&] {
        for (std::size_t i = 0; i < sources.size(); ++i) {
            Told told;
            EXPECT_EQ(JpgMod::ProbeJpeg(path(i, "jpg"), told.width, told.height), False) << i;
            EXPECT_EQ(told.width, 0);
        }
    };
    convert("-interlace JPEG", "jpg");
    expect_nothing();
    netpbm("pnmtojpeg -progressive", "jpg");
    expect_nothing();
}

} // namespace
} // namespace varnoth
