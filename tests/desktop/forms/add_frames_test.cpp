#include <filesystem>

#include <QAccessible>
#include <QCoreApplication>
#include <QTest>

#include "desktop/AccessibleEvents.h"
#include "desktop/forms/EditorTest.h"
#include "desktop/theme/theme.h"
#include "support/PictureFolder.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

using ui_driver::choose;
using ui_driver::click;
using ui_driver::click_line;

constexpr const char* success = "Frames Generated Successfully !";
constexpr Colour armed = 0x50B5C4;
constexpr Colour idle = 0xD3DED8;
constexpr Colour red = 0x0000FA;
constexpr Colour green = 0x00F000;

class AddFramesTest : public EditorTest {
  protected:
    Form4& dialog() { return *coordinator_->form4(); }

    /// Creates a sprite of this size and mode and opens Import at the folder of the pictures.
    void open_dialog(int width = 4, int height = 4, int render_mode = 1) {
        click(main().elboton2);
        Form2& form = *coordinator_->form2();
        ui_driver::type_into(form.eltexto2, QString::number(width));
        ui_driver::type_into(form.eltexto3, QString::number(height));
        choose(*form.elcombo2.findChild<DropDownList*>("Combo1"), render_mode);
        click(form.elboton2);
        open_import();
    }

    void open_import() {
        click(main().elboton4);
        ASSERT_TRUE(ui_driver::walk_to(dialog().Dir1, QString::fromStdString(pictures_.path())));
    }

    void add_pictures(std::initializer_list<const char*> names) {
        for (const char* name : names) {
            pictures_.add_plain_bmp(name, 4, 4, red);
        }
    }

    /// Opens Import in a mode with a transparent colour and shows a picture that is red on the left and green
    /// on the right.
    void open_with_red_and_green(int render_mode = 2) {
        pictures_.add_bmp("a.bmp", 2, 1, {red, green});
        open_dialog(2, 1, render_mode);
        click_line(dialog().File1, 0);
    }

    void select(std::initializer_list<int> entries) {
        for (const int entry : entries) {
            click_line(dialog().File1, entry, Qt::ControlModifier);
        }
    }

    void import() {
        click(dialog().elboton2);
        ui_driver::settle();
    }

    bool question_is_open() {
        EXPECT_EQ(dialog().elradio1[0].Enabled(), dialog().elradio1[0].isVisible());
        EXPECT_EQ(dialog().elradio1[0].Enabled(), dialog().elradio1[1].Enabled());
        EXPECT_EQ(dialog().elradio1[0].isVisible(), dialog().elradio1[1].isVisible());
        EXPECT_EQ(dialog().elradio1[0].isVisible(), dialog().ellabel6.isVisible());
        return dialog().elradio1[0].Enabled();
    }

    Colour transparent() { return dialog().Picture2.surface().BackColor(); }

    std::string spoken_transparent() { return text(dialog().Picture2.accessibleDescription()); }

    std::vector<std::string> files() {
        std::vector<std::string> names;
        for (std::int32_t i = 0; i < dialog().File1.ListCount(); ++i) {
            names.push_back(text(dialog().File1.List(i)));
        }
        return names;
    }

    /// Adds a folder to the list of drives, as if mounted there. Returns its line.
    int add_drive(const std::string& root) {
        DriveList& drives = dialog().Drive1;
        drives.AddItem("stick");
        drives.setItemData(drives.ListCount() - 1, QString::fromStdString(root));
        return drives.ListCount() - 1;
    }

    PictureFolder pictures_{services_};
};

TEST_F(AddFramesTest, OpensWithAHiddenQuestionAndFourFileTypes) {
    open_dialog(48, 32);
    EXPECT_FALSE(main().isEnabled());
    EXPECT_EQ(text(dialog().ellabel5.Caption()), "48x32");
    EXPECT_EQ(text(dialog().Combo1.List(1) + dialog().Combo1.List(2) + dialog().Combo1.List(3)),
              "*.jpg*.tga*.pcx");
    EXPECT_FALSE(question_is_open());
    EXPECT_TRUE(dialog().elradio1[0].Value());
    EXPECT_FALSE(dialog().elradio1[1].Value());
    EXPECT_EQ(text(dialog().elradio1[0].Caption()), "Set Sprite To 256x256");
    EXPECT_EQ(text(dialog().elradio1[1].Caption()), "Resize Pictures To 256x256");
    EXPECT_FALSE(dialog().TransparentPicked);
}

TEST_F(AddFramesTest, PickerIsEnabledForModesWithATransparentColour) {
    for (const int mode : {0, 1, 2, 3}) {
        open_dialog(4, 4, mode);
        const bool there = mode == 2 || mode == 3;
        EXPECT_EQ(dialog().elboton1.Enabled(), there) << mode;
        EXPECT_EQ(dialog().elboton1.ForeColor(), there ? idle : 0x808080) << mode;
        EXPECT_EQ(dialog().ellabel1.ForeColor(), there ? idle : 0x808080) << mode;
        click(dialog().elboton3);
    }
}

TEST_F(AddFramesTest, CancelEnablesTheMainWindowAndChangesNothing) {
    pictures_.add_plain_bmp("a.bmp", 4, 4);
    open_dialog();
    select({0});
    click(dialog().elboton3);
    EXPECT_EQ(coordinator_->form4(), nullptr);
    EXPECT_TRUE(main().isEnabled());
    EXPECT_EQ(hlspr::document().SpriteHeader.FrameCount, 0);
    EXPECT_EQ(lines().size(), 0U);
}

TEST_F(AddFramesTest, FormatFiltersTheFileList) {
    pictures_.add_plain_bmp("a.bmp", 4, 4);
    pictures_.write("b.TGA", tga_file(1, 1, {red}));
    open_dialog();
    EXPECT_EQ(text(dialog().File1.List(0)), "a.bmp");
    choose(dialog().Combo1, 2);
    ASSERT_EQ(dialog().File1.ListCount(), 1);
    EXPECT_EQ(text(dialog().File1.List(0)), "b.TGA");
    choose(dialog().Combo1, 3);
    EXPECT_EQ(dialog().File1.ListCount(), 0);
}

TEST_F(AddFramesTest, ClickOnAFileShowsThePictureAndItsSize) {
    pictures_.add_plain_bmp("a.bmp", 7, 5, red);
    pictures_.add_plain_bmp("b.bmp", 7, 5, green);
    open_dialog();
    select({1});
    EXPECT_EQ(dialog().Picture1.size(), QSize(7, 5));
    EXPECT_EQ(dialog().Picture1.surface().Point(6, 4), green);
    EXPECT_EQ(text(dialog().ellabel3.Caption()), "7x5");
}

TEST_F(AddFramesTest, LargePictureSizeIsShownInWholeNumbers) {
    pictures_.add_plain_bmp("a.bmp", 1000001, 1);
    open_dialog();
    select({0});
    EXPECT_EQ(text(dialog().ellabel3.Caption()), "1000001x1");
}

TEST_F(AddFramesTest, TooWidePictureIsUnselectedAndClosesTheQuestion) {
    pictures_.add_plain_bmp("a.bmp", 8, 8);
    pictures_.add_plain_bmp("b.bmp", 300, 8);
    pictures_.write("c.bmp", std::vector<std::uint8_t>{0}); // never read
    open_dialog(4, 4);
    dialog().File1.SetSelected(0, true);
    dialog().File1.SetSelected(2, true);
    click_line(dialog().File1, 1, Qt::ControlModifier);
    EXPECT_EQ(services_.messages, std::vector<std::string>{"File: b.bmp With Size Greater Than 256 x 256."});
    EXPECT_FALSE(dialog().File1.Selected(1));
    EXPECT_TRUE(dialog().File1.Selected(2));
    EXPECT_FALSE(question_is_open());
    EXPECT_EQ(dialog().Picture1.size(), QSize(300, 8)); // the preview still shows it
}

TEST_F(AddFramesTest, SelectingAllFilesByKeyboardShowsTheFirst) {
    pictures_.add_plain_bmp("a.bmp", 4, 3, red);
    pictures_.add_plain_bmp("b.bmp", 4, 3, green);
    open_dialog();
    dialog().File1.setFocus();
    QTest::keyClick(&dialog().File1, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(failures_, std::vector<std::string>());
    EXPECT_EQ(dialog().File1.SelCount(), 2);
    EXPECT_EQ(text(dialog().ellabel3.Caption()), "4x3");
    EXPECT_EQ(dialog().Picture1.surface().Point(0, 0), red);
}

TEST_F(AddFramesTest, ChoosingADriveOpensItsRootAndListsItsFiles) {
    pictures_.add_plain_bmp("a.bmp", 4, 4);
    const TemporaryFolder stick;
    stick.write("on_stick.bmp", {});
    open_dialog();
    const int line = add_drive(stick.path());
    ASSERT_NE(dialog().Drive1.Drive(), stick.path());
    choose(dialog().Drive1, line);
    EXPECT_EQ(dialog().Drive1.Drive(), stick.path());
    EXPECT_EQ(dialog().Dir1.Path(), stick.path());
    EXPECT_EQ(files(), std::vector<std::string>{"on_stick.bmp"});
}

TEST_F(AddFramesTest, ChoosingTheCurrentDriveChangesNothing) {
    const std::string folder = pictures_.file("folder");
    std::filesystem::create_directory(folder);
    pictures_.add_plain_bmp("folder/a.bmp", 4, 4);
    open_dialog();
    ASSERT_TRUE(ui_driver::walk_to(dialog().Dir1, QString::fromStdString(folder)));
    const int line = add_drive(pictures_.path());
    dialog().Drive1.show_drive_of(folder);
    ASSERT_EQ(dialog().Drive1.ListIndex(), line);
    select({0});
    pictures_.add_plain_bmp("folder/b.bmp", 4, 4);
    choose(dialog().Drive1, line);
    EXPECT_EQ(dialog().Dir1.Path(), folder);
    EXPECT_EQ(files(), std::vector<std::string>{"a.bmp"});
    EXPECT_TRUE(dialog().File1.Selected(0));
}

TEST_F(AddFramesTest, ChoosingTheSameFileTypeAgainRefreshesTheList) {
    pictures_.add_plain_bmp("a.bmp", 4, 4);
    open_dialog();
    select({0});
    pictures_.add_plain_bmp("b.bmp", 4, 4);
    choose(dialog().Combo1, 0);
    EXPECT_EQ(files(), (std::vector<std::string>{"a.bmp", "b.bmp"}));
    EXPECT_FALSE(dialog().File1.Selected(0));
}

// The picker.

TEST_F(AddFramesTest, TopLeftPixelIsTransparentUntilAColourIsPicked) {
    pictures_.add_bmp("a.bmp", 2, 1, {red, green});
    pictures_.add_bmp("b.bmp", 2, 1, {green, red});
    open_dialog(2, 1, 3);
    click_line(dialog().File1, 0);
    EXPECT_EQ(transparent(), red);
    click_line(dialog().File1, 1);
    EXPECT_EQ(transparent(), green);
    click(dialog().elboton1);
    ui_driver::click_at(dialog().Picture1, {1, 0});
    EXPECT_EQ(transparent(), red);
    EXPECT_TRUE(dialog().TransparentPicked);
    click_line(dialog().File1, 0);
    click_line(dialog().File1, 1);
    EXPECT_EQ(transparent(), red);
}

TEST_F(AddFramesTest, ArmedPickerShowsTheColourUnderThePointer) {
    open_with_red_and_green();
    ui_driver::point_at(dialog().Picture1, {1, 0});
    EXPECT_EQ(transparent(), red);
    click(dialog().elboton1);
    EXPECT_EQ(dialog().elboton1.ForeColor(), armed);
    ui_driver::point_at(dialog().Picture1, {1, 0});
    EXPECT_EQ(transparent(), green);
    ui_driver::point_at(dialog().Picture1, {0, 0});
    EXPECT_EQ(transparent(), red);
    ui_driver::click_at(dialog().Picture1, {1, 0});
    EXPECT_EQ(transparent(), green);
    EXPECT_EQ(dialog().elboton1.ForeColor(), idle);
    ui_driver::point_at(dialog().Picture1, {0, 0});
    EXPECT_EQ(transparent(), green);
}

TEST_F(AddFramesTest, AnyMouseButtonPicksInsideThePicture) {
    open_with_red_and_green();
    click(dialog().elboton1);
    emit dialog().Picture1.MouseMove({.x = 2, .y = 0});
    emit dialog().Picture1.MouseMove({.x = -1, .y = 0});
    EXPECT_EQ(transparent(), red);
    QTest::mousePress(&dialog().Picture1, Qt::RightButton, {}, QPoint(1, 0));
    EXPECT_EQ(transparent(), green);
    EXPECT_EQ(dialog().elboton1.ForeColor(), idle);
    EXPECT_TRUE(dialog().TransparentPicked);
    QTest::mouseRelease(&dialog().Picture1, Qt::RightButton, {}, QPoint(1, 0));
}

TEST_F(AddFramesTest, PointerPositionIsRoundedHalfToEven) {
    pictures_.add_bmp("a.bmp", 3, 3, {0, 1, 2, 3, 4, 5, 6, 7, 8});
    open_dialog(3, 3, 2);
    click_line(dialog().File1, 0);
    click(dialog().elboton1);
    emit dialog().Picture1.MouseMove({.x = 0.6F, .y = 1.4F});
    EXPECT_EQ(transparent(), 4); // column 1, row 1
    emit dialog().Picture1.MouseMove({.x = 1.5F, .y = 0.5F});
    EXPECT_EQ(transparent(), 2); // halves round to even
    emit dialog().Picture1.MouseMove({.x = -0.4F, .y = 2.4F});
    EXPECT_EQ(transparent(), 6);
    emit dialog().Picture1.MouseMove({.x = -0.6F, .y = 0});
    EXPECT_EQ(transparent(), 6); // outside the picture
}

TEST_F(AddFramesTest, PictureWithoutPixelsHasNoColour) {
    pictures_.add_bmp("a.bmp", 1, 1, {make_colour(1, 2, 3)});
    const std::string empty = pictures_.write("b.bmp", bmp_header(1, 1, 24));
    services_.pictures[empty] = surface_of(0, 0, {})->Image();
    open_dialog(4, 4, 2);
    click_line(dialog().File1, 0);
    EXPECT_EQ(spoken_transparent(), "Red 1, green 2, blue 3");
    click_line(dialog().File1, 1);
    ASSERT_EQ(dialog().Picture1.surface().Point(0, 0), no_colour);
    EXPECT_EQ(spoken_transparent(), "No color");
}

TEST_F(AddFramesTest, SecondClickOnPickDisarmsItAndKeepsTheColour) {
    open_with_red_and_green();
    click(dialog().elboton1);
    ui_driver::point_at(dialog().Picture1, {1, 0});
    click(dialog().elboton1);
    EXPECT_EQ(dialog().elboton1.ForeColor(), idle);
    EXPECT_EQ(transparent(), green);
    EXPECT_FALSE(dialog().TransparentPicked);
    ui_driver::click_at(dialog().Picture1, {0, 0});
    EXPECT_EQ(transparent(), green);
}

TEST_F(AddFramesTest, DisabledPickerKeepsTheColour) {
    pictures_.add_plain_bmp("a.bmp", 4, 4, red);
    open_dialog();
    const Colour before = transparent();
    click(dialog().elboton1);
    select({0});
    ui_driver::click_at(dialog().Picture1, {1, 1});
    EXPECT_EQ(transparent(), before);
    EXPECT_EQ(dialog().elboton1.ForeColor(), 0x808080);
}

// The import.

TEST_F(AddFramesTest, OkWithoutASelectionAsksForPicturesAndStaysOpen) {
    pictures_.add_plain_bmp("a.bmp", 4, 4);
    open_dialog();
    import();
    EXPECT_EQ(services_.messages, std::vector<std::string>{"Select Picture/s To Add."});
    ASSERT_NE(coordinator_->form4(), nullptr);
    EXPECT_TRUE(dialog().isEnabled());
}

TEST_F(AddFramesTest, ImportAddsFramesAndEnablesTheCommands) {
    pictures_.add_plain_bmp("a.bmp", 4, 4, red);
    pictures_.add_plain_bmp("b.bmp", 4, 4, 0x123456);
    pictures_.add_plain_bmp("c.bmp", 4, 4, green);
    open_dialog();
    select({0, 2});
    import();
    EXPECT_EQ(services_.messages, std::vector<std::string>{success});
    EXPECT_EQ(lines(), (std::vector<std::string>{"Frame 0", "Frame 1"}));
    EXPECT_EQ(main().List1.ListIndex(), 1);
    EXPECT_TRUE(main().List1.Selected(1));
    EXPECT_TRUE(main().List1.isEnabled());
    EXPECT_EQ(shown(), green);
    for (elboton* button : {&main().elboton3, &main().elboton5, &main().elboton6, &main().elboton7}) {
        EXPECT_TRUE(button->Enabled());
        EXPECT_EQ(button->ForeColor(), 0xFFFFFF);
    }
    EXPECT_TRUE(hlspr::SpriteDirty);
    EXPECT_TRUE(main().isEnabled());
    EXPECT_EQ(coordinator_->form4(), nullptr);
    EXPECT_EQ(coordinator_->form6(), nullptr);
}

TEST_F(AddFramesTest, ResizedPicturesGetTheSpritesSize) {
    pictures_.add_plain_bmp("a.bmp", 3, 5, red);
    open_dialog(8, 8);
    select({0});
    click(dialog().elradio1[1]);
    import();
    EXPECT_EQ(hlspr::document().SpriteHeader.Width, 8);
    EXPECT_EQ(main().Picture1.size(), QSize(8, 8));
    EXPECT_EQ(text(main().ellabel7.Caption()), "8 x 8");
}

TEST_F(AddFramesTest, SpriteSizeIsShownEvenIfTheImportIsAborted) {
    pictures_.add_plain_bmp("a.bmp", 25, 6, red);
    open_dialog(8, 8);
    select({0});
    std::string size_at_first_yield;
    services_.on_yield = [&] {
        if (size_at_first_yield.empty() && coordinator_->form6() != nullptr) {
            size_at_first_yield = text(main().ellabel7.Caption());
            click(coordinator_->form6()->elboton1);
        }
    };
    import();
    EXPECT_EQ(size_at_first_yield, "25 x 6");
    EXPECT_EQ(services_.messages,
              std::vector<std::string>{"Process Aborted By User. Some Pictures Where Not Imported."});
    EXPECT_EQ(text(main().ellabel7.Caption()), "25 x 6");
    EXPECT_EQ(text(main().ellabel6.Caption()), "-12.5, 3");
    EXPECT_EQ(hlspr::document().SpriteHeader.Width, 25);
    EXPECT_EQ(lines().size(), 0U);
    EXPECT_TRUE(main().isEnabled());
}

TEST_F(AddFramesTest, EachFrameUpdatesCaptionThenListThenBar) {
    add_pictures({"a.bmp", "b.bmp", "c.bmp"});
    open_dialog();
    select({0, 2});
    std::vector<std::string> changes;
    const AccessibleEvents events([&](QAccessibleEvent& event) {
        const auto* label = qobject_cast<const ellabel*>(event.object());
        const auto* bar = qobject_cast<const elprogress*>(event.object());
        if (label != nullptr && label->window() == coordinator_->form6() &&
            event.type() == QAccessible::NameChanged && !label->Caption().isEmpty()) {
            changes.push_back(text(label->objectName() + ' ' + label->Caption()));
        } else if (bar != nullptr && event.type() == QAccessible::ValueChanged) {
            changes.push_back("bar " + std::to_string(bar->Value()));
        }
    });
    const ListBox& list = main().List1;
    QObject::connect(list.model(), &QAbstractItemModel::rowsInserted,
                     [&](const auto&, int line) { changes.push_back("line " + text(list.List(line))); });
    std::int32_t maximum = 0;
    bool others_enabled = false;
    bool shows_wait_cursor = false;
    services_.on_yield = [&] {
        if (const Form6* progress = coordinator_->form6()) {
            maximum = progress->Progressbar1.Max();
            others_enabled = others_enabled || main().isEnabled() || dialog().isEnabled();
            shows_wait_cursor = dialog().cursor().shape() == Qt::WaitCursor;
        }
    };
    import();
    EXPECT_EQ(changes, (std::vector<std::string>{
                           "Label1 Building Palette...", "bar 0", "Label2 Initializing...",
                           "Label2 Loading Picture...", "Label2 Picture Color Lookup...", "bar 1",
                           "Label2 Loading Picture...", "Label2 Picture Color Lookup...", "bar 2",
                           "Label2 Finalizing Palette...", "Label1 Adding Frames...", "Label2 Frame 0",
                           "line Frame 0", "bar 3", "Label2 Frame 2", "line Frame 1", "bar 4"}));
    EXPECT_EQ(maximum, 5);
    EXPECT_FALSE(others_enabled);
    EXPECT_TRUE(shows_wait_cursor);
}

// The import uses the transparent colour that the dialog shows.

TEST_F(AddFramesTest, PickedColourLosesItsPaletteEntry) {
    open_with_red_and_green(3);
    import();
    click_line(main().List1, 0);
    EXPECT_NE(main().Picture1.surface().Point(0, 0), red);
    EXPECT_EQ(main().Picture1.surface().Point(1, 0), green);
}

TEST_F(AddFramesTest, ModeWithoutTransparencyKeepsEveryColour) {
    open_with_red_and_green(1);
    import();
    click_line(main().List1, 0);
    EXPECT_EQ(main().Picture1.surface().Point(0, 0), red);
    EXPECT_EQ(main().Picture1.surface().Point(1, 0), green);
}

// The browser's initial folder.

TEST_F(AddFramesTest, BrowserStartsAtTheSpritesThenTheLastFolder) {
    open(write_sprite("sprite.spr", 1));
    click(main().elboton4);
    EXPECT_EQ(dialog().Dir1.Path(), folder_.path());
    EXPECT_EQ(dialog().File1.Path(), folder_.path());
    ASSERT_TRUE(ui_driver::walk_to(dialog().Dir1, QString::fromStdString(pictures_.path())));
    click(dialog().elboton3);
    click(main().elboton4);
    EXPECT_EQ(dialog().Dir1.Path(), pictures_.path());
}

// Progress dialog.

TEST_F(AddFramesTest, AbortFlagIs0AndCancelSetsItOnce) {
    Form6 dialog;
    dialog.show_over(main());
    EXPECT_EQ(text(dialog.Label3.Caption()), "0");
    EXPECT_FALSE(dialog.Label3.isVisible());
    EXPECT_EQ(text(dialog.Label1.Caption() + dialog.Label2.Caption()), "");
    dialog.Label1.SetCaption("Working...");
    dialog.Label2.SetCaption("this");
    int clicks = 0;
    QObject::connect(&dialog.elboton1, &elboton::Click, [&] { ++clicks; });
    click(dialog.elboton1);
    EXPECT_EQ(text(dialog.Label1.Caption()), "Aborting Process...");
    EXPECT_EQ(text(dialog.Label2.Caption()), "");
    EXPECT_EQ(text(dialog.Label3.Caption()), "1");
    EXPECT_FALSE(dialog.elboton1.Enabled());
    EXPECT_EQ(dialog.elboton1.ForeColor(), 0x808080);
    click(dialog.elboton1);
    EXPECT_EQ(clicks, 1);
}

} // namespace
} // namespace varnoth::test
