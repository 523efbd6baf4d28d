// Saving sprite files.
#include <filesystem>

#include "core/sprite/SpriteFileTest.h"

namespace varnoth::test {
namespace {

using hlspr::document;
using hlspr::load_sprite;
using hlspr::save_sprite;

TEST_F(SpriteFileTest, Sprite32By32WithTwoFramesIs2898Bytes) {
    hlspr::new_sprite(32, 32, 2, 1);
    document().SpriteHeader.FrameCount = 2;
    document().FrameStore = {indices(Bytes(1024, 1)), indices(Bytes(1024, 2))};
    document().FrameOrder = {0, 1};
    document().Palette.Colours[1] = {11, 12, 13};
    EXPECT_EQ(save_sprite(folder.file("a.spr")), True);
    EXPECT_TRUE(services.messages.empty());
    const Bytes bytes = read_file(folder.file("a.spr"));
    ASSERT_EQ(bytes.size(), 2898U);
    SpriteFile expected;
    expected.bounding_radius_bits = 0x41B504F3; // 16 times the square root of 2
    expected.width = 32;
    expected.height = 32;
    expected.palette[3] = 11;
    expected.palette[4] = 12;
    expected.palette[5] = 13;
    expected.add({32, 32, Bytes(1024, 1), 0, -16, 16});
    expected.add({32, 32, Bytes(1024, 2), 0, -16, 16});
    EXPECT_EQ(bytes, expected.bytes());
}

TEST_F(SpriteFileTest, SpriteWithoutFramesIsHeaderAndPalette) {
    hlspr::new_sprite(32, 32, 2, 1);
    EXPECT_EQ(save_sprite(folder.file("a.spr")), True);
    EXPECT_EQ(read_file(folder.file("a.spr")).size(), 810U) << "the slot of an empty store is no frame";
}

TEST_F(SpriteFileTest, LoadedHeaderIsSavedUnchanged) {
    SpriteFile file = three_frames();
    file.version = 77;
    file.sync_type = -9;
    file.sprite_type = 1000;
    file.bounding_radius_bits = 0x7FC12345; // not a number
    file.beam_length_bits = 0x80000000;     // minus zero
    for (FileFrame& frame : file.frames) {
        frame = {2, 1, frame.pixels, 3, 4, 5};
    }
    EXPECT_EQ(load(file), True);
    EXPECT_EQ(save_sprite(folder.file("b.spr")), True);
    EXPECT_EQ(read_file(folder.file("b.spr")), file.bytes());
}

TEST_F(SpriteFileTest, FramesAreSavedInDisplayOrder) {
    EXPECT_EQ(load(three_frames()), True);
    document().FrameOrder = {2, 0, 1};
    EXPECT_EQ(save_sprite(folder.file("b.spr")), True);
    SpriteFile expected = three_frames();
    expected.frames = {{2, 1, {5, 6}, 0, -3, 3}, {2, 1, {1, 2}, 0, -3, 3}, {2, 1, {3, 4}, 0, -3, 3}};
    EXPECT_EQ(read_file(folder.file("b.spr")), expected.bytes());
}

TEST_F(SpriteFileTest, SwappedFramesAreLoadedInTheNewOrder) {
    EXPECT_EQ(load(three_frames()), True);
    const PaletteRecord palette = document().Palette;
    const std::vector<ByteArray> store = document().FrameStore;
    document().FrameOrder = {1, 0, 2};
    EXPECT_EQ(save_sprite(folder.file("b.spr")), True);
    EXPECT_EQ(document().FrameOrder, (std::vector<std::int16_t>{1, 0, 2})) << "saving changes nothing";
    EXPECT_EQ(document().FrameStore, store) << "saving moves no frame";
    EXPECT_EQ(load_sprite(folder.file("b.spr")), True);
    EXPECT_EQ(document().Palette.Colours, palette.Colours);
    EXPECT_EQ(document().FrameOrder, (std::vector<std::int16_t>{0, 1, 2}));
    EXPECT_EQ(document().FrameStore, (std::vector<ByteArray>{store[1], store[0], store[2]}));
}

TEST_F(SpriteFileTest, FramesOfAnotherSizeThanTheHeaderAreSavedWhole) {
    SpriteFile file;
    file.width = 9;
    file.add({1, 2, {1, 2}});
    file.add({1, 2, {3, 4}});
    EXPECT_EQ(load(file), True);
    EXPECT_EQ(save_sprite(folder.file("b.spr")), True);
    EXPECT_EQ(read_file(folder.file("b.spr")), file.bytes());
}

TEST_F(SpriteFileTest, ExistingFileIsReplaced) {
    const std::string path = folder.write("a.spr", Bytes(5000, 9));
    hlspr::new_sprite(1, 1, 0, 0);
    EXPECT_EQ(save_sprite(path), True);
    EXPECT_EQ(read_file(path).size(), 810U);
}

TEST_F(SpriteFileTest, ReadOnlyTargetIsKeptAndShowsTheMessage) {
    put_old_sprite();
    const std::string path = folder.write("a.spr", Bytes{1, 2, 3});
    std::filesystem::permissions(path, std::filesystem::perms::owner_read);
    expect_not_saved(path);
    EXPECT_EQ(read_file(path), (Bytes{1, 2, 3}));
}

TEST_F(SpriteFileTest, FolderAsTargetIsKeptAndShowsTheMessage) {
    put_old_sprite();
    std::filesystem::create_directory(folder.file("sub"));
    expect_not_saved(folder.file("sub"));
    EXPECT_TRUE(std::filesystem::is_directory(folder.file("sub")));
}

TEST_F(SpriteFileTest, MissingFolderShowsTheMessage) {
    put_old_sprite();
    EXPECT_EQ(save_sprite(folder.file("missing/a.spr")), False);
    EXPECT_EQ(save_sprite(""), False);
    EXPECT_EQ(services.messages, (Texts{saving_failed, saving_failed}));
    EXPECT_FALSE(std::filesystem::exists(folder.file("missing")));
}

TEST_F(SpriteFileTest, FullDiskShowsTheMessage) {
    put_old_sprite();
    expect_not_saved("/dev/full");
}

TEST_F(SpriteFileTest, FailureAfterTheDeletionLeavesATruncatedFile) {
    put_old_sprite();
    document().SpriteHeader.FrameCount = 3;
    const std::string path = folder.write("a.spr", Bytes(5000, 9));
    expect_not_saved(path);
    EXPECT_EQ(read_file(path).size(), 810U + 20 + 2);
}

TEST_F(SpriteFileTest, InvalidOrderShowsTheMessage) {
    for (const std::int16_t number : {std::int16_t{1}, std::int16_t{-1}}) {
        put_old_sprite();
        document().FrameOrder = {number};
        expect_not_saved(folder.file("b.spr"));
    }
}

} // namespace
} // namespace varnoth::test
