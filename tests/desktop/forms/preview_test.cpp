#include <vector>

#include <QTest>

#include "desktop/forms/EditorTest.h"

namespace varnoth::test {
namespace {

using ui_driver::click;

class PreviewTest : public EditorTest {
  protected:
    Form7& dialog() { return *coordinator_->form7(); }

    void open_preview(int frames) {
        open_sprite(frames);
        ui_driver::double_click(main().Picture1);
    }

    void click_times(Label& label, int times) {
        for (int i = 0; i < times; ++i) {
            click(label);
        }
    }

    void play_at_1_frame_a_second() {
        click_times(dialog().Label4, 14);
        click(dialog().Label2);
    }

    void expect_speed(const std::string& caption, int interval) {
        EXPECT_EQ(text(dialog().Label5.Caption()), caption);
        EXPECT_EQ(dialog().Timer1.interval(), interval);
    }

    Colour playing() { return dialog().Picture1.surface().Point(0, 0); }

    /// Plays at 60 frames per second and returns the frames of the next ticks.
    std::vector<int> play(std::size_t ticks) {
        std::vector<int> drawn;
        QObject::connect(&dialog().Timer1, &QTimer::timeout, [&] { drawn.push_back(red_of(playing())); });
        click_times(dialog().Label3, 45);
        click(dialog().Label2);
        EXPECT_TRUE(QTest::qWaitFor([&] { return drawn.size() >= ticks; }, 10'000));
        click(dialog().Label1);
        drawn.resize(ticks);
        return drawn;
    }
};

TEST_F(PreviewTest, OpensStoppedAt15FramesASecondWithTheFirstFrame) {
    open_preview(3);
    EXPECT_FALSE(main().isEnabled());
    EXPECT_EQ(playing(), colour_of_frame(0));
    EXPECT_FALSE(dialog().Timer1.isActive());
    expect_speed("15 fps", 66);
}

TEST_F(PreviewTest, SpriteWithoutFramesOpensNoPreview) {
    ui_driver::double_click(main().Picture1);
    EXPECT_EQ(coordinator_->form7(), nullptr);
    EXPECT_TRUE(main().isEnabled());
}

TEST_F(PreviewTest, PlayAndStopColourTheActiveOne) {
    open_preview(2);
    click(dialog().Label2);
    EXPECT_TRUE(dialog().Timer1.isActive());
    EXPECT_EQ(dialog().Label1.ForeColor(), 0);
    EXPECT_EQ(dialog().Label2.ForeColor(), 0x50B5C4);
    click(dialog().Label1);
    EXPECT_FALSE(dialog().Timer1.isActive());
    EXPECT_EQ(dialog().Label1.ForeColor(), 0x50B5C4);
    EXPECT_EQ(dialog().Label2.ForeColor(), 0);
}

TEST_F(PreviewTest, TimerDrawsFrameAfterFrameAndWraps) {
    open_preview(3);
    EXPECT_EQ(play(7), (std::vector<int>{0, 1, 2, 0, 1, 2, 0}));
}

TEST_F(PreviewTest, SlowerFrom1IsADivisionByZero) {
    open_preview(1);
    click_times(dialog().Label4, 14);
    expect_speed("1 fps", 1000);
    EXPECT_EQ(failures_, std::vector<std::string>());
    click(dialog().Label4);
    EXPECT_EQ(failures_, std::vector<std::string>{"DivisionByZero"});
    EXPECT_EQ(text(dialog().Label5.Caption()), "1 fps");
}

TEST_F(PreviewTest, NewSpeedAppliesAtOnceWhilePlaying) {
    open_preview(2);
    play_at_1_frame_a_second();
    EXPECT_EQ(dialog().Timer1.interval(), 1000);
    click(dialog().Label3);
    EXPECT_TRUE(dialog().Timer1.isActive());
    EXPECT_LE(dialog().Timer1.remainingTime(), 500);
}

TEST_F(PreviewTest, SecondPlayDoesNotDelayTheNextTick) {
    open_preview(2);
    play_at_1_frame_a_second();
    int ticks = 0;
    QObject::connect(&dialog().Timer1, &QTimer::timeout, [&] { ++ticks; });
    QTest::qSleep(50);
    click(dialog().Label2);
    EXPECT_TRUE(dialog().Timer1.isActive());
    // On a machine that stalled for a second, a tick may have started a new interval.
    EXPECT_TRUE(dialog().Timer1.remainingTime() <= 975 || ticks > 0);
}

TEST_F(PreviewTest, ReopenedPreviewStartsOver) {
    open_preview(2);
    click(dialog().Label3);
    click(dialog().Label2);
    ui_driver::click_at(dialog().elpanel1, {281 - 26 + 9, 17});
    EXPECT_EQ(coordinator_->form7(), nullptr);
    EXPECT_TRUE(main().isEnabled());
    ui_driver::double_click(main().Picture1);
    EXPECT_EQ(text(dialog().Label5.Caption()), "15 fps");
    EXPECT_FALSE(dialog().Timer1.isActive());
}

} // namespace
} // namespace varnoth::test
