#include "walkthrough/ScriptedMainWindow.h"

#include <gtest/gtest.h>

#include "sprite/hlspr.h"
#include "support/RecordedServices.h"
#include "support/TemporaryFolder.h"
#include "support/expect_failure.h"

namespace varnoth {
namespace {

using walkthrough::ScriptedMainWindow;

class ScriptedMainWindowTest : public testing::Test {
  protected:
    ScriptedMainWindowTest() {
        SpriteDocument& sprite = hlspr::document();
        hlspr::new_sprite(2, 1, 2, 1);
        sprite.SpriteHeader.FrameCount = 3;
        sprite.FrameStore.clear();
        for (std::uint8_t frame = 0; frame < 3; ++frame) {
            sprite.FrameStore.emplace_back(std::size_t{2});
            sprite.FrameStore.back()[0] = frame;
        }
        sprite.FrameOrder = {0, 1, 2};
        EXPECT_EQ(hlspr::save_sprite(path()), True);
        EXPECT_TRUE(window_.open(path()));
    }

    ~ScriptedMainWindowTest() override { hlspr::new_sprite(0, 0, 0, 0); }

    std::string path() const { return folder_.file("three.spr"); }

    test::RecordedServices services_;
    test::TemporaryFolder folder_;
    ScriptedMainWindow window_{[](std::string_view, std::string_view) {}};
};

TEST_F(ScriptedMainWindowTest, AfterSwapsTheOrderHoldsTheSameNumbersAndTheFramesAreByteForByteUnchanged) {
    const SpriteDocument& sprite = hlspr::document();
    const std::vector<ByteArray> before = sprite.FrameStore;
    window_.move(2, true);
    window_.move(0, false);
    EXPECT_EQ(sprite.FrameOrder, (std::vector<std::int16_t>{2, 0, 1}));
    EXPECT_EQ(sprite.FrameStore, before);
    EXPECT_TRUE(hlspr::SpriteDirty);
}

TEST_F(ScriptedMainWindowTest, AnArrowThatLeadsOutOfTheListDoesNothing) {
    window_.move(0, true);
    window_.move(2, false);
    EXPECT_EQ(hlspr::document().FrameOrder, (std::vector<std::int16_t>{0, 1, 2}));
    EXPECT_FALSE(hlspr::SpriteDirty);
    EXPECT_TRUE(services_.messages.empty());
}

TEST_F(ScriptedMainWindowTest, ALineWithoutAFrameIsASubscriptFailure) {
    window_.add_frame_line("Frame 3");
    EXPECT_FAILURE(window_.move(3, true), SubscriptOutOfRange);
}

} // namespace
} // namespace varnoth
