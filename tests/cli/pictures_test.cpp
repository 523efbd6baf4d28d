#include "cli/pictures.h"

#include <filesystem>

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
using Pixels = std::vector<std::uint32_t>;

/// The error of an action, or nothing.
template <typename Action>
std::string error_of(Action&& action) {
    try {
        action();
    } catch (const CommandError& error) {
        return error.what();
    }
    return {};
}

class Pictures : public testing::Test {
  protected:
    /// Runs a command in the test's folder.
    void tool(const std::string& command) const { test::run_tool("cd " + folder.path() + "; " + command); }

    std::string path(const std::string& name) const { return folder.file(name); }

    /// Writes a file; returns its path.
    std::string write(const std::string& name, const Bytes& bytes) const {
        OutputFile file(path(name));
        file.write(bytes);
        file.close();
        return path(name);
    }

    /// The only picture of a file.
    RgbaPicture read(const std::string& name) const {
        const std::vector<PictureSource> sources = list_pictures({path(name)});
        EXPECT_EQ(sources.size(), 1U) << name;
        return PictureReader().read(sources.at(0));
    }

    /// What ImageMagick makes of a single colour in a file of that name and these options.
    Pixels pixels_of(const std::string& name, const std::string& colour,
                     const std::string& options = "") const {
        tool("convert -size 2x1 xc:'" + colour + "' " + options + " " + name);
        return read(name).pixels;
    }

    std::vector<std::string> names_of(const std::vector<PictureSource>& sources) const {
        std::vector<std::string> names;
        for (const PictureSource& source : sources) {
            names.push_back(source.name.substr(folder.path().size() + 1));
        }
        return names;
    }

    test::TemporaryFolder folder;
};

TEST_F(Pictures, OpaqueFormats) {
    const Pixels red{0xFFFF0000, 0xFFFF0000};
    for (const char* name : {"a.png", "a.bmp", "a.gif", "a.tga", "a.pcx", "a.ppm", "a.xpm", "a.ico"}) {
        EXPECT_EQ(pixels_of(name, "red"), red) << name;
    }
    EXPECT_EQ(pixels_of("a.jpg", "gray(100)", "-quality 100"), (Pixels{0xFF646464, 0xFF646464}));
    EXPECT_EQ(pixels_of("a.pbm", "white"), (Pixels{0xFFFFFFFF, 0xFFFFFFFF}));
    EXPECT_EQ(pixels_of("a.xbm", "white"), (Pixels{0xFFFFFFFF, 0xFFFFFFFF}));
}

TEST_F(Pictures, AlphaIsNotPremultiplied) {
    for (const char* name : {"a.png", "a.bmp", "a.tga", "a.pcx", "a.ico"}) {
        EXPECT_EQ(pixels_of(name, "rgba(200,100,50,0.2)", "-type TrueColorAlpha"),
                  (Pixels{0x33C86432, 0x33C86432}))
            << name;
    }
}

TEST_F(Pictures, PngOfEachDepth) {
    EXPECT_EQ(pixels_of("a.png", "rgb(200,100,50)", "-define png:format=png48").front(), 0xFFC86432);
    EXPECT_EQ(pixels_of("a.png", "rgba(200,100,50,0.2)", "-define png:format=png64").front(), 0x33C86432);
    EXPECT_EQ(pixels_of("a.png", "rgb(200,100,50)", "-define png:format=png8").front(), 0xFFC86432);
    EXPECT_EQ(pixels_of("a.png", "gray(100)", "-type Grayscale").front(), 0xFF646464);
    EXPECT_EQ(pixels_of("a.png", "graya(100,0.2)", "-type GrayscaleMatte").front(), 0x33646464);
}

TEST_F(Pictures, ContentDecidesRegardlessOfTheEnding) {
    tool("convert -size 1x1 xc:red a.png; mv a.png a.jpg");
    EXPECT_EQ(read("a.jpg").pixels, Pixels{0xFFFF0000});
}

TEST_F(Pictures, ExifOrientationDoesNotRotate) {
    // ImageMagick writes no EXIF of its own: an APP1 segment after the first two bytes, orientation 6.
    tool("convert -size 3x1 xc:red a.jpg");
    Bytes file = test::read_file(path("a.jpg"));
    const Bytes exif{0xFF, 0xE1, 0,    34, 'E', 'x', 'i', 'f', 0, 0, 'M', 'M', 0, 42, 0, 0, 0, 8,
                     0,    1,    0x01, 18, 0,   3,   0,   0,   0, 1, 0,   6,   0, 0,  0, 0, 0, 0};
    file.insert(file.begin() + 2, exif.begin(), exif.end());
    write("a.jpg", file);
    EXPECT_EQ(test::run_tool("identify -format '%[orientation]' " + path("a.jpg")), "RightTop");
    EXPECT_EQ(read("a.jpg").width, 3);
}

TEST_F(Pictures, TrueColourTgaIsNoCursor) {
    // The header begins like a cursor file; at this size, Qt takes it for one.
    tool("convert -size 13x7 xc:'rgba(1,2,3,0.4)' -compress None -type TrueColorAlpha a.tga");
    EXPECT_EQ(read("a.tga").pixels, Pixels(13 * 7, 0x66010203));
}

TEST_F(Pictures, FramesOfAnAnimationAreListedAndComposed) {
    test::GifFrame first;
    first.width = 2;
    first.height = 1;
    first.indices = {0, 1};
    test::GifFrame second = first;
    second.width = 1;
    second.indices = {3};
    const std::string gif = write("a.gif", test::gif_file(2, 1, {first, second}));
    const std::vector<PictureSource> sources = list_pictures({gif});
    EXPECT_EQ(names_of(sources), (std::vector<std::string>{"a.gif[0]", "a.gif[1]"}));
    PictureReader reader;
    EXPECT_EQ(reader.read(sources.at(1)).pixels, (Pixels{0xFF670000, 0xFF650000}));
    EXPECT_EQ(reader.read(sources.at(0)).pixels, (Pixels{0xFF640000, 0xFF650000}));
    EXPECT_EQ(reader.read(sources.at(1)).pixels, (Pixels{0xFF670000, 0xFF650000}));
}

TEST_F(Pictures, EveryPictureOfAnIconIsListed) {
    tool("convert -size 2x2 xc:red \\( -size 4x4 xc:blue \\) a.ico");
    const std::vector<PictureSource> sources = list_pictures({path("a.ico")});
    ASSERT_EQ(sources.size(), 2U);
    PictureReader reader;
    for (int times = 0; times < 2; ++times) {
        EXPECT_EQ(reader.read(sources[0]).pixels, Pixels(4, 0xFFFF0000));
        EXPECT_EQ(reader.read(sources[1]).pixels, Pixels(16, 0xFF0000FF));
    }
}

TEST_F(Pictures, FramesAndPagesOfPluginFormatsAreReadInAnyOrder) {
    const Pixels colours{0xFFFF0000, 0xFF00FF00, 0xFF0000FF};
    for (const char* name : {"a.webp", "a.mng", "a.tiff"}) {
        tool(std::string("convert -size 3x2 xc:red xc:lime xc:blue -define webp:lossless=true ") + name);
        const std::vector<PictureSource> sources = list_pictures({path(name)});
        ASSERT_EQ(sources.size(), 3U) << name;
        PictureReader reader;
        for (const std::size_t frame : {0U, 1U, 2U, 1U, 0U, 2U}) {
            EXPECT_EQ(reader.read(sources[frame]).pixels, Pixels(6, colours[frame])) << name << ", " << frame;
        }
    }
}

TEST_F(Pictures, SamePictureIsReadTwice) {
    for (const char* name : {"a.png", "a.bmp", "a.gif", "a.tga", "a.pcx", "a.ppm", "a.jpg"}) {
        tool(std::string("convert -size 2x1 xc:red ") + name);
        PictureReader reader;
        const PictureSource source = reader.list(path(name)).at(0);
        EXPECT_EQ(reader.read(source).pixels, reader.read(source).pixels) << name;
    }
}

TEST_F(Pictures, FolderIsSortedNaturally) {
    tool("convert -size 1x1 xc:red f10.png; cp f10.png f2.PNG; cp f10.png F1.bmp");
    EXPECT_EQ(names_of(list_pictures({folder.path()})),
              (std::vector<std::string>{"F1.bmp", "f2.PNG", "f10.png"}));
}

TEST_F(Pictures, FolderWithoutOtherFilesAndHiddenOnes) {
    tool("convert -size 1x1 xc:red a.png; cp a.png .b.png; cp a.png c; cp a.png d.txt; mkdir e.png; mkdir f; "
         "cp a.png f/g.png");
    EXPECT_EQ(names_of(list_pictures({folder.path()})), (std::vector<std::string>{"a.png"}));
}

TEST_F(Pictures, ArgumentsKeepTheirOrder) {
    tool("convert -size 1x1 xc:red a.png; cp a.png b.png; mkdir c; cp a.png c/d.tga");
    EXPECT_EQ(names_of(list_pictures({path("b.png"), path("c"), path("a.png"), path("b.png")})),
              (std::vector<std::string>{"b.png", "c/d.tga", "a.png", "b.png"}));
}

TEST_F(Pictures, ErrorsNameTheFile) {
    EXPECT_EQ(error_of([&] { list_pictures({path("none.png")}); }),
              path("none.png") + ": No such file or directory");
    write("empty.png", {});
    EXPECT_EQ(error_of([&] { list_pictures({path("empty.png")}); }),
              path("empty.png") + ": the file is empty");
    write("text.png", {'t', 'e', 'x', 't'});
    EXPECT_EQ(error_of([&] { list_pictures({path("text.png")}); }),
              path("text.png") + ": no picture of a known format");
    std::filesystem::create_directory(path("folder"));
    EXPECT_EQ(error_of([&] { list_pictures({path("folder")}); }),
              path("folder") + ": the folder has no pictures");
}

TEST_F(Pictures, DamagedPictureIsAnError) {
    tool("convert -size 9x9 plasma: a.png; head -c 100 a.png > cut.png");
    EXPECT_EQ(error_of([&] { read("cut.png"); }), path("cut.png") + ": the picture is damaged");
    const std::string gif = write("cut.gif", {'G', 'I', 'F', '8', '9', 'a'});
    EXPECT_EQ(error_of([&] { list_pictures({gif}); }), gif + ": the picture is damaged");
}

TEST_F(Pictures, DamagedPngPrintsNothing) {
    tool("convert -size 9x9 plasma: a.png");
    const Bytes whole = test::read_file(path("a.png"));
    for (std::size_t at = 8; at < whole.size(); at += 3) {
        Bytes damaged = whole;
        damaged[at] ^= 0x55;
        write("damaged.png", damaged);
        testing::internal::CaptureStderr();
        error_of([&] { read("damaged.png"); });
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << at;
    }
}

TEST_F(Pictures, AtMost64MebipixelsAreRead) {
    tool("head -c 8388608 /dev/zero > zeros; (printf 'P4 8192 8192\\n'; cat zeros) > most.pbm; "
         "(printf 'P4 8192 8193\\n'; cat zeros; head -c 1024 zeros) > more.pbm");
    EXPECT_EQ(read("most.pbm").pixels.size(), std::size_t{1} << 26);
    EXPECT_EQ(error_of([&] { read("more.pbm"); }),
              path("more.pbm") + ": the picture has more than 67108864 pixels");
}

} // namespace
} // namespace varnoth::cli
