// Reading a sprite file without installed services.
#include "core/sprite/sprite_file.h"

#include "core/sprite/SpriteFileTest.h"

namespace varnoth {
namespace {

class SpriteFileReader : public testing::Test {
  protected:
    std::optional<SpriteReadError> read(const test::SpriteFile& file) {
        return read_sprite(folder_.write("a.spr", file.bytes()), sprite_);
    }

    test::TemporaryFolder folder_;
    SpriteDocument sprite_;
};

TEST_F(SpriteFileReader, ReadsIntoTheGivenDocumentOnly) {
    test::reset_sprite();
    EXPECT_FALSE(read(test::three_frames()));
    EXPECT_EQ(sprite_.SpriteHeader.FrameCount, 3);
    EXPECT_EQ(test::indices_of(sprite_.FrameStore[1]), (std::vector<std::uint8_t>{3, 4}));
    EXPECT_EQ(hlspr::document().SpriteHeader.FrameCount, 0);
}

TEST_F(SpriteFileReader, RejectedFileHasAMessageAndNoFailure) {
    test::SpriteFile file = test::three_frames();
    file.frame_count = 0;
    const std::optional<SpriteReadError> error = read(file);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->message, "No Sprites In File");
    EXPECT_FALSE(error->failure);
}

TEST_F(SpriteFileReader, UnreadableFileHasTheFailure) {
    const std::optional<SpriteReadError> error = read_sprite(folder_.file("missing.spr"), sprite_);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->message, test::loading_failed);
    ASSERT_TRUE(error->failure);
    EXPECT_EQ(error->failure->failure(), Failure::FileNotFound);
}

} // namespace
} // namespace varnoth
