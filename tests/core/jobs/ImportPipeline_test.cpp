#include "core/jobs/ImportPipeline.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "core/quantize/mixpals.h"
#include "core/sprite/hlspr.h"
#include "support/PictureFolder.h"
#include "support/RecordedImport.h"
#include "support/ScriptedAddFrames.h"
#include "support/expect_failure.h"
#include "support/sprites.h"

namespace varnoth::test {
namespace {

constexpr const char* success = "Frames Generated Successfully !";
constexpr const char* abort_message = "Process Aborted By User. Some Pictures Where Not Imported.";

class ImportPipeline : public testing::Test {
  protected:
    ImportPipeline() {
        mixpals::ImportPalette.fill({});
        hlspr::new_sprite(16, 16, 2, 0);
        hlspr::SpriteDirty = false;
    }

    std::unique_ptr<ScriptedAddFrames> open() {
        return std::make_unique<ScriptedAddFrames>(folder_.path(), PictureFormat::Bmp, false);
    }

    std::unique_ptr<ScriptedAddFrames> open_all() {
        auto form = open();
        for (std::int16_t i = 0; i < form->entry_count(); ++i) {
            form->click(i);
        }
        return form;
    }

    void import_all() { import_frames(*open_all(), view_); }

    // Presses Cancel when this happens.
    void cancel_at(const std::string& moment) {
        view_.on_event = [this, moment](const std::string& event) {
            view_.abort = view_.abort || event == moment;
        };
    }

    // Imports a frame, then clears what was recorded; returns the palette.
    auto import_first() {
        add_noise("a.bmp", 1);
        import_all();
        hlspr::SpriteDirty = false;
        services_.messages.clear();
        view_.events.clear();
        view_.releases = 0;
        return hlspr::document().Palette.Colours;
    }

    // No frame came; the list, the palette and the state of the document are those of the first import.
    void expect_only_the_list_kept(const std::array<PaletteColour, 256>& palette) const {
        EXPECT_EQ(hlspr::document().SpriteHeader.FrameCount, 0);
        EXPECT_EQ(hlspr::document().Palette.Colours, palette) << "no first frame brought the new one";
        EXPECT_EQ(view_.lines, Texts{"Frame 0"});
        EXPECT_FALSE(happened("step Frame 0"));
        EXPECT_EQ(view_.releases, 1) << "the list has a line";
        EXPECT_TRUE(hlspr::SpriteDirty);
    }

    void add_noise(const std::string& name, std::uint32_t seed) {
        folder_.add_bmp(name, 16, 16, random_colours(256, 16, Character::FewColours, seed));
    }

    // The colours of a stored frame, looked up in the document's palette.
    static Colours frame_colours(std::size_t number) {
        const SpriteDocument& sprite = hlspr::document();
        Colours colours;
        for (const std::uint8_t index : sprite.FrameStore.at(number).bytes()) {
            const PaletteColour& entry = sprite.Palette.Colours[index];
            colours.push_back(make_colour(entry.red, entry.green, entry.blue));
        }
        return colours;
    }

    bool happened(const std::string& event) const { return std::ranges::count(view_.events, event) > 0; }

    RecordedServices services_;
    PictureFolder folder_{services_};
    RecordedImport view_;
};

TEST_F(ImportPipeline, NothingSelectedOnlyShowsTheMessage) {
    hlspr::document().SpriteHeader.FrameCount = 7;
    const auto empty = open();
    import_frames(*empty, view_);
    add_noise("a.bmp", 1);
    const auto unselected = open();
    import_frames(*unselected, view_);
    EXPECT_EQ(services_.messages, (Texts{"Select Picture/s To Add.", "Select Picture/s To Add."}));
    EXPECT_TRUE(view_.events.empty());
    EXPECT_EQ(hlspr::document().SpriteHeader.FrameCount, 7);
}

TEST_F(ImportPipeline, StepsHappenInTheirOrder) {
    add_noise("a.bmp", 1);
    folder_.add_bmp("b.bmp", 16, 16, random_colours(256, 16, Character::Noise, 2));
    folder_.add_bmp("c.bmp", 16, 16, random_colours(256, 16, Character::Noise, 3));
    import_all();
    EXPECT_EQ(view_.events, (Texts{"open Building Palette...",
                                   "step Initializing...",
                                   "step Loading Picture...",
                                   "step Picture Color Lookup...",
                                   "step Loading Picture...",
                                   "step Picture Color Lookup...",
                                   "step Loading Picture...",
                                   "step Picture Color Lookup...",
                                   "step Dithering Palette...",
                                   "step Finalizing Palette...",
                                   "phase Adding Frames...",
                                   "step Frame 0",
                                   "line Frame 0",
                                   "step Frame 1",
                                   "line Frame 1",
                                   "step Frame 2",
                                   "line Frame 2",
                                   "close",
                                   "release",
                                   "finish"}));
    EXPECT_EQ(services_.messages, Texts{success});
    EXPECT_TRUE(hlspr::SpriteDirty);
}

// All entries are selected, but their files do not exist.
class ManySelected : public ScriptedAddFrames {
  public:
    explicit ManySelected(std::size_t count)
        : ScriptedAddFrames("/none", PictureFormat::Tga, false, Texts(count, "a.tga")) {}

    bool is_selected(std::int32_t /*index*/) const override { return true; }
};

TEST_F(ImportPipeline, ProgressBarRangeExceeds16Bits) {
    ManySelected form(20000);
    view_.abort = true;
    import_frames(form, view_);
    EXPECT_EQ(view_.maximum, 40001);
    ManySelected too_many(32768);
    EXPECT_FAILURE(import_frames(too_many, view_), Overflow);
}

TEST_F(ImportPipeline, Bmp8BitOfTheSpritesSizeIsImportedExactly) {
    Colours colours;
    for (Colour i = 0; i < 256; ++i) {
        colours.push_back(i * 0x010307 & 0xFFFFFF);
    }
    folder_.add_bmp("a.bmp", 16, 16, colours, 8);
    import_all();
    EXPECT_EQ(frame_colours(0), colours);
    EXPECT_FALSE(happened("step Dithering..."));
    EXPECT_FALSE(happened("step Dithering Palette..."));
}

TEST_F(ImportPipeline, AbortAfterSetSpriteKeepsSizeAndBlackPalette) {
    hlspr::document().Palette.Colours[9] = {1, 2, 3};
    folder_.add_plain_bmp("a.bmp", 8, 8);
    services_.on_yield = [&] { view_.abort = true; };
    import_all();
    EXPECT_EQ(hlspr::document().SpriteHeader.Width, 8);
    EXPECT_EQ(hlspr::document().SpriteHeader.FrameCount, 0);
    EXPECT_EQ(hlspr::document().Palette.Colours[9], PaletteColour());
    EXPECT_EQ(services_.messages, Texts{abort_message});
}

TEST_F(ImportPipeline, AbortInFirstPassRemovesFramesKeepsPalette) {
    hlspr::document().Palette.Colours[9] = {1, 2, 3};
    hlspr::document().SpriteHeader.FrameCount = 2;
    view_.lines = {"Frame 0", "Frame 1"};
    add_noise("a.bmp", 1);
    add_noise("b.bmp", 2);
    cancel_at("step Picture Color Lookup...");
    import_all();
    EXPECT_EQ(hlspr::document().SpriteHeader.FrameCount, 0);
    EXPECT_EQ(hlspr::document().Palette.Colours[9], (PaletteColour{1, 2, 3}));
    EXPECT_EQ(view_.lines.size(), 2U);
    EXPECT_EQ(services_.messages, Texts{abort_message});
    EXPECT_FALSE(happened("step Finalizing Palette..."));
    EXPECT_EQ(std::ranges::count(view_.events, "step Loading Picture..."), 1);
    EXPECT_EQ(view_.releases, 0);
    EXPECT_EQ(view_.ends, 1);
    EXPECT_FALSE(hlspr::SpriteDirty);
}

TEST_F(ImportPipeline, AbortInSecondPassReportsSuccess) {
    add_noise("a.bmp", 1);
    add_noise("b.bmp", 2);
    add_noise("c.bmp", 3);
    cancel_at("step Frame 1");
    import_all();
    EXPECT_EQ(hlspr::document().SpriteHeader.FrameCount, 2);
    EXPECT_EQ(view_.lines, (Texts{"Frame 0", "Frame 1"}));
    EXPECT_EQ(services_.messages, Texts{success});
    EXPECT_EQ(view_.releases, 1);
    EXPECT_TRUE(hlspr::SpriteDirty);
}

TEST_F(ImportPipeline, AbortDuringThePaletteReportsSuccess) {
    add_noise("a.bmp", 1);
    cancel_at("step Finalizing Palette...");
    import_all();
    EXPECT_EQ(hlspr::document().SpriteHeader.FrameCount, 0);
    EXPECT_EQ(services_.messages, Texts{success});
    EXPECT_EQ(view_.releases, 0);
}

TEST_F(ImportPipeline, SecondImportAbortedAtPaletteKeepsTheList) {
    const auto palette = import_first();
    add_noise("a.bmp", 2);
    cancel_at("step Finalizing Palette...");
    import_all();
    expect_only_the_list_kept(palette);
    EXPECT_TRUE(happened("phase Adding Frames..."));
    EXPECT_EQ(services_.messages, Texts{success});
}

TEST_F(ImportPipeline, SecondImportOfInvalidFilesKeepsTheList) {
    const auto palette = import_first();
    const auto second = open_all();
    folder_.write("a.bmp", Bytes(60, 1));
    import_frames(*second, view_);
    expect_only_the_list_kept(palette);
    EXPECT_TRUE(happened("step Finalizing Palette..."));
    EXPECT_EQ(services_.messages, (Texts{"File: a.bmp Bad Format/Corrupt.", success}));
}

TEST_F(ImportPipeline, ImportingTwiceKeepsTheLinesOfBoth) {
    add_noise("a.bmp", 1);
    add_noise("b.bmp", 2);
    import_all();
    const auto second = open();
    second->click(1);
    import_frames(*second, view_);
    EXPECT_EQ(hlspr::document().SpriteHeader.FrameCount, 1);
    EXPECT_EQ(view_.lines, (Texts{"Frame 0", "Frame 1", "Frame 2"}));
    EXPECT_TRUE(happened("step Frame 1"));
    EXPECT_EQ(frame_colours(0), random_colours(256, 16, Character::FewColours, 2));
}

TEST_F(ImportPipeline, InvalidFileIsSkippedButStillCounted) {
    add_noise("a.bmp", 1);
    add_noise("b.bmp", 2);
    const auto form = open_all();
    folder_.write("b.bmp", Bytes(60, 1));
    import_frames(*form, view_);
    EXPECT_EQ(services_.messages, (Texts{"File: b.bmp Bad Format/Corrupt.", success}));
    EXPECT_EQ(view_.maximum, 5);
    EXPECT_EQ(view_.progress, 2);
    EXPECT_EQ(hlspr::document().SpriteHeader.FrameCount, 1);
}

TEST_F(ImportPipeline, DocumentIsEmptiedIfAllFilesAreInvalid) {
    add_noise("a.bmp", 1);
    const auto form = open_all();
    folder_.write("a.bmp", Bytes(60, 1));
    hlspr::document().SpriteHeader.FrameCount = 3;
    import_frames(*form, view_);
    EXPECT_EQ(hlspr::document().SpriteHeader.FrameCount, 0);
    EXPECT_TRUE(happened("step Finalizing Palette..."));
    EXPECT_EQ(services_.messages, (Texts{"File: a.bmp Bad Format/Corrupt.", success}));
    EXPECT_EQ(view_.releases, 0);
    EXPECT_FALSE(hlspr::SpriteDirty);
}

// A scan also compares with the next, still unfilled entry of the toolbox's list. The first picture leaves
// its first colour there, so the second picture, which has that colour and 256 others, counts as one of 256.
TEST_F(ImportPipeline, ColourListCarriesOverBetweenPictures) {
    hlspr::new_sprite(16, 17, 2, 0);
    Colours first;
    Colours second{0x010000};
    for (Colour i = 0; i < 272; ++i) {
        first.push_back(0x010000 + i % 256);
        second.push_back(0x020000 + i % 256);
    }
    second.pop_back();
    folder_.add_bmp("b.bmp", 16, 17, second);
    import_all();
    EXPECT_TRUE(happened("step Dithering..."));

    view_.events.clear();
    folder_.add_bmp("a.bmp", 16, 17, first);
    import_all();
    EXPECT_FALSE(happened("step Dithering..."));
}

TEST_F(ImportPipeline, LoadErrorsPropagate) {
    add_noise("a.bmp", 1);
    const auto form = open_all();
    services_.pictures.clear();
    EXPECT_FAILURE(import_frames(*form, view_), InvalidPicture);
    EXPECT_TRUE(view_.open);
}

TEST_F(ImportPipeline, PaletteTailOfAnEarlierImportIsKept) {
    folder_.add_bmp("a.bmp", 16, 16, random_colours(256, 16, Character::FewColours, 8));
    import_all();
    const auto before = hlspr::document().Palette.Colours;
    folder_.add_plain_bmp("a.bmp", 16, 16, 0xABCDEF);
    import_all();
    EXPECT_EQ(hlspr::document().Palette.Colours[0], (PaletteColour{0xEF, 0xCD, 0xAB}));
    for (std::size_t i = 2; i < 256; ++i) {
        EXPECT_EQ(hlspr::document().Palette.Colours[i], before[i]) << i;
    }
}

} // namespace
} // namespace varnoth::test
