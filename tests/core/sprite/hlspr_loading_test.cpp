// Loading sprite files.
#include <array>
#include <fstream>
#include <limits>
#include <numeric>

#ifdef __linux__
#include <unistd.h>
#endif

#include "core/sprite/SpriteFileTest.h"

namespace varnoth::test {
namespace {

using hlspr::document;
using hlspr::load_sprite;
using hlspr::save_sprite;

SpriteFile one_frame(FileFrame frame) {
    SpriteFile file;
    file.add(std::move(frame));
    return file;
}

TEST_F(SpriteFileTest, EveryFieldIsReadFromItsOffset) {
    SpriteFile file = one_frame({2, 3, {1, 2, 3, 4, 5, 255}, 0x01020304, -5, 6});
    file.version = 0x11121314;
    file.sprite_type = 0x21222324;
    file.render_mode = -2;
    file.bounding_radius_bits = 0x3FC00000; // 1.5
    file.width = 64;
    file.height = -3;
    file.beam_length_bits = 0xC0200000; // -2.5
    file.sync_type = 0x31323334;
    std::iota(file.palette.begin(), file.palette.end(), std::uint8_t{7});
    ASSERT_EQ(file.bytes().size(), 810U + 20 + 6);
    EXPECT_EQ(load(file), True);
    EXPECT_TRUE(services.messages.empty());
    const SpriteHeaderRecord& header = document().SpriteHeader;
    EXPECT_EQ(header.Version, 0x11121314);
    EXPECT_EQ(header.SpriteType, 0x21222324);
    EXPECT_EQ(header.RenderMode, -2);
    EXPECT_EQ(header.BoundingRadius, 1.5F);
    EXPECT_EQ(header.Width, 64);
    EXPECT_EQ(header.Height, -3);
    EXPECT_EQ(header.FrameCount, 1);
    EXPECT_EQ(header.BeamLength, -2.5F);
    EXPECT_EQ(header.SyncType, 0x31323334);
    EXPECT_EQ(document().Palette.ColourCount, 256);
    EXPECT_EQ(document().Palette.Colours[0], (PaletteColour{7, 8, 9}));
    EXPECT_EQ(document().Palette.Colours[255], (PaletteColour{4, 5, 6}));
    EXPECT_EQ(document().FrameHeader.FrameType, 0x01020304) << "a group frame is read as a single one";
    EXPECT_EQ(document().FrameHeader.OriginX, -5);
    EXPECT_EQ(document().FrameHeader.OriginY, 6);
    EXPECT_EQ(document().FrameHeader.FrameWidth, 2);
    EXPECT_EQ(document().FrameHeader.FrameHeight, 3);
    EXPECT_EQ(indices_of(document().FrameStore[0]), (Bytes{1, 2, 3, 4, 5, 255}));
}

TEST_F(SpriteFileTest, LastFrameHeaderIsKeptAndOrderIsTheIdentity) {
    EXPECT_EQ(load(three_frames()), True);
    EXPECT_EQ(document().FrameHeader.OriginX, -3);
    EXPECT_EQ(document().FrameOrder, (std::vector<std::int16_t>{0, 1, 2}));
    ASSERT_EQ(document().FrameStore.size(), 3U);
    EXPECT_EQ(indices_of(document().FrameStore[0]), (Bytes{1, 2}));
    EXPECT_EQ(indices_of(document().FrameStore[2]), (Bytes{5, 6}));
}

TEST_F(SpriteFileTest, LowerCaseMagicIsRejectedAndTheHeaderIsKept) {
    put_old_sprite();
    SpriteFile file = three_frames();
    file.ident = "idsp";
    file.width = 321;
    const std::string path = folder.write("x.spr", file.bytes());
    EXPECT_EQ(load_sprite(path), False);
    EXPECT_EQ(services.messages, (Texts{"Not A Half-Life Sprite " + path}));
    EXPECT_EQ(document().SpriteHeader.Ident, (std::array<char, 4>{'i', 'd', 's', 'p'}));
    EXPECT_EQ(document().SpriteHeader.Width, 321);
    EXPECT_EQ(document().SpriteHeader.FrameCount, 3);
    EXPECT_EQ(document().Palette.Colours[1], (PaletteColour{0, 0, 0})) << "the palette was not read";
    EXPECT_EQ(document().Palette.Colours[5], (PaletteColour{9, 9, 9}));
    expect_old_frames();
}

TEST_F(SpriteFileTest, FrameCountOf0IsRejectedBeforeThePaletteIsRead) {
    for (const std::int32_t count : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
        put_old_sprite();
        SpriteFile file = three_frames();
        file.frame_count = count;
        file.colour_count = 255;
        expect_refused(file, "No Sprites In File");
        EXPECT_EQ(document().SpriteHeader.FrameCount, count);
        EXPECT_EQ(document().Palette.ColourCount, 256);
        EXPECT_EQ(document().Palette.Colours[1], (PaletteColour{0, 0, 0}));
        expect_old_frames();
    }
}

TEST_F(SpriteFileTest, MagicIsCheckedBeforeTheFrameCount) {
    SpriteFile file;
    file.ident = "IDST";
    const std::string path = folder.write("x.spr", file.bytes());
    EXPECT_EQ(load_sprite(path), False);
    EXPECT_EQ(services.messages, (Texts{"Not A Half-Life Sprite " + path}));
}

TEST_F(SpriteFileTest, ColourCountOf255IsRejectedAfterThePalette) {
    for (const std::uint16_t count : {std::uint16_t{255}, std::uint16_t{0}, std::uint16_t{0xFF00}}) {
        put_old_sprite();
        SpriteFile file = three_frames();
        file.colour_count = count;
        expect_refused(file, "Not 8bpp sprite");
        EXPECT_EQ(document().Palette.ColourCount, static_cast<std::int16_t>(count));
        EXPECT_EQ(document().Palette.Colours[1], (PaletteColour{10, 20, 30}));
        expect_old_frames();
    }
}

TEST_F(SpriteFileTest, FramesSmallerThanTheHeaderStatesLoad) {
    SpriteFile file;
    file.width = 32;
    file.height = 32;
    file.add({16, 16, Bytes(256, 3)});
    file.add({16, 16, Bytes(256, 4)});
    EXPECT_EQ(load(file), True);
    EXPECT_EQ(document().SpriteHeader.Width, 32);
    EXPECT_EQ(document().FrameStore[0].size(), 256U);
    EXPECT_EQ(document().FrameStore[1].size(), 256U);
}

TEST_F(SpriteFileTest, FramesMayDifferInSize) {
    SpriteFile file;
    file.add({1, 1, {1}});
    file.add({3, 2, {1, 2, 3, 4, 5, 6}});
    Bytes bytes = file.bytes();
    bytes.insert(bytes.end(), 30, 0xAA);
    EXPECT_EQ(load(bytes), True);
    EXPECT_EQ(document().FrameStore[0].size(), 1U);
    EXPECT_EQ(document().FrameStore[1].size(), 6U);
}

TEST_F(SpriteFileTest, MissingFileShowsTheMessageAndKeepsTheDocument) {
    put_old_sprite();
    EXPECT_EQ(load_sprite(folder.file("none.spr")), False);
    EXPECT_EQ(load_sprite(folder.path()), False);
    EXPECT_EQ(load_sprite(""), False);
    EXPECT_EQ(services.messages, (Texts{loading_failed, loading_failed, loading_failed}));
    EXPECT_EQ(document().SpriteHeader.Width, 2);
    expect_old_frames();
}

TEST_F(SpriteFileTest, EmptyFileLeavesAHeaderOfZeros) {
    put_old_sprite();
    const std::string path = folder.write("x.spr", Bytes{});
    EXPECT_EQ(load_sprite(path), False);
    EXPECT_EQ(services.messages, (Texts{"Not A Half-Life Sprite " + path}));
    EXPECT_EQ(document().SpriteHeader.Width, 0);
    EXPECT_EQ(document().SpriteHeader.Ident, (std::array<char, 4>{}));
    expect_old_frames();
}

TEST_F(SpriteFileTest, TruncatedHeaderIsZeroInTheMissingBytes) {
    put_old_sprite();
    SpriteFile file = three_frames();
    file.width = 0x01020304;
    Bytes bytes = file.bytes();
    bytes.resize(22);
    expect_refused(bytes, "No Sprites In File");
    EXPECT_EQ(document().SpriteHeader.Width, 0x0304);
    EXPECT_EQ(document().SpriteHeader.Height, 0);
    EXPECT_EQ(document().SpriteHeader.SyncType, 0);
}

TEST_F(SpriteFileTest, TruncatedPaletteIsZeroInTheMissingBytes) {
    put_old_sprite();
    SpriteFile file = three_frames();
    file.palette.assign(768, 0x77);
    Bytes bytes = file.bytes();
    bytes.resize(42 + 4);
    expect_refused(bytes);
    EXPECT_EQ(document().Palette.Colours[1], (PaletteColour{0x77, 0, 0}));
    EXPECT_EQ(document().Palette.Colours[5], (PaletteColour{0, 0, 0}));
    bytes.resize(41);
    expect_refused(bytes, "Not 8bpp sprite");
    EXPECT_EQ(document().Palette.ColourCount, 0);
}

TEST_F(SpriteFileTest, TruncatedFrameIsZeroFilledAndTheLoadSucceeds) {
    Bytes bytes = one_frame({4, 2, {1, 2, 3, 4, 5, 6, 7, 8}}).bytes();
    bytes.resize(bytes.size() - 5);
    EXPECT_EQ(load(bytes), True);
    EXPECT_TRUE(services.messages.empty());
    EXPECT_EQ(indices_of(document().FrameStore[0]), (Bytes{1, 2, 3, 0, 0, 0, 0, 0}));
    bytes.resize(830);
    EXPECT_EQ(load(bytes), True);
    EXPECT_EQ(indices_of(document().FrameStore[0]), Bytes(8));
}

TEST_F(SpriteFileTest, MissingFrameHeaderFailsWithTheFramesReadSoFar) {
    put_old_sprite();
    Bytes bytes = three_frames().bytes();
    for (const std::size_t missing : {22U, 21U, 3U}) {
        services.messages.clear();
        Bytes cut(bytes.begin(), bytes.end() - static_cast<std::ptrdiff_t>(missing));
        expect_refused(cut);
        EXPECT_EQ(document().SpriteHeader.FrameCount, 3) << "the count stays as in the file";
        ASSERT_EQ(document().FrameStore.size(), 3U);
        EXPECT_EQ(indices_of(document().FrameStore[1]), (Bytes{3, 4}));
        EXPECT_EQ(document().FrameStore[2].size(), 0U);
        EXPECT_EQ(document().FrameOrder, (std::vector<std::int16_t>{0, 1, 0}));
        EXPECT_EQ(document().FrameHeader.OriginX, -2);
    }
}

TEST_F(SpriteFileTest, InvalidFrameSizeShowsTheMessage) {
    constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();

    struct Size {
        std::int32_t width;
        std::int32_t height;
    };

    for (const Size& size : {Size{0, 1}, Size{1, 0}, Size{0, 0}, Size{-1, 1}, Size{4, -4}, Size{65536, 32768},
                             Size{65536, 65536}, Size{46341, 46341}, Size{lowest, -1}, Size{lowest, 1},
                             Size{lowest, lowest}, Size{0x7FFFFFFF, 2}}) {
        put_old_sprite();
        expect_refused(one_frame({size.width, size.height, {1}, 0, 12, 0}));
        EXPECT_EQ(document().FrameHeader.OriginX, 12) << "the bad frame's header was taken in";
        EXPECT_EQ(document().FrameStore[0].size(), 0U);
    }
}

TEST_F(SpriteFileTest, TwoNegativeFrameSidesLoad) {
    EXPECT_EQ(load(one_frame({-2, -3, {1, 2, 3, 4, 5, 6}})), True);
    EXPECT_EQ(indices_of(document().FrameStore[0]), (Bytes{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(document().FrameHeader.FrameWidth, -2);
}

SpriteFile tiny_frames(std::size_t count) {
    SpriteFile file;
    for (std::size_t i = 0; i < count; ++i) {
        file.add({1, 1, {static_cast<std::uint8_t>(i % 251)}});
    }
    return file;
}

TEST_F(SpriteFileTest, SmallSpriteFreesTheMemoryOfALargeOne) {
    ASSERT_EQ(load(tiny_frames(32767)), True);
    ASSERT_EQ(load(tiny_frames(2)), True);
    EXPECT_LE(document().FrameStore.capacity(), 4U);
    EXPECT_LE(document().FrameOrder.capacity(), 4U);
    ASSERT_EQ(load(tiny_frames(32767)), True);
    hlspr::clear_frames();
    EXPECT_LE(document().FrameStore.capacity(), 4U);
    EXPECT_LE(document().FrameOrder.capacity(), 4U);
}

// The number of the last frame, 32,767, is the highest of 16 bits.
TEST_F(SpriteFileTest, Sprite32768FramesLoadsAndSaves) {
    const SpriteFile file = tiny_frames(32768);
    EXPECT_EQ(load(file), True);
    EXPECT_TRUE(services.messages.empty());
    EXPECT_EQ(document().SpriteHeader.FrameCount, 32768);
    ASSERT_EQ(document().FrameStore.size(), 32768U);
    EXPECT_EQ(document().FrameOrder.back(), 32767);
    EXPECT_EQ(document().FrameStore.back()[0], 32767 % 251);
    EXPECT_EQ(save_sprite(folder.file("b.spr")), True);
    EXPECT_EQ(read_file(folder.file("b.spr")), file.bytes());
}

TEST_F(SpriteFileTest, Sprite32769FramesShowsTheMessage) {
    expect_refused(tiny_frames(32769));
    EXPECT_EQ(document().SpriteHeader.FrameCount, 32769);
    EXPECT_EQ(document().FrameOrder.back(), 32767);
    expect_not_saved(folder.file("b.spr"));
}

TEST_F(SpriteFileTest, FalseFrameCountOnASmallFileFailsAtOnce) {
    SpriteFile file = three_frames();
    file.frame_count = std::numeric_limits<std::int32_t>::max();
    expect_refused(file);
    EXPECT_EQ(indices_of(document().FrameStore[2]), (Bytes{5, 6}));
}

#ifdef __linux__
std::int64_t resident_bytes() {
    std::ifstream statm("/proc/self/statm");
    std::int64_t size = 0;
    std::int64_t resident = 0;
    statm >> size >> resident;
    return resident * sysconf(_SC_PAGESIZE);
}

TEST_F(SpriteFileTest, HugeFrameOfASmallFileUsesLittleMemory) {
    const std::int64_t before = resident_bytes();
    EXPECT_EQ(load(one_frame({40000, 40000, {1, 2, 3}})), True);
    const std::int64_t grown = resident_bytes() - before;
    const ByteArray& frame = document().FrameStore[0];
    ASSERT_EQ(frame.size(), 1600000000U);
    EXPECT_EQ(frame[0], 1);
    EXPECT_EQ(frame[2], 3);
    EXPECT_EQ(frame[3], 0);
    EXPECT_EQ(frame[1599999999], 0);
    // Allows for a huge page or two and the file's buffers; the frame is 100 times as large.
    EXPECT_LT(grown, 16 << 20);
}
#endif

} // namespace
} // namespace varnoth::test
