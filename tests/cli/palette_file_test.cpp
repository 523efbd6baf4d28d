#include "cli/palette_file.h"

#include <gtest/gtest.h>

#include "cli/command.h"
#include "cli/made_gif.h"
#include "core/base/files.h"
#include "support/TemporaryFolder.h"
#include "support/codec_files.h"
#include "support/foreign_tools.h"
#include "support/pictures.h"

namespace varnoth::cli {
namespace {

using test::Bytes;
using Colours = std::vector<RGBQUAD>;

const Colours three_colours{{3, 2, 1, 0}, {6, 5, 4, 0}, {9, 8, 7, 0}};

class PaletteFile : public testing::Test {
  protected:
    void tool(const std::string& command) const { test::run_tool("cd " + folder.path() + "; " + command); }

    std::string path(const std::string& name) const { return folder.file(name); }

    void write(const std::string& name, const Bytes& bytes) const {
        OutputFile file(path(name));
        file.write(bytes);
        file.close();
    }

    Colours colours_of(const std::string& name) const { return read_palette_file(path(name)).colours; }

    std::string error_of(const std::string& name) const {
        try {
            read_palette_file(path(name));
        } catch (const CommandError& error) {
            return error.what();
        }
        return {};
    }

    /// A PPM file of a row of colours.
    void write_row(const std::string& name, const Bytes& rgb) const {
        Bytes file = test::joined({{'P', '6', '\n'}, {}, rgb});
        const std::string size = std::to_string(rgb.size() / 3) + " 1 255\n";
        file.insert(file.begin() + 3, size.begin(), size.end());
        write(name, file);
    }

    /// Colours in the order of first use, which is not that of their values.
    void write_three_colours(const std::string& name) const {
        write_row(name, {1, 2, 3, 4, 5, 6, 1, 2, 3, 7, 8, 9});
    }

    test::TemporaryFolder folder;
};

TEST_F(PaletteFile, OfASprite) {
    Bytes sprite(810);
    const std::string ident = "IDSP";
    std::copy(ident.begin(), ident.end(), sprite.begin());
    sprite[42] = 1;
    sprite[43] = 2;
    sprite[44] = 3;
    sprite[809] = 9;
    write("a.spr", sprite);
    const Colours colours = colours_of("a.spr");
    ASSERT_EQ(colours.size(), 256U);
    EXPECT_EQ(colours[0], (RGBQUAD{3, 2, 1, 0}));
    EXPECT_EQ(colours[255], (RGBQUAD{9, 0, 0, 0}));
    sprite.pop_back();
    write("a.spr", sprite);
    EXPECT_EQ(error_of("a.spr"), path("a.spr") + ": the palette is damaged");
}

TEST_F(PaletteFile, OfATextFile) {
    tool("printf 'JASC-PAL\\r\\n0100\\r\\n3\\r\\n1 2 3\\r\\n4 5 6\\r\\n7 8 9\\r\\n' > a.pal; "
         "printf 'GIMP Palette\\nName: a\\n#\\n1 2 3\\tred\\n4 5 6\\n7 8 9\\n' > a.gpl");
    EXPECT_EQ(colours_of("a.pal"), three_colours);
    EXPECT_EQ(colours_of("a.gpl"), three_colours);
}

TEST_F(PaletteFile, OfAnAdobeColourTable) {
    Bytes file(772);
    file[0] = 7;
    file[769] = 12;
    file[771] = 11;
    write("a.act", file);
    const PaletteColours palette = read_palette_file(path("a.act"));
    ASSERT_EQ(palette.colours.size(), 12U);
    EXPECT_EQ(palette.colours[0], (RGBQUAD{0, 0, 7, 0}));
    EXPECT_EQ(palette.transparent, 11);
}

TEST_F(PaletteFile, PictureOf768BytesIsNoRawPalette) {
    write_three_colours("a.ppm");
    tool("head -c 800 /dev/zero | cat a.ppm - | head -c 768 > b.act");
    EXPECT_EQ(colours_of("b.act"), three_colours);
}

TEST_F(PaletteFile, OfAnIndexedPictureIsItsColourTable) {
    write_three_colours("a.ppm");
    write_row("map.ppm", {7, 8, 9, 1, 2, 3, 4, 5, 6});
    tool("pnmtopng -palette=map.ppm a.ppm > a.png; ppmtopcx -packed -palette=map.ppm a.ppm > a.pcx; "
         "ppmtobmp -bpp=8 -mapfile=map.ppm a.ppm > a.bmp");
    const Colours table{{9, 8, 7, 0}, {3, 2, 1, 0}, {6, 5, 4, 0}};
    for (const char* name : {"a.png", "a.pcx", "a.bmp"}) {
        Colours colours = colours_of(name);
        EXPECT_GE(colours.size(), table.size()) << name;
        colours.resize(table.size());
        EXPECT_EQ(colours, table) << name;
    }
    test::GifFrame frame;
    frame.width = frame.height = 1;
    frame.indices = {2};
    write("a.gif", test::gif_file(1, 1, {frame}));
    EXPECT_EQ(colours_of("a.gif"), (Colours{{0, 0, 100, 0}, {0, 0, 101, 0}, {0, 0, 102, 0}, {0, 0, 103, 0}}));
}

TEST_F(PaletteFile, OfAColourMappedTgaIsItsMap) {
    write("a.tga", {0, 1, 1, 0, 0, 3, 0, 24, 0, 0, 0, 0, 1, 0, 1, 0, 8, 0, 3, 2, 1, 6, 5, 4, 9, 8, 7, 0});
    EXPECT_EQ(colours_of("a.tga"), three_colours);
}

TEST_F(PaletteFile, OfATrueColourPictureAreItsColoursInOrder) {
    write_three_colours("a.ppm");
    tool("convert a.ppm a.bmp; convert a.ppm PNG24:a.png; convert a.ppm -auto-orient -flip a.tga");
    for (const char* name : {"a.ppm", "a.bmp", "a.png", "a.tga"}) {
        EXPECT_EQ(colours_of(name), three_colours) << name;
    }
}

TEST_F(PaletteFile, TransparentPixelsHaveNoColour) {
    tool("convert -size 1x1 xc:'rgba(9,9,9,0)' xc:'rgba(1,2,3,0.5)' +append PNG32:a.png");
    EXPECT_EQ(colours_of("a.png"), (Colours{{3, 2, 1, 0}}));
    tool("convert -size 1x1 xc:'rgba(9,9,9,0)' PNG32:a.png");
    EXPECT_EQ(error_of("a.png"), path("a.png") + ": the palette is empty");
}

TEST_F(PaletteFile, MoreThan256ColoursAreAnError) {
    Bytes row;
    for (int i = 0; i < 256; ++i) {
        row.insert(row.end(), {static_cast<std::uint8_t>(i), 0, 1});
    }
    write_row("most.ppm", row);
    EXPECT_EQ(colours_of("most.ppm").size(), 256U);
    row.insert(row.end(), {0, 1, 1});
    write_row("more.ppm", row);
    EXPECT_EQ(error_of("more.ppm"), path("more.ppm") + ": has more than 256 colours");
    tool("(printf 'GIMP Palette\\n'; yes '1 2 3' | head -257) > more.gpl");
    EXPECT_EQ(error_of("more.gpl"), path("more.gpl") + ": has more than 256 colours");
}

TEST_F(PaletteFile, ErrorsNameTheFile) {
    EXPECT_EQ(error_of("none"), path("none") + ": No such file or directory");
    write("text", {'t', 'e', 'x', 't'});
    EXPECT_EQ(error_of("text"), path("text") + ": neither a palette nor a picture");
    tool("printf 'JASC-PAL\\n0100\\n3\\n1 2 3\\n' > cut.pal; printf 'GIMP Palette\\n' > empty.gpl");
    EXPECT_EQ(error_of("cut.pal"), path("cut.pal") + ": the palette is damaged");
    EXPECT_EQ(error_of("empty.gpl"), path("empty.gpl") + ": the palette is empty");
    tool("convert -size 9x9 plasma: a.png; head -c 100 a.png > cut.png");
    EXPECT_EQ(error_of("cut.png"), path("cut.png") + ": the picture is damaged");
}

} // namespace
} // namespace varnoth::cli
