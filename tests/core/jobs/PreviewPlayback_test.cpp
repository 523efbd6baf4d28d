#include "core/jobs/PreviewPlayback.h"

#include <vector>

#include <gtest/gtest.h>

#include "core/sprite/hlspr.h"
#include "support/expect_failure.h"
#include "support/pictures.h"
#include "support/sprites.h"

namespace varnoth::test {
namespace {

using hlspr::document;

class PreviewPlaybackTest : public testing::Test {
  protected:
    PreviewPlaybackTest() { reset_sprite(); }

    ~PreviewPlaybackTest() override { reset_sprite(); }

    // Stored frame n is one pixel of red n + 1.
    static void put_frames(const std::vector<std::int16_t>& order) {
        hlspr::new_sprite(1, 1, 0, 0);
        document().SpriteHeader.FrameCount = static_cast<std::int32_t>(order.size());
        document().FrameOrder = order;
        document().FrameStore.clear();
        for (std::size_t i = 0; i < order.size(); ++i) {
            document().FrameStore.push_back(indices({static_cast<std::uint8_t>(i)}));
            document().Palette.Colours[i].red = static_cast<std::uint8_t>(i + 1);
        }
    }

    // The stored frames that this number of ticks draws.
    static std::vector<int> shown(PreviewPlayback& playback, int ticks, std::int32_t lines) {
        std::vector<int> result;
        TestSurface picture(1, 1);
        for (int i = 0; i < ticks; ++i) {
            playback.tick(picture, lines);
            result.push_back(red_of(picture.Point(0, 0)) - 1);
        }
        return result;
    }

    PreviewPlayback walk;
};

TEST_F(PreviewPlaybackTest, StartsAtFrame0With15FramesPerSecond) {
    EXPECT_EQ(walk.CurrentFrame, 0);
    EXPECT_EQ(walk.FramesPerSecond, 15);
    EXPECT_EQ(walk.interval(), 66);
}

TEST_F(PreviewPlaybackTest, IntervalIsRoundedDownToMilliseconds) {
    walk.FramesPerSecond = 1;
    EXPECT_EQ(walk.interval(), 1000);
    walk.FramesPerSecond = 7;
    EXPECT_EQ(walk.interval(), 142);
    walk.FramesPerSecond = 60;
    EXPECT_EQ(walk.interval(), 16);
}

TEST_F(PreviewPlaybackTest, FasterDoesNothingAt60) {
    walk.FramesPerSecond = 59;
    EXPECT_TRUE(walk.faster());
    EXPECT_EQ(walk.FramesPerSecond, 60);
    EXPECT_FALSE(walk.faster());
    EXPECT_EQ(walk.FramesPerSecond, 60);
}

TEST_F(PreviewPlaybackTest, SlowerGoesFrom1To0WhereTheIntervalFails) {
    walk.FramesPerSecond = 2;
    EXPECT_TRUE(walk.slower());
    EXPECT_EQ(walk.interval(), 1000);
    EXPECT_TRUE(walk.slower());
    EXPECT_EQ(walk.FramesPerSecond, 0);
    EXPECT_FAILURE(walk.interval(), DivisionByZero);
    EXPECT_FALSE(walk.slower());
    EXPECT_EQ(walk.FramesPerSecond, 0);
}

TEST_F(PreviewPlaybackTest, UnchangedOrderShowsEveryFrameAndLoops) {
    put_frames({0, 1, 2});
    EXPECT_EQ(shown(walk, 7, 3), (std::vector<int>{0, 1, 2, 0, 1, 2, 0}));
    EXPECT_EQ(walk.CurrentFrame, 1);
}

TEST_F(PreviewPlaybackTest, SingleFrameIsRedrawnAtEachTick) {
    put_frames({0});
    EXPECT_EQ(shown(walk, 3, 1), (std::vector<int>{0, 0, 0}));
    EXPECT_EQ(walk.CurrentFrame, 0);
}

TEST_F(PreviewPlaybackTest, ChangedOrderMayOmitFrames) {
    put_frames({1, 0, 2});
    EXPECT_EQ(shown(walk, 6, 3), (std::vector<int>{1, 2, 1, 2, 1, 2})) << "stored frame 0 never shows";
    put_frames({2, 1, 0});
    PreviewPlayback other;
    EXPECT_EQ(shown(other, 3, 3), (std::vector<int>{2, 2, 2}));
}

TEST_F(PreviewPlaybackTest, LineCountNotFrameCountEndsTheLoop) {
    put_frames({0, 1, 2});
    EXPECT_EQ(shown(walk, 4, 2), (std::vector<int>{0, 1, 0, 1}));
    PreviewPlayback none;
    EXPECT_EQ(shown(none, 2, 0), (std::vector<int>{0, 0}));
    PreviewPlayback beyond;
    TestSurface picture(1, 1);
    EXPECT_EQ(shown(beyond, 3, 4), (std::vector<int>{0, 1, 2}));
    EXPECT_FAILURE(beyond.tick(picture, 4), SubscriptOutOfRange);
    EXPECT_EQ(beyond.CurrentFrame, 3);
}

TEST_F(PreviewPlaybackTest, PositionAfterTheHighestFrameNumberOverflows) {
    put_frames({0});
    document().FrameOrder = {32767};
    document().FrameStore.resize(32768);
    document().FrameStore[32767] = indices({0});
    TestSurface picture(1, 1);
    EXPECT_FAILURE(walk.tick(picture, 1), Overflow);
    EXPECT_EQ(walk.CurrentFrame, 32767);
}

} // namespace
} // namespace varnoth::test
