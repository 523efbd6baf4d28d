#include "core/jobs/PictureSelection.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "core/base/bytes.h"
#include "core/sprite/hlspr.h"
#include "support/PictureFolder.h"
#include "support/ScriptedAddFrames.h"
#include "support/expect_failure.h"

namespace varnoth::test {
namespace {

class PictureSelection : public testing::Test {
  protected:
    PictureSelection() { hlspr::new_sprite(64, 64, 2, 0); }

    std::unique_ptr<ScriptedAddFrames> open(PictureFormat format, bool pick_enabled = false) {
        return std::make_unique<ScriptedAddFrames>(folder_.path(), format, pick_enabled);
    }

    void click_all(ScriptedAddFrames& form) {
        for (std::int16_t i = 0; i < form.entry_count(); ++i) {
            form.click(i);
        }
    }

    RecordedServices services_;
    PictureFolder folder_{services_};
};

TEST_F(PictureSelection, TooWidePictureIsUnselectedAndEndsTheProbing) {
    folder_.add_plain_bmp("a.bmp", 32, 32);
    folder_.add_plain_bmp("b.bmp", 300, 32);
    folder_.add_plain_bmp("c.bmp", 32, 32);
    const auto form = open(PictureFormat::Bmp);
    form->click(0);
    form->click(2);
    ASSERT_TRUE(form->size_question_open());
    folder_.write("c.bmp", {}); // invalid too, but must not be probed
    form->click(1);
    EXPECT_EQ(services_.messages, Texts{"File: b.bmp With Size Greater Than 256 x 256."});
    EXPECT_TRUE(form->is_selected(2));
    EXPECT_TRUE(form->is_selected(0));
    EXPECT_FALSE(form->is_selected(1));
    EXPECT_FALSE(form->size_question_open());
}

TEST_F(PictureSelection, FilesAfterAnInvalidOneAreNotProbed) {
    folder_.add_plain_bmp("a.bmp", 300, 32);
    folder_.write("b.bmp", {});

    class BothSelected : public ScriptedAddFrames {
      public:
        using ScriptedAddFrames::ScriptedAddFrames;

        bool is_selected(std::int32_t index) const override { return !(index == 0 && unselected_); }

        void unselect(std::int32_t index) override { unselected_ = unselected_ || index == 0; }

      private:
        bool unselected_ = false;
    } form(folder_.path(), PictureFormat::Bmp, false);

    EXPECT_TRUE(ValidateSelection(form));
    EXPECT_EQ(services_.messages.size(), 1U);
    EXPECT_TRUE(ValidateSelection(form));
    EXPECT_EQ(services_.messages,
              (Texts{"File: a.bmp With Size Greater Than 256 x 256.", "File: b.bmp Bad Format/Corrupt."}));
}

TEST_F(PictureSelection, PicturesOfAnotherSizeOpenTheSizeQuestion) {
    folder_.add_plain_bmp("a.bmp", 32, 32);
    const auto form = open(PictureFormat::Bmp);
    form->click(0);
    EXPECT_TRUE(form->size_question_open());
    EXPECT_EQ(form->set_caption(), "Set Sprite To 32x32");
    EXPECT_EQ(form->resize_caption(), "Resize Pictures To 64x64");
    EXPECT_EQ(form->SizeChoiceWidth, 32);
    EXPECT_EQ(form->SizeChoiceHeight, 32);
    EXPECT_TRUE(services_.messages.empty());
}

TEST_F(PictureSelection, Picture256By256IsValid) {
    folder_.add_plain_bmp("a.bmp", 256, 256);
    folder_.add_plain_bmp("b.bmp", 256, 257);
    folder_.add_plain_bmp("c.bmp", 257, 256);
    const auto form = open(PictureFormat::Bmp);
    form->click(0);
    EXPECT_TRUE(form->is_selected(0));
    EXPECT_TRUE(services_.messages.empty());
    form->click(1);
    form->click(2);
    EXPECT_EQ(services_.messages, (Texts{"File: b.bmp With Size Greater Than 256 x 256.",
                                         "File: c.bmp With Size Greater Than 256 x 256."}));
    EXPECT_FALSE(form->is_selected(1));
    EXPECT_FALSE(form->is_selected(2));
}

TEST_F(PictureSelection, RejectedFileIsNamedAndUnselected) {
    services_.pictures[folder_.write("bad.bmp", Bytes(60, 1))] = {};
    const auto form = open(PictureFormat::Bmp);
    form->click(0);
    EXPECT_EQ(services_.messages, Texts{"File: bad.bmp Bad Format/Corrupt."});
    EXPECT_FALSE(form->is_selected(0));
}

TEST_F(PictureSelection, LaterPictureOfAnotherSizeIsUnselected) {
    folder_.add_plain_bmp("a.bmp", 64, 64);
    folder_.add_plain_bmp("b.bmp", 64, 63);
    folder_.add_plain_bmp("c.bmp", 63, 64);
    const auto form = open(PictureFormat::Bmp);
    click_all(*form);
    EXPECT_EQ(services_.messages, (Texts{"All Selected Pictures Must Have Same Size.",
                                         "All Selected Pictures Must Have Same Size."}));
    EXPECT_TRUE(form->is_selected(0));
    EXPECT_FALSE(form->is_selected(1));
    EXPECT_FALSE(form->is_selected(2));
}

TEST_F(PictureSelection, ResultIsAlwaysTrue) {
    folder_.write("bad.bmp", Bytes(60, 1));
    const auto form = open(PictureFormat::Bmp);
    EXPECT_TRUE(ValidateSelection(*form));
    EXPECT_FAILURE(form->click(0), InvalidPicture); // the preview is updated despite the message
    EXPECT_EQ(services_.messages.size(), 1U);
}

TEST_F(PictureSelection, OpenSizeQuestionStaysOpenWhenTheSizesAgree) {
    folder_.add_plain_bmp("a.bmp", 32, 16);
    const auto form = open(PictureFormat::Bmp);
    form->click(0);
    ASSERT_TRUE(form->size_question_open());
    hlspr::new_sprite(32, 16, 2, 0);
    EXPECT_TRUE(ValidateSelection(*form));
    EXPECT_TRUE(form->size_question_open());
    EXPECT_EQ(form->SizeChoiceWidth, 32);
    EXPECT_EQ(form->SizeChoiceHeight, 16);
}

TEST_F(PictureSelection, PreviewShowsAnEntryThatWasUnselected) {
    folder_.add_plain_bmp("a.bmp", 300, 2, 0x445566);
    const auto form = open(PictureFormat::Bmp);
    form->click(0);
    EXPECT_FALSE(form->is_selected(0));
    EXPECT_EQ(form->Picture1().ScaleWidth(), 300);
    EXPECT_EQ(form->Picture1().Point(0, 0), 0x445566);
}

TEST_F(PictureSelection, TopLeftPixelIsTransparentUntilOneIsPicked) {
    folder_.add_bmp("a.bmp", 2, 1, {0x111111, 0x222222});
    folder_.add_bmp("b.bmp", 2, 1, {0x333333, 0x444444});
    const auto form = open(PictureFormat::Bmp, true);
    form->click(0);
    EXPECT_EQ(form->transparent_colour(), 0x111111);
    form->pick(1, 0);
    EXPECT_EQ(form->transparent_colour(), 0x222222);
    form->click(1);
    EXPECT_EQ(form->transparent_colour(), 0x222222);
}

TEST_F(PictureSelection, TransparentColourStaysWithoutThePicker) {
    folder_.add_plain_bmp("a.bmp", 2, 1);
    const auto form = open(PictureFormat::Bmp, false);
    form->click(0);
    form->pick(1, 0);
    EXPECT_EQ(form->transparent_colour(), 0);
}

TEST_F(PictureSelection, TgaAndPcxPicturesAreDrawnAtTheirOwnSize) {
    const Colours colours{0x0000FF, 0x00FF00, 0xFF0000, 0x010203, 0x040506, 0x070809};
    for (const PictureFormat format : {PictureFormat::Tga, PictureFormat::Pcx}) {
        folder_.add("a" + std::string(extension_of(format)), format, 3, 2, colours);
        const auto form = open(format);
        form->Picture1().AutoSize = true;
        form->click(0);
        EXPECT_EQ(colours_of(form->Picture1()), colours);
        EXPECT_FALSE(form->Picture1().AutoSize);
    }
}

TEST_F(PictureSelection, NegativeHeightFailsBeforeTheTargetIsChanged) {
    // Negative heights load at 16 bits in the TGA reader and at an unknown depth in the PCX reader.
    auto tga = test::tga_file(2, -2, {1, 2});
    tga[16] = 16;
    folder_.write("a.tga", tga);
    auto pcx = test::pcx_file(2, 1, {1, 2});
    pcx[3] = 2;
    pcx[65] = 1;
    put_i16(pcx, 10, -2);
    folder_.write("a.pcx", pcx);
    for (const PictureFormat format : {PictureFormat::Tga, PictureFormat::Pcx}) {
        const auto form = open(format);
        PictureSurface& target = form->Picture1();
        target.PSet(0, 0, 0x778899);
        EXPECT_FAILURE(LoadSelectedPicture(*form, 0, target), InvalidPropertyValue);
        EXPECT_EQ(target.Point(0, 0), 0x778899);
        EXPECT_EQ(target.ScaleMode, ScalePixels);
        EXPECT_EQ(target.Parent()->ScaleMode, ScalePixels);
    }
}

TEST_F(PictureSelection, TargetIsNeverLargerThanATgaOrPcxPicture) {
    const Colours colours(40 * 30, 7);
    folder_.write("a.tga", test::tga_file(40, 30, colours));
    folder_.write("a.pcx", test::pcx_file(40, 30, colours));
    for (const PictureFormat format : {PictureFormat::Tga, PictureFormat::Pcx}) {
        const auto form = open(format);
        PictureSurface& target = form->Picture1();
        target.SetWidth(1);
        target.SetHeight(1);
        std::int32_t widest = 0;
        std::int32_t highest = 0;
        target.on_change = [&] {
            widest = std::max(widest, target.bitmap().width());
            highest = std::max(highest, target.bitmap().height());
        };
        LoadSelectedPicture(*form, 0, target);
        EXPECT_EQ(colours_of(target), colours);
        EXPECT_EQ(widest, 40);
        EXPECT_EQ(highest, 30);
    }
}

TEST_F(PictureSelection, RejectedTgaOrPcxFileKeepsThePreview) {
    auto tga = test::tga_file(2, 1, {1, 2});
    tga[2] = 7;
    folder_.write("a.tga", tga);
    auto pcx = test::pcx_file(2, 1, {1, 2});
    pcx[0] = 11;
    folder_.write("a.pcx", pcx);
    for (const PictureFormat format : {PictureFormat::Tga, PictureFormat::Pcx}) {
        const auto form = open(format);
        form->Picture1().SetWidth(1);
        form->Picture1().SetHeight(1);
        form->Picture1().PSet(0, 0, 0x778899);
        form->click(0);
        EXPECT_EQ(colours_of(form->Picture1()), Colours{0x778899});
        EXPECT_FALSE(form->is_selected(0));
    }
    EXPECT_EQ(services_.messages,
              (Texts{"File: a.tga Bad Format/Corrupt.", "File: a.pcx Bad Format/Corrupt."}));
}

TEST_F(PictureSelection, TgaPictureOfHeight0DoesNotSetTheFirstSize) {
    folder_.write("a.tga", test::tga_file(8, 0, {}));
    folder_.write("b.tga", test::tga_file(64, 64, Colours(64 * 64, 5)));

    class BothSelected : public ScriptedAddFrames {
      public:
        using ScriptedAddFrames::ScriptedAddFrames;

        bool is_selected(std::int32_t) const override { return true; }
    } form(folder_.path(), PictureFormat::Tga, false);

    EXPECT_TRUE(ValidateSelection(form));
    EXPECT_TRUE(services_.messages.empty());
    EXPECT_EQ(form.SizeChoiceWidth, 8);
}

TEST_F(PictureSelection, JpegSizeComesFromItsFrameHeader) {
    folder_.write("a.jpg", Bytes{0xFF, 0xD8, 0xFF, 0xC0, 0, 11, 8, 0, 20, 0, 30, 1, 1, 0x11, 0});
    services_.pictures[folder_.file("a.jpg")] = surface_of(30, 20, Colours(600, 9))->Image();
    const auto form = open(PictureFormat::Jpg);
    form->click(0);
    EXPECT_TRUE(services_.messages.empty());
    EXPECT_EQ(form->set_caption(), "Set Sprite To 30x20");
    EXPECT_EQ(form->Picture1().ScaleWidth(), 30);
    EXPECT_TRUE(form->Picture1().AutoSize);
}

TEST_F(PictureSelection, UndecodablePictureThatPassedTheProbeFails) {
    folder_.write("a.bmp", bmp_header(4, 4, 24));
    const auto form = open(PictureFormat::Bmp);
    EXPECT_FAILURE(form->click(0), InvalidPicture);
}

} // namespace
} // namespace varnoth::test
