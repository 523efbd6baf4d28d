#include "core/jobs/FrameExtraction.h"

#include <filesystem>
#include <set>

#include <gtest/gtest.h>

#include "core/sprite/hlspr.h"
#include "support/RecordedServices.h"
#include "support/TemporaryFolder.h"
#include "support/expect_failure.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

class RecordedExtraction : public ExtractionView {
  public:
    std::vector<bool> selected;
    Texts items;
    Texts written;
    int progress = 0;
    mutable int tests_of_abort = 0;
    int abort_at_test = -1;

    std::int32_t line_count() const override { return static_cast<std::int32_t>(selected.size()); }

    bool is_selected(std::int16_t line) const override { return selected.at(static_cast<std::size_t>(line)); }

    bool aborted() const override { return tests_of_abort++ == abort_at_test; }

    void show_item(std::string_view name) override { items.emplace_back(name); }

    void advance() override { ++progress; }

    void frame_written(const std::string& path) override {
        written.push_back(std::filesystem::path(path).filename().string());
    }
};

class FrameExtraction : public testing::Test {
  protected:
    // Three frames of 2 by 1, distinguished by their index.
    FrameExtraction() {
        hlspr::new_sprite(2, 1, 2, 0);
        SpriteDocument& sprite = hlspr::document();
        sprite.SpriteHeader.FrameCount = 3;
        sprite.FrameStore.clear();
        sprite.FrameOrder = {0, 1, 2};
        for (std::uint8_t i = 0; i < 3; ++i) {
            sprite.FrameStore.emplace_back(2);
            sprite.FrameStore.back()[0] = i;
            sprite.FrameStore.back()[1] = i;
            sprite.Palette.Colours[i] = {static_cast<std::uint8_t>(10 + i), 20, 30};
        }
        view_.selected = {true, true, true};
        options_.folder = folder_.path();
        options_.sprite_path = "/somewhere/smoke.spr";
        options_.if_file_exists = IfFileExists::Overwrite;
    }

    void extract() { extract_frames(options_, view_, scratch_); }

    std::set<std::string> files() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
            names.insert(entry.path().filename().string());
        }
        return names;
    }

    // The red byte of the first pixel of an extracted BMP file.
    std::uint8_t red_of_bmp(const std::string& name) const {
        return read_file(folder_.file(name)).at(54 + 2);
    }

    RecordedServices services_;
    TemporaryFolder folder_;
    RecordedExtraction view_;
    ExtractionOptions options_;
    TestSurface scratch_{1, 1};
};

TEST_F(FrameExtraction, SelectedFramesAreNamedByBaseNameAndNumber) {
    extract();
    EXPECT_EQ(files(), (std::set<std::string>{"smoke_0.bmp", "smoke_1.bmp", "smoke_2.bmp"}));
    EXPECT_EQ(red_of_bmp("smoke_0.bmp"), 10);
    EXPECT_EQ(red_of_bmp("smoke_2.bmp"), 12);
    EXPECT_EQ(view_.items, (Texts{"smoke_0.bmp", "smoke_1.bmp", "smoke_2.bmp"}));
    EXPECT_EQ(view_.progress, 3);
    EXPECT_TRUE(services_.messages.empty());
}

TEST_F(FrameExtraction, FileNumbersHaveNoLeadingZeros) {
    SpriteDocument& sprite = hlspr::document();
    sprite.FrameStore.assign(11, sprite.FrameStore[0]);
    sprite.FrameOrder = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    view_.selected.assign(11, false);
    view_.selected[10] = true;
    extract();
    EXPECT_EQ(files(), std::set<std::string>{"smoke_10.bmp"});
}

TEST_F(FrameExtraction, NoSelectedLineWritesNothing) {
    view_.selected = {false, false, false};
    extract();
    EXPECT_TRUE(files().empty());
    EXPECT_EQ(view_.progress, 0);
    EXPECT_EQ(view_.tests_of_abort, 3);
}

TEST_F(FrameExtraction, SkipOfAllFilesFillsTheBarWithoutWriting) {
    for (const char* name : {"smoke_0.bmp", "smoke_1.bmp", "smoke_2.bmp"}) {
        folder_.write(name, Bytes{1});
    }
    options_.if_file_exists = IfFileExists::Skip;
    extract();
    EXPECT_TRUE(view_.written.empty());
    EXPECT_EQ(view_.progress, 3);
    EXPECT_TRUE(services_.questions.empty());
    EXPECT_EQ(read_file(folder_.file("smoke_1.bmp")).size(), 1U);
}

TEST_F(FrameExtraction, SkipWritesMissingFiles) {
    folder_.write("smoke_1.bmp", Bytes{1});
    options_.if_file_exists = IfFileExists::Skip;
    extract();
    EXPECT_EQ(view_.written, (Texts{"smoke_0.bmp", "smoke_2.bmp"}));
}

TEST_F(FrameExtraction, AskAnsweredNoKeepsTheFileAndContinues) {
    folder_.write("smoke_1.bmp", Bytes{1});
    options_.if_file_exists = IfFileExists::Ask;
    services_.answer = false;
    extract();
    EXPECT_EQ(services_.questions, Texts{"File smoke_1.bmp Already Exists. Overwrite?"});
    EXPECT_EQ(view_.written, (Texts{"smoke_0.bmp", "smoke_2.bmp"}));
    EXPECT_EQ(read_file(folder_.file("smoke_1.bmp")).size(), 1U);
}

TEST_F(FrameExtraction, AskAnsweredYesOverwrites) {
    folder_.write("smoke_1.bmp", Bytes{1});
    options_.if_file_exists = IfFileExists::Ask;
    extract();
    EXPECT_EQ(services_.questions.size(), 1U);
    EXPECT_EQ(red_of_bmp("smoke_1.bmp"), 11);
}

TEST_F(FrameExtraction, OverwriteNeverAsks) {
    folder_.write("smoke_1.bmp", Bytes{1});
    extract();
    EXPECT_TRUE(services_.questions.empty());
    EXPECT_EQ(red_of_bmp("smoke_1.bmp"), 11);
}

TEST_F(FrameExtraction, FolderOfTheNameIsNotAnExistingFile) {
    std::filesystem::create_directory(folder_.file("smoke_0.bmp"));
    options_.if_file_exists = IfFileExists::Skip;
    view_.selected = {true, false, false};
    EXPECT_FAILURE(extract(), PermissionDenied);
}

TEST_F(FrameExtraction, Order102OmitsStoredFrame0) {
    hlspr::document().FrameOrder = {1, 0, 2};
    extract();
    EXPECT_EQ(view_.written, (Texts{"smoke_1.bmp", "smoke_2.bmp"}));
    EXPECT_EQ(red_of_bmp("smoke_1.bmp"), 11);
    EXPECT_EQ(red_of_bmp("smoke_2.bmp"), 12);
}

TEST_F(FrameExtraction, ExistingFileIsTestedByPositionNotFrame) {
    hlspr::document().FrameOrder = {2, 1, 0};
    folder_.write("smoke_0.bmp", Bytes{1});
    folder_.write("smoke_2.bmp", Bytes{1});
    options_.if_file_exists = IfFileExists::Ask;
    extract();
    EXPECT_EQ(services_.questions, Texts{"File smoke_0.bmp Already Exists. Overwrite?"});
    EXPECT_EQ(view_.items, Texts{"smoke_0.bmp"});
    EXPECT_EQ(view_.written, Texts{"smoke_2.bmp"});
}

TEST_F(FrameExtraction, ChangedOrderMayRepeatUntilAborted) {
    hlspr::document().FrameOrder = {1, 0, 2};
    view_.selected = {false, true, false};
    view_.abort_at_test = 9;
    extract();
    EXPECT_EQ(view_.written.size(), 8U);
    EXPECT_EQ(files(), std::set<std::string>{"smoke_0.bmp"});
}

TEST_F(FrameExtraction, AbortTakesEffectAtTheNextLine) {
    view_.abort_at_test = 1;
    extract();
    EXPECT_EQ(view_.written, Texts{"smoke_0.bmp"});
}

TEST_F(FrameExtraction, UnsavedSpriteUsesTheTypedName) {
    options_.sprite_path = "Untitled";
    view_.selected = {true, false, false};
    extract();
    EXPECT_EQ(files(), std::set<std::string>{"Untitled_0.bmp"});
}

TEST_F(FrameExtraction, EightBitsWritesNoBmpFile) {
    options_.eight_bits = true;
    extract();
    EXPECT_TRUE(files().empty());
    EXPECT_EQ(view_.progress, 3);
}

TEST_F(FrameExtraction, TgaAndPcxUseTheCompressedChoice) {
    for (const bool compressed : {false, true}) {
        options_.compressed = compressed;
        options_.format = ExtractionFormat::Tga;
        extract();
        EXPECT_EQ(read_file(folder_.file("smoke_0.tga")).at(2), compressed ? 10 : 2);
        options_.format = ExtractionFormat::Pcx;
        extract();
        EXPECT_EQ(read_file(folder_.file("smoke_0.pcx")).at(2), compressed ? 1 : 0);
    }
}

TEST_F(FrameExtraction, LineWithoutAFrameIsASubscriptFailure) {
    view_.selected.push_back(true);
    EXPECT_FAILURE(extract(), SubscriptOutOfRange);
    EXPECT_EQ(view_.written.size(), 3U);
}

} // namespace
} // namespace varnoth::test
