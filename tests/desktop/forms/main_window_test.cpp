#include <filesystem>

#include <sys/stat.h>

#include "desktop/forms/EditorTest.h"
#include "desktop/theme/theme.h"

namespace varnoth::test {
namespace {

using ui_driver::click;
using ui_driver::click_line;

constexpr const char* empty_message = "Sprite Cant Be Empty. Put Some Pictures In It.";

class MainWindowTest : public EditorTest {
  protected:
    /// Opens New Sprite and clicks Ok with the defaults.
    void make_new_sprite() {
        click(main().elboton2);
        click(coordinator_->form2()->elboton2);
    }

    /// Creates an unsaved sprite with one frame.
    void make_unnamed_sprite_with_a_frame() {
        open_sprite(1);
        hlspr::UnnamedSprite = true;
        main().eltexto1.SetText("Untitled");
        click(main().elboton7);
    }
};

TEST_F(MainWindowTest, ConstructionResetsTheGlobalVariables) {
    EXPECT_FALSE(hlspr::UnnamedSprite);
    EXPECT_FALSE(hlspr::SpriteDirty);
    EXPECT_EQ(hlspr::ExtractFolder, "");
}

TEST_F(MainWindowTest, OpenShowsTheSpriteAndDrawsItsFirstFrame) {
    const std::string path = write_sprite("torch.spr", 3, 6, 5);
    open(path);
    EXPECT_EQ(enabled_buttons(), opened);
    EXPECT_EQ(text(main().ellabel8.Caption()), "torch");
    EXPECT_EQ(text(main().ellabel7.Caption()), "6 x 5");
    EXPECT_EQ(text(main().ellabel6.Caption()), "-3, 2");
    EXPECT_EQ(text(main().ellabel9.Caption()), "VP_PARALLEL");
    EXPECT_EQ(text(main().ellabel10.Caption()), "ADDITIVE");
    EXPECT_EQ(text(main().eltexto1.Text()), path);
    EXPECT_EQ(lines(), (std::vector<std::string>{"Frame 0", "Frame 1", "Frame 2"}));
    EXPECT_TRUE(main().List1.isEnabled());
    EXPECT_EQ(main().List1.ListIndex(), 0);
    EXPECT_TRUE(main().List1.Selected(0));
    EXPECT_EQ(main().List1.SelCount(), 1);
    EXPECT_EQ(main().Picture1.size(), QSize(6, 5));
    EXPECT_EQ(shown(), colour_of_frame(0));
}

TEST_F(MainWindowTest, NameLosesItsLastFourCharacters) {
    open(write_sprite("abcd.spr", 1));
    EXPECT_EQ(text(main().ellabel8.Caption()), "abcd");
    open(write_sprite("flame.sprite", 1)); // the last four characters, wherever the dot is
    EXPECT_EQ(text(main().ellabel8.Caption()), "flame.sp");
    open(write_sprite(".spr", 1));
    EXPECT_EQ(text(main().ellabel8.Caption()), "");
    EXPECT_EQ(failures_, std::vector<std::string>());
    open(write_sprite("abc", 1));
    EXPECT_EQ(failures_, std::vector<std::string>{"InvalidProcedureCall"});
}

TEST_F(MainWindowTest, InvalidFileLeavesTheWindowUnchanged) {
    make_unnamed_sprite_with_a_frame();
    services_.answer = false;
    open(folder_.write("broken.spr", std::vector<std::uint8_t>{1, 2, 3}));
    EXPECT_EQ(services_.messages.size(), 1U);
    EXPECT_EQ(lines().size(), 1U);
    EXPECT_EQ(text(main().eltexto1.Text()), "Untitled");
    EXPECT_TRUE(hlspr::UnnamedSprite);
    EXPECT_TRUE(hlspr::SpriteDirty);
}

TEST_F(MainWindowTest, OpenAndSaveAskTheChooserForSpriteFiles) {
    open("");
    make_unnamed_sprite_with_a_frame();
    click(main().elboton3);
    EXPECT_EQ(services_.filters, std::vector<std::string>(3, "HL Spr File(*.spr)|*.spr"));
}

TEST_F(MainWindowTest, CancelInTheChooserChangesNothing) {
    open_sprite(2);
    click(main().elboton7);
    hlspr::UnnamedSprite = true;
    services_.answer = false;
    open("");
    EXPECT_EQ(services_.questions.size(), 1U);
    EXPECT_TRUE(hlspr::SpriteDirty);
    EXPECT_TRUE(hlspr::UnnamedSprite);
    EXPECT_EQ(enabled_buttons(), changed);
    EXPECT_EQ(lines().size(), 2U);
    EXPECT_EQ(services_.messages, std::vector<std::string>());
}

TEST_F(MainWindowTest, OpenAsksAboutChangesByTheTrimmedPath) {
    open_sprite(1);
    click(main().elboton7);
    main().eltexto1.SetText("  my torch ");
    services_.answer = false;
    open("");
    EXPECT_EQ(services_.questions, std::vector<std::string>{"¿ Do you want to save changes in my torch ?"});
}

TEST_F(MainWindowTest, EmptySpriteIsNotSavedBeforeOpen) {
    make_new_sprite();
    hlspr::SpriteDirty = true;
    open(write_sprite("next.spr", 2));
    EXPECT_EQ(services_.messages, std::vector<std::string>{empty_message});
    EXPECT_EQ(lines().size(), 2U);
    EXPECT_FALSE(hlspr::SpriteDirty);
}

TEST_F(MainWindowTest, OpenSavesTheChangesOnlyIfAnsweredYes) {
    const std::string first = write_sprite("first.spr", 2);
    const std::string second = write_sprite("second.spr", 1);
    for (const bool answer : {false, true}) {
        services_.answer = answer;
        open(first);
        click(main().Label2); // moves frame 0 down
        open(second);
        EXPECT_EQ(lines().size(), 1U);
        open(first);
        EXPECT_EQ(shown(), colour_of_frame(answer ? 1 : 0));
    }
}

TEST_F(MainWindowTest, OpenDoesNotChangeTheSaveButton) {
    open_sprite(1);
    EXPECT_FALSE(main().elboton3.Enabled());
    click(main().elboton7);
    services_.answer = false;
    open_sprite(1);
    EXPECT_TRUE(main().elboton3.Enabled());
}

TEST_F(MainWindowTest, SaveOfANamedSpriteWritesThePathInTheBox) {
    open_sprite(1);
    click(main().elboton7);
    ui_driver::type_into(main().eltexto1, QString::fromStdString(folder_.file("other.spr")));
    click(main().elboton3);
    EXPECT_EQ(services_.messages, std::vector<std::string>());
    EXPECT_FALSE(hlspr::SpriteDirty);
    EXPECT_TRUE(main().elboton3.Enabled());
    EXPECT_EQ(read_file(folder_.file("other.spr")), read_file(folder_.file("sprite.spr")));
}

TEST_F(MainWindowTest, SaveOfANamedSpriteClearsDirtyEvenWhenItFails) {
    open_sprite(1);
    click(main().elboton7);
    main().eltexto1.SetText(QString::fromStdString(folder_.file("none/other.spr")));
    click(main().elboton3);
    EXPECT_EQ(services_.messages, std::vector<std::string>{"Unknown Error Saving Sprite."});
    EXPECT_FALSE(hlspr::SpriteDirty);
}

TEST_F(MainWindowTest, SaveOfAnUnnamedSpriteAsksForAFile) {
    make_unnamed_sprite_with_a_frame();
    services_.next_save = folder_.file("chosen.spr");
    click(main().elboton3);
    EXPECT_EQ(services_.messages, std::vector<std::string>{"Sprite Saved Successfully !"});
    EXPECT_TRUE(file_exists(folder_.file("chosen.spr")));
    EXPECT_FALSE(hlspr::UnnamedSprite);
    EXPECT_FALSE(hlspr::SpriteDirty);
    EXPECT_EQ(text(main().eltexto1.Text()), "Untitled");
    EXPECT_EQ(text(main().ellabel8.Caption()), "sprite");
    EXPECT_TRUE(main().elboton3.Enabled());
}

TEST_F(MainWindowTest, SecondSaveWritesToTheCurrentFolder) {
    make_unnamed_sprite_with_a_frame();
    services_.next_save = folder_.file("chosen.spr");
    click(main().elboton3);
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder_.path());
    click(main().elboton3);
    std::filesystem::current_path(before);
    EXPECT_TRUE(file_exists(folder_.file("Untitled")));
    EXPECT_EQ(services_.messages.size(), 1U);
}

TEST_F(MainWindowTest, CancelledOrFailedSaveStaysUnnamedAndDirty) {
    make_unnamed_sprite_with_a_frame();
    services_.next_save = "";
    click(main().elboton3);
    EXPECT_EQ(services_.messages, std::vector<std::string>());
    services_.next_save = folder_.file("none/chosen.spr");
    click(main().elboton3);
    EXPECT_EQ(services_.messages, std::vector<std::string>{"Unknown Error Saving Sprite."});
    EXPECT_TRUE(hlspr::UnnamedSprite);
    EXPECT_TRUE(hlspr::SpriteDirty);
}

TEST_F(MainWindowTest, ClearOnACleanSpriteOnlyEnablesSave) {
    open_sprite(2);
    EXPECT_FALSE(hlspr::SpriteDirty);
    click(main().elboton7);
    EXPECT_EQ(enabled_buttons(), changed);
    EXPECT_TRUE(hlspr::SpriteDirty);
    EXPECT_EQ(lines().size(), 2U);
    EXPECT_EQ(hlspr::document().SpriteHeader.FrameCount, 2);
}

TEST_F(MainWindowTest, RemoveDoesNothing) {
    open_sprite(2);
    click(main().elboton5);
    EXPECT_EQ(enabled_buttons(), opened);
    EXPECT_FALSE(hlspr::SpriteDirty);
    EXPECT_EQ(lines().size(), 2U);
    EXPECT_EQ(services_.messages, std::vector<std::string>());
}

TEST_F(MainWindowTest, UpMovesAFrameAndKeepsTheLines) {
    open_sprite(3);
    click_line(main().List1, 2);
    click(main().Label1);
    EXPECT_EQ(lines(), (std::vector<std::string>{"Frame 0", "Frame 1", "Frame 2"}));
    EXPECT_EQ(main().List1.ListIndex(), 1);
    EXPECT_TRUE(main().List1.Selected(1));
    EXPECT_EQ(main().List1.SelCount(), 1);
    EXPECT_EQ(shown(), colour_of_frame(2));
    EXPECT_EQ(enabled_buttons(), changed);
    EXPECT_TRUE(hlspr::SpriteDirty);
    click_line(main().List1, 2);
    EXPECT_EQ(shown(), colour_of_frame(1));
}

TEST_F(MainWindowTest, DownMovesAFrameTowardTheEndAndStopsThere) {
    open_sprite(3);
    for (int i = 0; i < 4; ++i) {
        click(main().Label2);
    }
    EXPECT_EQ(hlspr::document().FrameOrder, (std::vector<std::int16_t>{1, 2, 0}));
    EXPECT_EQ(main().List1.ListIndex(), 2);
    EXPECT_TRUE(main().List1.Selected(2));
    EXPECT_EQ(main().List1.SelCount(), 1);
    EXPECT_EQ(shown(), colour_of_frame(0));
    EXPECT_EQ(enabled_buttons(), changed);
    EXPECT_TRUE(hlspr::SpriteDirty);
    EXPECT_EQ(services_.messages, std::vector<std::string>());
}

TEST_F(MainWindowTest, BothArrowsAskForOneLineUnlessOneIsSelected) {
    open_sprite(3);
    click_line(main().List1, 1);
    click_line(main().List1, 1, Qt::ControlModifier);
    ASSERT_EQ(main().List1.SelCount(), 0);
    ASSERT_EQ(main().List1.ListIndex(), 1);
    click(main().Label1);
    click(main().Label2);
    click_line(main().List1, 0, Qt::ControlModifier);
    click_line(main().List1, 1, Qt::ControlModifier);
    click(main().Label2);
    EXPECT_EQ(services_.messages, std::vector<std::string>(3, "Select Only 1"));
    EXPECT_EQ(hlspr::document().FrameOrder, (std::vector<std::int16_t>{0, 1, 2}));
    EXPECT_FALSE(hlspr::SpriteDirty);
}

TEST_F(MainWindowTest, ArrowBeyondTheListDoesNothingSilently) {
    click(main().Label1);
    click(main().Label2);
    open_sprite(2);
    click_line(main().List1, 1, Qt::ControlModifier);
    click_line(main().List1, 0, Qt::ControlModifier);
    click_line(main().List1, 0, Qt::ControlModifier); // line 0 is current, both are selected
    ASSERT_EQ(main().List1.SelCount(), 2);
    click(main().Label1);
    EXPECT_EQ(services_.messages, std::vector<std::string>());
    EXPECT_FALSE(hlspr::SpriteDirty);
}

TEST_F(MainWindowTest, CloseBoxEndsTheProgramWithoutAQuestion) {
    open_sprite(1);
    click(main().elboton7);
    ui_driver::click_at(main().elpanel1, {575 - 26 + 9, 17});
    EXPECT_TRUE(ended_);
    EXPECT_EQ(services_.questions, std::vector<std::string>());
}

TEST_F(MainWindowTest, WindowManagerCloseEndsTheProgram) {
    main().close();
    EXPECT_TRUE(ended_);
    EXPECT_TRUE(main().isVisible());
}

TEST_F(MainWindowTest, WindowDoesNotCloseBehindADialog) {
    click(main().elboton2);
    main().close();
    EXPECT_FALSE(ended_);
}

TEST_F(MainWindowTest, DialogWithoutACloseBoxCannotBeClosed) {
    click(main().elboton2);
    coordinator_->form2()->close();
    ASSERT_NE(coordinator_->form2(), nullptr);
    EXPECT_TRUE(coordinator_->form2()->isVisible());
}

TEST_F(MainWindowTest, ListLongerThanTheSpriteIsShownWithoutDrawing) {
    open_sprite(2);
    main().add_frame_line("Frame 2");
    click_line(main().List1, 1);
    main().release_frames();
    EXPECT_EQ(main().List1.ListIndex(), 2);
    EXPECT_TRUE(main().List1.Selected(2));
    EXPECT_EQ(shown(), colour_of_frame(1));
    EXPECT_EQ(failures_, std::vector<std::string>());
}

TEST_F(MainWindowTest, LargeSpriteDoesNotCoverItsFrame) {
    open(write_sprite("large.spr", 1, 300, 280));
    EXPECT_EQ(main().Picture1.size(), QSize(300, 280));
    const QImage image = main().elframe5.grab().toImage();
    EXPECT_EQ(image.pixelColor(257, 100), theme::to_qcolor(theme::edge_light));
    EXPECT_EQ(image.pixelColor(100, 257), theme::to_qcolor(theme::edge_light));
    EXPECT_EQ(image.pixelColor(256, 256), theme::to_qcolor(colour_of_frame(0)));
}

} // namespace
} // namespace varnoth::test
