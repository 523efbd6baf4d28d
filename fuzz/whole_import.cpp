// Imports picture files made from the input, of every format and some of them corrupt, with the actions of a
// user: selecting, resizing, picking a colour, cancelling. The reference implementation must give the same
// result.
#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>

#include "core/codecs/CBitmap.h"
#include "core/jobs/ImportPipeline.h"
#include "core/sprite/hlspr.h"
#include "fuzzing.h"
#include "reference/Import.h"
#include "support/PictureFolder.h"
#include "support/RecordedImport.h"
#include "support/RecordedServices.h"
#include "support/ScriptedAddFrames.h"
#include "support/sprites.h"

namespace {

using namespace varnoth;

constexpr std::int32_t largest_side = 16;
constexpr std::int32_t most_files = 4;
constexpr std::int32_t most_broken_bytes = 3;
constexpr std::int32_t header_bytes = 128; // of the longest header

struct Size {
    std::int32_t width = 1;
    std::int32_t height = 1;
};

Size size_of(fuzzing::Recipe& recipe) {
    const std::int32_t width = recipe.between(1, largest_side);
    return {width, recipe.between(1, largest_side)};
}

std::vector<Colour> colours_of(fuzzing::Recipe& recipe, const Size& size) {
    const auto count = static_cast<std::size_t>(size.width * size.height);
    const std::size_t manner = recipe.byte() % (std::size(test::all_characters) + 1);
    if (manner == std::size(test::all_characters)) {
        return fuzzing::explicit_colours(recipe, count);
    }
    return test::random_colours(count, static_cast<std::size_t>(size.width), test::all_characters[manner],
                                recipe.byte());
}

std::vector<std::uint8_t> jpeg_header(const Size& size) {
    const auto width = static_cast<std::uint8_t>(size.width);
    const auto height = static_cast<std::uint8_t>(size.height);
    return {0xFF, 0xD8, 0xFF, 0xC0, 0, 11, 8, 0, height, 0, width, 1, 1, 0x11, 0, 0xFF, 0xD9};
}

// A complete TGA or PCX file, or the header of a BMP or JPEG file, whose pixels the test's loader supplies.
std::vector<std::uint8_t> file_of(PictureFormat format, const Size& size, const std::vector<Colour>& colours,
                                  std::int16_t bmp_depth) {
    const auto width = static_cast<std::int16_t>(size.width);
    const auto height = static_cast<std::int16_t>(size.height);
    switch (format) {
    case PictureFormat::Bmp:
        return test::bmp_header(width, height, bmp_depth);
    case PictureFormat::Jpg:
        return jpeg_header(size);
    case PictureFormat::Tga:
        return test::tga_file(width, height, colours);
    default:
        return test::pcx_file(width, height, colours);
    }
}

void break_bytes(fuzzing::Recipe& recipe, std::vector<std::uint8_t>& bytes) {
    for (std::int32_t count = recipe.between(1, most_broken_bytes); count > 0; --count) {
        const auto at = static_cast<std::size_t>(recipe.between(0, header_bytes - 1));
        bytes[at % bytes.size()] = recipe.byte();
    }
}

// The files in the scratch folder, and the user's actions.
class Job {
  public:
    explicit Job(fuzzing::Recipe& recipe) {
        format_ = static_cast<PictureFormat>(recipe.between(0, 3));
        pick_enabled_ = recipe.byte() % 2 == 1;
        resize_ = recipe.byte() % 2 == 1;
        cancel_at_ = recipe.byte();
        pick_at_ = size_of(recipe);
        sprite_size_ = size_of(recipe);
        const Size common = size_of(recipe);
        for (std::int32_t count = recipe.between(1, most_files); count > 0; --count) {
            add_file(recipe, common);
        }
    }

    const Size& sprite_size() const { return sprite_size_; }

    std::size_t cancel_at() const { return cancel_at_; }

    const std::map<std::filesystem::path, Picture>& pictures() const { return pictures_; }

    /// The dialog after all actions.
    std::unique_ptr<test::ScriptedAddFrames> form() const {
        auto form = std::make_unique<test::ScriptedAddFrames>(fuzzing::scratch_folder(), format_,
                                                              pick_enabled_, names_);
        for (std::size_t i = 0; i < names_.size(); ++i) {
            if (selected_[i]) {
                form->click(static_cast<std::int16_t>(i));
            }
        }
        form->choose_resize(resize_);
        form->pick(pick_at_.width - 1, pick_at_.height - 1);
        return form;
    }

  private:
    void add_file(fuzzing::Recipe& recipe, const Size& common) {
        const std::string name =
            "picture" + std::to_string(names_.size()) + std::string(extension_of(format_));
        const std::uint8_t traits = recipe.byte();
        const bool has_own_size = traits % 16 == 1;
        const bool is_broken = traits % 16 == 2;
        const bool does_not_decode = traits % 16 == 3;
        const Size size = has_own_size ? size_of(recipe) : common;
        const std::vector<Colour> colours = colours_of(recipe, size);
        const std::int16_t bmp_depth = traits >= 192 ? 8 : 24;
        std::vector<std::uint8_t> bytes = file_of(format_, size, colours, bmp_depth);
        if (is_broken) {
            break_bytes(recipe, bytes);
        }
        const std::string path = fuzzing::scratch_file(name, bytes);
        if (!does_not_decode) {
            pictures_[path] = test::surface_of(size.width, size.height, colours)->Image();
        }
        names_.push_back(name);
        selected_.push_back(traits % 8 != 0);
    }

    PictureFormat format_ = PictureFormat::Bmp;
    bool pick_enabled_ = false;
    bool resize_ = false;
    std::size_t cancel_at_ = 0;
    Size pick_at_;
    Size sprite_size_;
    std::vector<std::string> names_;
    std::vector<bool> selected_;
    std::map<std::filesystem::path, Picture> pictures_;
};

struct Outcome {
    std::optional<Failure> failure;
    std::vector<std::string> events;
    std::vector<std::string> lines;
    std::vector<std::string> messages;
    std::int32_t progress = 0;
    std::int32_t maximum = 0;
    bool is_dirty = false;
    SpriteDocument sprite;
    std::vector<Colour> last_picture;
    std::vector<Colour> sheet;
};

void reset_state() {
    test::reset_sprite();
    test::reset_mixpals();
    CBitmap::CurrentBitmap = nullptr;
}

template <typename Import>
Outcome run(const Job& job, Import&& import) {
    reset_state();
    hlspr::new_sprite(job.sprite_size().width, job.sprite_size().height, 2, 1);
    test::RecordedServices services;
    services.pictures = job.pictures();
    test::RecordedImport view;
    view.on_event = [&](const std::string&) {
        view.abort = view.abort || view.events.size() == job.cancel_at();
    };
    Outcome outcome;
    std::unique_ptr<test::ScriptedAddFrames> form;
    try {
        form = job.form();
        import(*form, view);
    } catch (const RunTimeFailure& failure) {
        outcome.failure = failure.failure();
    }
    outcome.events = view.events;
    outcome.lines = view.lines;
    outcome.messages = services.messages;
    outcome.progress = view.progress;
    outcome.maximum = view.maximum;
    outcome.is_dirty = hlspr::SpriteDirty;
    outcome.sprite = hlspr::document();
    if (form) {
        outcome.last_picture = test::colours_of(form->Buffer2());
        outcome.sheet = test::colours_of(form->jojoPalette());
    }
    return outcome;
}

void require_same(const Outcome& actual, const Outcome& expected) {
    fuzzing::require(actual.failure == expected.failure, "both imports end in the same way");
    fuzzing::require(actual.messages == expected.messages, "the messages are the same");
    fuzzing::require(actual.events == expected.events, "the events are the same");
    fuzzing::require(actual.lines == expected.lines, "the frame list is the same");
    fuzzing::require(actual.progress == expected.progress && actual.maximum == expected.maximum,
                     "the progress is the same");
    fuzzing::require(actual.is_dirty == expected.is_dirty, "the dirty flag is the same");
    fuzzing::require(to_bytes(actual.sprite.SpriteHeader) == to_bytes(expected.sprite.SpriteHeader) &&
                         to_bytes(actual.sprite.FrameHeader) == to_bytes(expected.sprite.FrameHeader),
                     "the headers are the same");
    fuzzing::require(to_bytes(actual.sprite.Palette) == to_bytes(expected.sprite.Palette),
                     "the palette is the same");
    fuzzing::require(actual.sprite.FrameStore == expected.sprite.FrameStore &&
                         actual.sprite.FrameOrder == expected.sprite.FrameOrder,
                     "the frames are the same");
    fuzzing::require(actual.last_picture == expected.last_picture && actual.sheet == expected.sheet,
                     "the surfaces are the same");
}

// Pictures may differ from the sprite's size; frames smaller than their headers say are not restored.
bool frames_fill_their_headers(const SpriteDocument& sprite) {
    const std::int64_t pixels = std::int64_t{sprite.FrameHeader.FrameWidth} * sprite.FrameHeader.FrameHeight;
    return std::ranges::all_of(sprite.FrameStore,
                               [&](const ByteArray& frame) { return std::ssize(frame.bytes()) == pixels; });
}

// Saves the imported sprite and loads it again.
void save_and_load(const SpriteDocument& imported) {
    hlspr::document() = imported;
    const std::string path = fuzzing::scratch_path("imported.spr");
    fuzzing::require(hlspr::save_sprite(path) == True, "an imported sprite can be saved");
    fuzzing::require(hlspr::load_sprite(path) == True, "a saved sprite can be loaded");
    fuzzing::require(hlspr::document().FrameStore == imported.FrameStore, "the frames are restored");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzzing::AtEnd cleanup(reset_state);
    fuzzing::Recipe recipe(data, size);
    const Job job(recipe);
    const Outcome actual = run(job, [](AddFramesForm& form, ImportView& view) { import_frames(form, view); });
    reference::Mixpals mixing;
    const Outcome expected = run(
        job, [&](AddFramesForm& form, ImportView& view) { reference::import_frames(form, view, mixing); });
    require_same(actual, expected);
    if (!actual.failure && actual.sprite.SpriteHeader.FrameCount > 0 &&
        frames_fill_their_headers(actual.sprite)) {
        save_and_load(actual.sprite);
    }
    return 0;
}
