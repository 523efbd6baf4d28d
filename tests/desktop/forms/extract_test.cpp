#include <algorithm>
#include <array>
#include <filesystem>

#include "desktop/forms/EditorTest.h"
#include "desktop/theme/theme.h"

namespace varnoth::test {
namespace {

using ui_driver::click;
using ui_driver::click_line;

class ExtractTest : public EditorTest {
  protected:
    ExtractTest() { std::filesystem::create_directory(out_); }

    Form3& dialog() { return *coordinator_->form3(); }

    void open_dialog() { click(main().elboton6); }

    void open_sprite_and_dialog() {
        open_sprite(1);
        open_dialog();
    }

    void choose_out() { ui_driver::type_into(dialog().eltexto1, QString::fromStdString(out_)); }

    /// Selects all lines of the main window's list.
    void select_all() {
        for (int line = 0; line < main().List1.ListCount(); ++line) {
            click_line(main().List1, line, line == 0 ? Qt::NoModifier : Qt::ControlModifier);
        }
    }

    void extract() {
        open_dialog();
        choose_out();
        click(dialog().elboton2);
    }

    std::vector<std::string> written() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(out_)) {
            names.push_back(entry.path().filename());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    /// Which of the three radio buttons are checked.
    static std::string set_of(const std::array<elradio, 3>& group) {
        std::string set;
        for (const elradio& radio : group) {
            set += radio.Value() ? 'x' : '-';
        }
        return set;
    }

    const std::string out_ = folder_.file("out");
};

TEST_F(ExtractTest, SwitchingBackToBmpHidesCompressedAndSets24Bpp) {
    open_sprite_and_dialog();
    click(dialog().elradio1[2]);
    EXPECT_EQ(set_of(dialog().elradio1), "--x");
    EXPECT_FALSE(dialog().elframe1.isVisible());
    EXPECT_FALSE(dialog().elframe1.Enabled());
    EXPECT_TRUE(dialog().elframe2.isVisible());
    EXPECT_TRUE(dialog().elframe2.Enabled());
    click(dialog().elcheck1);
    EXPECT_TRUE(dialog().elcheck1.Value());
    dialog().elradio2[0].SetValue(true);
    dialog().elradio2[1].SetValue(false);
    click(dialog().elradio1[0]);
    EXPECT_EQ(set_of(dialog().elradio1), "x--");
    EXPECT_TRUE(dialog().elframe1.isVisible());
    EXPECT_TRUE(dialog().elframe1.Enabled());
    EXPECT_FALSE(dialog().elradio2[0].Value());
    EXPECT_FALSE(dialog().elframe2.isVisible());
    EXPECT_FALSE(dialog().elframe2.Enabled());
    EXPECT_TRUE(dialog().elradio2[1].Value());
}

TEST_F(ExtractTest, ChangingTheFormatUnchecksCompressed) {
    open_sprite_and_dialog();
    click(dialog().elradio1[1]);
    click(dialog().elcheck1);
    click(dialog().elradio1[2]);
    EXPECT_FALSE(dialog().elcheck1.Value());
}

TEST_F(ExtractTest, EightBitDepthCannotBeChosen) {
    open_sprite_and_dialog();
    EXPECT_FALSE(dialog().elradio2[0].Enabled());
    EXPECT_EQ(dialog().elradio2[0].UncheckedColor(), 0x808080);
    click(dialog().elradio2[0]);
    EXPECT_FALSE(dialog().elradio2[0].Value());
    EXPECT_TRUE(dialog().elradio2[1].Value());
    click(dialog().elradio1[2]);
    click(dialog().elradio1[0]);
    EXPECT_FALSE(dialog().elradio2[0].Enabled());
}

TEST_F(ExtractTest, EachGroupHasExactlyOneChecked) {
    open_sprite_and_dialog();
    dialog().elradio2[0].SetValue(true);
    click(dialog().elradio2[1]);
    EXPECT_FALSE(dialog().elradio2[0].Value());
    EXPECT_TRUE(dialog().elradio2[1].Value());
    click(dialog().elradio3[2]);
    EXPECT_EQ(set_of(dialog().elradio3), "--x");
    click(dialog().elradio3[0]);
    EXPECT_EQ(set_of(dialog().elradio3), "x--");
    click(dialog().elradio3[0]);
    EXPECT_EQ(set_of(dialog().elradio3), "x--");
}

TEST_F(ExtractTest, EightBitsSetByTheProgramWriteNoBmp) {
    open_sprite(1);
    open_dialog();
    choose_out();
    dialog().elradio2[0].SetValue(true);
    click(dialog().elboton2);
    EXPECT_EQ(written(), std::vector<std::string>());
}

TEST_F(ExtractTest, OkWithoutASelectionWritesNothingAndCloses) {
    open_sprite(3);
    main().List1.SetSelected(0, false);
    extract();
    EXPECT_EQ(written(), std::vector<std::string>());
    EXPECT_EQ(coordinator_->form3(), nullptr);
    EXPECT_EQ(coordinator_->form6(), nullptr);
    EXPECT_TRUE(main().isEnabled());
    EXPECT_EQ(failures_, std::vector<std::string>());
}

TEST_F(ExtractTest, WritesTheSelectedFramesUnderTheSpritesName) {
    open(write_sprite("boom.v2.spr", 12));
    select_all();
    extract();
    EXPECT_EQ(written().size(), 12U);
    EXPECT_TRUE(file_exists(out_ + "/boom_0.bmp"));
    EXPECT_TRUE(file_exists(out_ + "/boom_10.bmp"));
    EXPECT_EQ(coordinator_->form3(), nullptr);
    EXPECT_TRUE(main().isEnabled());
    EXPECT_EQ(services_.messages, std::vector<std::string>());
}

TEST_F(ExtractTest, FormatAndCompressionReachTheWriters) {
    open_sprite_and_dialog();
    choose_out();
    click(dialog().elradio1[2]);
    click(dialog().elcheck1);
    click(dialog().elboton2);
    const std::vector<std::uint8_t> pcx = read_file(out_ + "/sprite_0.pcx");
    ASSERT_GT(pcx.size(), 3U);
    EXPECT_EQ(pcx[2], 1); // run-length encoded
    open_dialog();
    choose_out();
    click(dialog().elradio1[1]);
    click(dialog().elboton2);
    const std::vector<std::uint8_t> tga = read_file(out_ + "/sprite_0.tga");
    ASSERT_GT(tga.size(), 3U);
    EXPECT_EQ(tga[2], 2); // uncompressed
}

TEST_F(ExtractTest, SkipAskAndOverwriteTreatExistingFiles) {
    open_sprite(1);
    const std::string file = folder_.write("out/sprite_0.bmp", std::vector<std::uint8_t>{1, 2, 3});
    const auto extract_with = [&](std::size_t choice) {
        open_dialog();
        choose_out();
        click(dialog().elradio3[choice]);
        click(dialog().elboton2);
        return read_file(file).size() == 3;
    };
    services_.answer = false;
    EXPECT_TRUE(extract_with(0));
    EXPECT_EQ(services_.questions, std::vector<std::string>());
    EXPECT_TRUE(extract_with(1));
    EXPECT_EQ(services_.questions, std::vector<std::string>{"File sprite_0.bmp Already Exists. Overwrite?"});
    EXPECT_FALSE(extract_with(2));
    EXPECT_EQ(services_.questions.size(), 1U);
}

TEST_F(ExtractTest, ProgressShowsTheFileWhileTheOpenerIsDisabled) {
    open_sprite(2);
    select_all();
    std::vector<std::string> seen;
    bool opener_enabled = true;
    services_.on_yield = [&] {
        Form6& progress = *coordinator_->form6();
        seen.push_back(text(progress.Label1.Caption()) + " " + text(progress.Label2.Caption()) + " " +
                       std::to_string(progress.Progressbar1.Value()));
        opener_enabled = dialog().isEnabled();
    };
    extract();
    seen.erase(std::unique(seen.begin(), seen.end()), seen.end());
    EXPECT_EQ(seen, (std::vector<std::string>{
                        "Extracting Frames...  0", "Extracting Frames... sprite_0.bmp 0",
                        "Extracting Frames... sprite_0.bmp 1", "Extracting Frames... sprite_1.bmp 1",
                        "Extracting Frames... sprite_1.bmp 2"}));
    EXPECT_FALSE(opener_enabled);
}

// Position 0 contains frame 1 and position 1 frame 0. With only line 1 selected, the extraction returns to
// line 1 for ever.
TEST_F(ExtractTest, CancelStopsAnEndlessExtraction) {
    open_sprite(2);
    click(main().Label2);
    ASSERT_EQ(hlspr::document().FrameOrder, (std::vector<std::int16_t>{1, 0}));
    ASSERT_TRUE(main().List1.Selected(1));
    int yields = 0;
    services_.on_yield = [&] {
        if (++yields == 200) {
            click(coordinator_->form6()->elboton1);
        }
    };
    extract();
    EXPECT_GE(yields, 200);
    EXPECT_EQ(coordinator_->form6(), nullptr);
    EXPECT_EQ(written(), std::vector<std::string>{"sprite_0.bmp"});
}

TEST_F(ExtractTest, OkWithoutAFolderOpensTheFolderDialog) {
    open_sprite_and_dialog();
    click(dialog().elboton2);
    EXPECT_EQ(services_.messages, std::vector<std::string>{"Select Output Folder First."});
    ASSERT_NE(coordinator_->form5(), nullptr);
    EXPECT_FALSE(dialog().isEnabled());
    click(coordinator_->form5()->elboton2);
    EXPECT_EQ(coordinator_->form5(), nullptr);
    EXPECT_TRUE(dialog().isEnabled());
    EXPECT_EQ(text(dialog().eltexto1.Text()), "");
}

TEST_F(ExtractTest, MissingFolderShowsAMessage) {
    open_sprite_and_dialog();
    ui_driver::type_into(dialog().eltexto1, QString::fromStdString(folder_.file("none")));
    int extractions = 0;
    QObject::connect(&dialog(), &Form3::extractionRequested, [&] { ++extractions; });
    click(dialog().elboton2);
    EXPECT_EQ(services_.messages, std::vector<std::string>{"Output Folder Doesnt Exist."});
    EXPECT_NE(coordinator_->form5(), nullptr);
    EXPECT_EQ(extractions, 0);
}

TEST_F(ExtractTest, FolderDialogOkFillsTheBoxAndIsRemembered) {
    open_sprite_and_dialog();
    click(dialog().elboton1);
    Form5& folders = *coordinator_->form5();
    EXPECT_EQ(text(folders.ellabel1.Caption()), "Select Extracting Folder:");
    ASSERT_TRUE(ui_driver::walk_to(folders.Dir1, QString::fromStdString(out_)));
    click(folders.elboton1);
    EXPECT_EQ(text(dialog().eltexto1.Text()), out_);
    EXPECT_EQ(hlspr::ExtractFolder, out_);
    EXPECT_TRUE(dialog().isEnabled());
    EXPECT_FALSE(main().isEnabled());
    click(dialog().elboton3);
    EXPECT_EQ(coordinator_->form3(), nullptr);
    EXPECT_TRUE(main().isEnabled());
    open_dialog();
    EXPECT_EQ(text(dialog().eltexto1.Text()), out_);
}

TEST_F(ExtractTest, FolderDialogOpensAtTheRememberedFolder) {
    open_sprite(1);
    hlspr::ExtractFolder = out_;
    open_dialog();
    ui_driver::type_into(dialog().eltexto1, QString::fromStdString(folder_.path()));
    click(dialog().elboton1);
    EXPECT_EQ(coordinator_->form5()->Dir1.Path(), out_);
}

TEST_F(ExtractTest, EmptyBoxMakesTheFolderDialogStartAfresh) {
    open_sprite(1);
    hlspr::ExtractFolder = out_;
    open_dialog();
    for (const QString& typed : {QString(), QString::fromStdString(folder_.file("none"))}) {
        ui_driver::type_into(dialog().eltexto1, typed);
        click(dialog().elboton1);
        EXPECT_EQ(coordinator_->form5()->Dir1.Path(), folder_.path()) << text(typed);
        ASSERT_TRUE(ui_driver::walk_to(coordinator_->form5()->Dir1, "/"));
        click(coordinator_->form5()->elboton2);
        EXPECT_EQ(hlspr::ExtractFolder, out_) << "Cancel chooses nothing";
        EXPECT_EQ(dialog().eltexto1.Text(), typed);
    }
}

TEST_F(ExtractTest, TypedFolderIsNotRemembered) {
    open_sprite(1);
    extract();
    EXPECT_EQ(written().size(), 1U);
    EXPECT_EQ(hlspr::ExtractFolder, "");
    open_dialog();
    EXPECT_EQ(text(dialog().eltexto1.Text()), "");
}

TEST_F(ExtractTest, FolderDialogFirstOpensAtTheSpritesFolder) {
    open_sprite_and_dialog();
    click(dialog().elboton1);
    EXPECT_EQ(coordinator_->form5()->Dir1.Path(), folder_.path());
}

TEST_F(ExtractTest, DeletedRememberedFolderFails) {
    open_sprite(1);
    hlspr::ExtractFolder = folder_.file("gone");
    open_dialog();
    choose_out();
    click(dialog().elboton1);
    EXPECT_EQ(failures_, std::vector<std::string>{"PathNotFound"});
}

} // namespace
} // namespace varnoth::test
