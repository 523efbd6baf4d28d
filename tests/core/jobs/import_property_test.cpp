// Compares the import with a reference implementation on random sets of pictures.
#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/jobs/ImportPipeline.h"
#include "core/quantize/mixpals.h"
#include "core/sprite/hlspr.h"
#include "reference/Import.h"
#include "support/PictureFolder.h"
#include "support/RecordedImport.h"
#include "support/ScriptedAddFrames.h"
#include "support/expect_failure.h"
#include "support/thoroughness.h"

namespace varnoth::test {
namespace {

// The user's input for one import.
struct Clicks {
    PictureFormat format = PictureFormat::Bmp;
    std::vector<bool> selected;
    bool resize = false;
    bool pick_enabled = false;
    std::int32_t pick_x = 0;
    std::int32_t pick_y = 0;
    std::optional<std::size_t> cancel_at; ///< number of the event that Cancel is pressed at
};

// A random set of pictures and the clicks that select them.
class Case {
  public:
    Case(std::uint32_t seed, std::int32_t most_side) : random_(seed) {
        const std::array formats{PictureFormat::Bmp, PictureFormat::Bmp, PictureFormat::Tga,
                                 PictureFormat::Pcx};
        clicks_.format = formats.at(below(formats.size()));
        const auto width = side(most_side);
        const auto height = side(most_side);
        const std::size_t pictures = 1 + below(5);
        for (std::size_t i = 0; i < pictures; ++i) {
            // Occasionally one of another size, which the selection rejects.
            const bool other_size = below(12) == 0;
            add_picture("p" + std::to_string(i), other_size ? side(most_side) : width, height);
            clicks_.selected.push_back(below(6) != 0);
        }
        clicks_.selected[below(pictures)] = true;
        clicks_.resize = below(2) == 0;
        clicks_.pick_enabled = below(2) == 0;
        clicks_.pick_x = static_cast<std::int32_t>(below(static_cast<std::uint32_t>(width)));
        clicks_.pick_y = static_cast<std::int32_t>(below(static_cast<std::uint32_t>(height)));
        if (below(4) == 0) {
            clicks_.cancel_at = 1 + below(8 * pictures);
        }
        sprite_width_ = below(3) == 0 ? width : side(most_side);
        sprite_height_ = below(3) == 0 ? height : side(most_side);
    }

    const Clicks& clicks() const { return clicks_; }

    std::int32_t sprite_width() const { return sprite_width_; }

    std::int32_t sprite_height() const { return sprite_height_; }

    std::unique_ptr<ScriptedAddFrames> form() const {
        auto form =
            std::make_unique<ScriptedAddFrames>(folder_->path(), clicks_.format, clicks_.pick_enabled);
        for (std::size_t i = 0; i < clicks_.selected.size(); ++i) {
            if (clicks_.selected[i]) {
                form->click(static_cast<std::int16_t>(i));
            }
        }
        form->choose_resize(clicks_.resize);
        form->pick(clicks_.pick_x, clicks_.pick_y);
        return form;
    }

    const Texts& messages() const { return services_->messages; }

  private:
    std::uint32_t number() { return static_cast<std::uint32_t>(random_()); }

    std::uint32_t below(std::size_t limit) { return number() % static_cast<std::uint32_t>(limit); }

    std::int32_t side(std::int32_t most) {
        return 1 + static_cast<std::int32_t>(below(static_cast<std::size_t>(most)));
    }

    void add_picture(const std::string& name, std::int32_t width, std::int32_t height) {
        const Character character = all_characters[below(std::size(all_characters))];
        const Colours colours =
            random_colours(static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                           static_cast<std::size_t>(width), character, number());
        const auto short_width = static_cast<std::int16_t>(width);
        const auto short_height = static_cast<std::int16_t>(height);
        if (clicks_.format == PictureFormat::Bmp) {
            folder_->add_bmp(name + ".bmp", width, height, colours, below(3) == 0 ? 8 : 24);
        } else {
            folder_->add(name + std::string(extension_of(clicks_.format)), clicks_.format, short_width,
                         short_height, colours);
        }
    }

    std::mt19937 random_;
    std::unique_ptr<RecordedServices> services_ = std::make_unique<RecordedServices>();
    std::unique_ptr<PictureFolder> folder_ = std::make_unique<PictureFolder>(*services_);
    Clicks clicks_;
    std::int32_t sprite_width_ = 0;
    std::int32_t sprite_height_ = 0;
};

std::string text_of(const SpriteDocument& sprite) {
    const auto append = [](std::string& text, const auto& bytes) { text.append(bytes.begin(), bytes.end()); };
    std::string text;
    append(text, to_bytes(sprite.SpriteHeader));
    append(text, to_bytes(sprite.Palette));
    append(text, to_bytes(sprite.FrameHeader));
    return text;
}

// The state before and after one of the two imports.
struct Side {
    SpriteDocument sprite;
    bool dirty = false;
    RecordedImport view;
    std::optional<Failure> failure;
    Colours last_picture;
    Colours sheet;
};

// Runs an import on the document of one side.
template <typename Import>
void run(Side& side, const Case& input, Import&& import) {
    hlspr::document() = side.sprite;
    hlspr::SpriteDirty = side.dirty;
    const std::unique_ptr<ScriptedAddFrames> form = input.form();
    side.view.abort = false;
    side.view.events.clear();
    side.view.on_event = [&](const std::string&) {
        if (side.view.events.size() == input.clicks().cancel_at) {
            side.view.abort = true;
        }
    };
    side.failure = failure_in([&] { import(*form); });
    side.sprite = hlspr::document();
    side.dirty = hlspr::SpriteDirty;
    side.last_picture = colours_of(form->Buffer2());
    side.sheet = colours_of(form->jojoPalette());
}

Colours colours_of(const std::array<RGBQUAD, 256>& palette) {
    Colours colours;
    std::ranges::transform(palette, std::back_inserter(colours),
                           [](const RGBQUAD& entry) { return colour_of(entry); });
    return colours;
}

// Counts of the interesting events, so that a test can check that they occurred.
struct Sightings {
    int reduced_pictures = 0;
    int reduced_sheets = 0;
    int aborts_before_frames = 0;
    int aborts_among_frames = 0;
    int frames = 0;
};

class ImportProperty : public testing::Test {
  protected:
    ImportProperty() {
        mixpals::InitColorTable();
        mixpals::ImportPalette.fill({});
        mixpals::hLookupPalette.reset();
        mixpals::MixInfo = {};
        mixpals::MixBits = {};
    }

    void new_sprite(std::int32_t width, std::int32_t height) {
        hlspr::new_sprite(width, height, 3, 1);
        shipped_.sprite = hlspr::document();
        plain_.sprite = hlspr::document();
    }

    void expect_same_import(std::uint32_t seed, std::int32_t most_side) {
        Case shipped_case(seed, most_side);
        if (shipped_.sprite.SpriteHeader.Width == 0) {
            new_sprite(shipped_case.sprite_width(), shipped_case.sprite_height());
        }
        run(shipped_, shipped_case, [&](AddFramesForm& form) { import_frames(form, shipped_.view); });
        const Texts shipped_messages = shipped_case.messages();
        // The same case again, with its own messages.
        Case plain_case(seed, most_side);
        run(plain_, plain_case,
            [&](AddFramesForm& form) { reference::import_frames(form, plain_.view, mixing_); });
        EXPECT_EQ(shipped_messages, plain_case.messages());
        expect_same_state();
        note(shipped_case.clicks());
    }

    void expect_same_state() const {
        EXPECT_EQ(shipped_.failure, plain_.failure);
        EXPECT_EQ(shipped_.view.events, plain_.view.events);
        EXPECT_EQ(shipped_.view.lines, plain_.view.lines);
        EXPECT_EQ(shipped_.view.progress, plain_.view.progress);
        EXPECT_EQ(shipped_.view.maximum, plain_.view.maximum);
        EXPECT_EQ(shipped_.view.ends, plain_.view.ends);
        EXPECT_EQ(shipped_.dirty, plain_.dirty);
        EXPECT_EQ(text_of(shipped_.sprite), text_of(plain_.sprite));
        EXPECT_EQ(shipped_.sprite.FrameStore, plain_.sprite.FrameStore);
        EXPECT_EQ(shipped_.sprite.FrameOrder, plain_.sprite.FrameOrder);
        EXPECT_EQ(shipped_.last_picture, plain_.last_picture);
        EXPECT_EQ(shipped_.sheet, plain_.sheet);
        EXPECT_EQ(mixpals::ColorCount, mixing_.ColorCount);
        EXPECT_EQ(colours_of(mixpals::ImportPalette), colours_of(mixing_.ImportPalette));
    }

    void note(const Clicks& clicks) {
        const auto& events = shipped_.view.events;
        const auto count = [&](const char* event) {
            return static_cast<int>(std::ranges::count(events, event));
        };
        sightings_.reduced_pictures += count("step Dithering...");
        sightings_.reduced_sheets += count("step Dithering Palette...");
        sightings_.frames += shipped_.sprite.SpriteHeader.FrameCount;
        if (clicks.cancel_at && shipped_.view.abort) {
            const bool before = count("phase Adding Frames...") == 0;
            ++(before ? sightings_.aborts_before_frames : sightings_.aborts_among_frames);
        }
    }

    Side shipped_;
    Side plain_;
    reference::Mixpals mixing_;
    Sightings sightings_;
};

TEST_F(ImportProperty, PicturesOfUpToThreePixelsMatchTheReference) {
    for (std::uint32_t seed = 0; seed < 150; ++seed) {
        SCOPED_TRACE(seed);
        shipped_.sprite.SpriteHeader.Width = 0; // a new sprite each time; the palette is kept
        expect_same_import(seed, 3);
        if (HasFailure()) {
            break;
        }
    }
    EXPECT_GT(sightings_.frames, 150);
}

TEST_F(ImportProperty, RandomPictureSetsMatchTheReference) {
    for (std::uint32_t seed = 1000; seed < 1000 + cases(160U); ++seed) {
        SCOPED_TRACE(seed);
        shipped_.sprite.SpriteHeader.Width = 0;
        expect_same_import(seed, 40);
        if (HasFailure()) {
            break;
        }
    }
    EXPECT_GT(sightings_.reduced_pictures, cases(50));
    EXPECT_GT(sightings_.reduced_sheets, cases(30));
    EXPECT_GE(sightings_.aborts_before_frames, cases(6));
    EXPECT_GE(sightings_.aborts_among_frames, cases(2));
    EXPECT_GT(sightings_.frames, cases(150));
}

TEST_F(ImportProperty, SuccessiveImportsMatchTheReference) {
    new_sprite(17, 23);
    for (std::uint32_t seed = 2000; seed < 2000 + cases(120U); ++seed) {
        SCOPED_TRACE(seed);
        expect_same_import(seed, 30);
        if (HasFailure()) {
            break;
        }
    }
    EXPECT_GT(sightings_.reduced_sheets, cases(15));
    EXPECT_GT(sightings_.frames, cases(80));
}

TEST_F(ImportProperty, FramesOfTheSheetsSizeMatchTheReference) {
    // 512 by 1 is the size of a small sheet, too wide for a picture; 256 by 256 is the largest frame.
    new_sprite(256, 256);
    for (std::uint32_t seed = 3000; seed < 3000 + cases(3U); ++seed) {
        SCOPED_TRACE(seed);
        expect_same_import(seed, 256);
    }
}

} // namespace
} // namespace varnoth::test
