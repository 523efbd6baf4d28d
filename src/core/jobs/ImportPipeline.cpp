#include "core/jobs/ImportPipeline.h"

#include <cstdint>
#include <optional>
#include <string>

#include "core/base/number_text.h"
#include "core/base/numbers.h"
#include "core/codecs/BmpMod.h"
#include "core/image/ProcessPicture1.h"
#include "core/image/picture_pixels.h"
#include "core/jobs/PictureSelection.h"
#include "core/quantize/mDither8bpp.h"
#include "core/quantize/mixpals.h"
#include "core/services/Services.h"
#include "core/sprite/hlspr.h"

namespace varnoth {

namespace {

// BMP files of at most this depth are assumed to share one palette on purpose and are never reduced.
constexpr std::int16_t deepest_indexed = 8;

std::int16_t selected_count(const AddFramesForm& form) {
    std::int16_t count = 0;
    for (std::int32_t i = 0; i < form.entry_count(); ++i) {
        if (form.is_selected(i)) {
            count = checked_add(count, 1);
        }
    }
    return count;
}

class Import {
  public:
    Import(AddFramesForm& form, ImportView& view) : form_(form), view_(view) {}

    void run();

  private:
    void settle_frame_size();
    void set_sprite_size(std::int32_t width, std::int32_t height);
    void size_buffer(double width, double height);
    void collect_colours();
    void make_palette();
    void add_frames();
    void load_and_stretch(std::int16_t index);
    void reduce(std::int16_t index, std::optional<std::string_view> step);
    bool may_be_reduced(std::int16_t index) const;
    void show_end(bool aborted);

    ProcessPicture1& toolbox() { return toolbox_ ? *toolbox_ : toolbox_.emplace(); }

    mDither8bpp& dither() { return dither_ ? *dither_ : dither_.emplace(); }

    AddFramesForm& form_;
    ImportView& view_;
    // Created on first use. The whole import uses one toolbox, because its colour list carries over from
    // picture to picture.
    std::optional<ProcessPicture1> toolbox_;
    std::optional<mDither8bpp> dither_;
};

void Import::run() {
    const std::int16_t selected = selected_count(form_);
    if (selected == 0) {
        show_message("Select Picture/s To Add.");
        return;
    }
    if (!ValidateSelection(form_)) {
        return;
    }
    view_.open_progress("Building Palette...", 2 * selected + 1);
    hlspr::clear_frames();
    settle_frame_size();
    view_.show_step("Initializing...");
    mixpals::InitColorTable();
    collect_colours();
    // Only an abort in this pass shows the abort message; one in the second pass ends like a success.
    const bool aborted = view_.aborted();
    if (!aborted) {
        make_palette();
    }
    add_frames();
    view_.close_progress();
    show_end(aborted);
    view_.finish();
}

void Import::settle_frame_size() {
    if (form_.size_question_open() && !form_.set_sprite_chosen()) {
        const SpriteHeaderRecord& header = hlspr::document().SpriteHeader;
        size_buffer(header.Width, header.Height);
        return;
    }
    if (form_.size_question_open()) {
        set_sprite_size(form_.SizeChoiceWidth, form_.SizeChoiceHeight);
    }
    size_buffer(form_.Picture1().ScaleWidth(), form_.Picture1().ScaleHeight());
}

void Import::set_sprite_size(std::int32_t width, std::int32_t height) {
    const SpriteHeaderRecord header = hlspr::document().SpriteHeader;
    hlspr::new_sprite(width, height, header.SpriteType, header.RenderMode);
    view_.show_sprite_size(std::to_string(width) + " x " + std::to_string(height),
                           "-" + number_text(width / 2.0) + ", " + number_text(height / 2.0));
}

void Import::size_buffer(double width, double height) {
    form_.Buffer2().SetWidth(width);
    form_.Buffer2().SetHeight(height);
}

void Import::collect_colours() {
    for (std::int16_t index = 0; index < form_.entry_count() && !view_.aborted();
         index = checked_add(index, 1)) {
        yield_to_events();
        if (!form_.is_selected(index)) {
            continue;
        }
        view_.show_step("Loading Picture...");
        load_and_stretch(index);
        reduce(index, "Dithering...");
        view_.show_step("Picture Color Lookup...");
        mixpals::AddPictureColors(form_.Buffer2());
        view_.advance();
    }
}

void Import::make_palette() {
    PictureSurface& sheet = form_.jojoPalette();
    mixpals::DrawColorTable(sheet);
    if (toolbox().is_more_than_256(sheet)) {
        view_.show_step("Dithering Palette...");
        dither().transform_to_8bit(sheet, sheet);
    }
    view_.show_step("Finalizing Palette...");
    mixpals::FinalizePalette(sheet);
    if (form_.pick_enabled()) {
        const Pixel colour = SplitColor(form_.transparent_colour()); // no reference to a system colour
        mixpals::SwapTransparent(colour.red, colour.green, colour.blue);
    }
    view_.show_phase("Adding Frames...");
}

void Import::add_frames() {
    // The index counts all entries, so the step text shows the position in the list.
    for (std::int16_t index = 0; index < form_.entry_count() && !view_.aborted();
         index = checked_add(index, 1)) {
        if (!form_.is_selected(index)) {
            continue;
        }
        view_.show_step("Frame " + std::to_string(index));
        load_and_stretch(index);
        reduce(index, std::nullopt);
        hlspr::add_frame(form_.Buffer2());
        view_.add_frame_line("Frame " + std::to_string(view_.frame_line_count()));
        view_.advance();
    }
}

void Import::load_and_stretch(std::int16_t index) {
    PictureSurface& loaded = form_.Buffer1();
    PictureSurface& frame = form_.Buffer2();
    LoadSelectedPicture(form_, index, loaded);
    stretch_blt(frame.hDC(), {0, 0, frame.bitmap().width(), frame.bitmap().height()}, loaded.hDC(),
                {0, 0, loaded.bitmap().width(), loaded.bitmap().height()}, SRCCOPY);
}

// Reduces a picture of more than 256 colours to its own optimal palette of 256.
void Import::reduce(std::int16_t index, std::optional<std::string_view> step) {
    if (!may_be_reduced(index) || !toolbox().is_more_than_256(form_.Buffer2())) {
        return;
    }
    if (step) {
        view_.show_step(*step);
    }
    dither().transform_to_8bit(form_.Buffer2(), form_.Buffer2());
}

bool Import::may_be_reduced(std::int16_t index) const {
    if (form_.format() != PictureFormat::Bmp) {
        return true;
    }
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int16_t depth = 0;
    std::int16_t compression = 0;
    // A file that the probe rejects has depth -1 and is not reduced either.
    BmpMod::ProbeBmp(path_of_entry(form_, index), width, height, depth, compression);
    return depth > deepest_indexed;
}

void Import::show_end(bool aborted) {
    if (aborted) {
        show_message("Process Aborted By User. Some Pictures Where Not Imported.");
        return;
    }
    if (view_.frame_line_count() > 0) {
        view_.release_frames();
        hlspr::SpriteDirty = true;
    }
    show_message("Frames Generated Successfully !");
}

} // namespace

void import_frames(AddFramesForm& form, ImportView& view) {
    Import(form, view).run();
}

} // namespace varnoth
