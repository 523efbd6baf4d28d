// Files and folders whose names are not valid UTF-8, in every window. All names keep their bytes.
#include <algorithm>
#include <filesystem>

#include <QLabel>

#include "desktop/forms/EditorTest.h"
#include "qt/path_text.h"
#include "support/PictureFolder.h"

namespace varnoth::test {
namespace {

using ui_driver::click;
using ui_driver::click_line;

constexpr Colour red = 0x0000FA;

class FileNamesTest : public EditorTest {
  protected:
    FileNamesTest() { std::filesystem::create_directory(odd_folder_); }

    /// Opens a sprite and Import, at a folder whose name is not UTF-8.
    void open_import() {
        open_sprite(1);
        click(main().elboton4);
        ASSERT_TRUE(ui_driver::walk_to(dialog().Dir1, text_of_path(odd_folder_)));
    }

    Form4& dialog() { return *coordinator_->form4(); }

    std::vector<std::string> names_in_odd_folder() const {
        std::vector<std::string> names = names_in(odd_folder_);
        std::sort(names.begin(), names.end());
        return names;
    }

    PictureFolder pictures_{services_};
    const std::string odd_folder_ = pictures_.file("p\xFE");
};

TEST_F(FileNamesTest, PictureIsListedClickedAndImported) {
    pictures_.add_plain_bmp("p\xFE/a\xFF.bmp", 4, 4, red);
    open_import();
    ASSERT_EQ(dialog().File1.ListCount(), 1);
    click_line(dialog().File1, 0);
    EXPECT_EQ(text(dialog().ellabel3.Caption()), "4x4");
    EXPECT_EQ(dialog().Picture1.surface().Point(0, 0), red);
    click(dialog().elboton2);
    EXPECT_EQ(services_.messages, std::vector<std::string>{"Frames Generated Successfully !"});
    EXPECT_EQ(failures_, std::vector<std::string>());
    click_line(main().List1, 0);
    EXPECT_EQ(shown(), red);
}

TEST_F(FileNamesTest, BadPictureIsNamedByItsBytes) {
    pictures_.write("p\xFE/a\xFF.bmp", std::vector<std::uint8_t>{0});
    open_import();
    click_line(dialog().File1, 0);
    EXPECT_EQ(services_.messages, std::vector<std::string>{"File: a\xFF.bmp Bad Format/Corrupt."});
}

TEST_F(FileNamesTest, DriveIsOpened) {
    open_import();
    DriveList& drives = dialog().Drive1;
    drives.AddItem("stick");
    drives.setItemData(drives.ListCount() - 1, text_of_path(odd_folder_));
    dialog().Dir1.SetPath("/");
    ui_driver::choose(drives, drives.ListCount() - 1);
    EXPECT_EQ(drives.Drive(), odd_folder_);
    EXPECT_EQ(dialog().File1.Path(), odd_folder_);
}

TEST_F(FileNamesTest, FramesAreExportedToAFolder) {
    open(write_sprite("\xFC.spr", 1));
    click(main().elboton6);
    click(coordinator_->form3()->elboton1);
    ASSERT_TRUE(ui_driver::walk_to(coordinator_->form5()->Dir1, text_of_path(odd_folder_)));
    click(coordinator_->form5()->elboton1);
    EXPECT_EQ(hlspr::ExtractFolder, odd_folder_);
    click(coordinator_->form3()->elboton2);
    EXPECT_EQ(services_.messages, std::vector<std::string>());
    EXPECT_EQ(names_in_odd_folder(), std::vector<std::string>{"\xFC_0.bmp"});
}

TEST_F(FileNamesTest, RememberedFolderIsShownAgain) {
    open_sprite(1);
    hlspr::ExtractFolder = odd_folder_;
    click(main().elboton6);
    EXPECT_EQ(path_of_text(coordinator_->form3()->eltexto1.Text()), odd_folder_);
    click(coordinator_->form3()->elboton1);
    EXPECT_EQ(coordinator_->form5()->Dir1.Path(), odd_folder_);
}

TEST_F(FileNamesTest, SpriteIsOpenedAndSavedUnderTheSameBytes) {
    const std::string path = pictures_.file("p\xFE/s\xFF.spr");
    std::filesystem::copy_file(write_sprite("sprite.spr", 2), path);
    open(path);
    EXPECT_EQ(lines().size(), 2U);
    EXPECT_EQ(main().ellabel8.Caption(), text_of_path("s\xFF"));
    click(main().Label2); // moves frame 0 down
    const std::vector<std::uint8_t> before = read_file(path);
    click(main().elboton3);
    EXPECT_EQ(services_.messages, std::vector<std::string>());
    EXPECT_NE(read_file(path), before);
    EXPECT_EQ(names_in_odd_folder(), std::vector<std::string>{"s\xFF.spr"});
}

TEST_F(FileNamesTest, UnsavedChangesQuestionShowsTheBytesOfThePath) {
    const std::string path = write_sprite("s\xFF.spr", 1);
    open(path);
    click(main().elboton7);
    services_.answer = false;
    open("");
    EXPECT_EQ(services_.questions,
              std::vector<std::string>{"¿ Do you want to save changes in " + path + " ?"});
}

TEST_F(FileNamesTest, BrowserStartsAtTheSpritesFolder) {
    const std::string path = pictures_.file("p\xFE/s.spr");
    std::filesystem::copy_file(write_sprite("sprite.spr", 1), path);
    open(path);
    click(main().elboton4);
    EXPECT_EQ(dialog().Dir1.Path(), odd_folder_);
}

TEST_F(FileNamesTest, InvalidUtf8ByteIsDrawnAsOneCharacter) {
    const auto drawn_width = [](const QString& words) {
        QLabel label(words);
        return label.sizeHint().width();
    };
    const int width = drawn_width(text_of_path("a\xFF.bmp"));
    EXPECT_GT(width, drawn_width("a.bmp"));
    EXPECT_LE(width, drawn_width(QStringLiteral("a\uFFFD.bmp")));
}

} // namespace
} // namespace varnoth::test
