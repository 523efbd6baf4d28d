#include "reference/Import.h"

#include <cmath>
#include <string>

#include "core/base/number_text.h"
#include "core/base/numbers.h"
#include "core/codecs/BmpMod.h"
#include "core/jobs/PictureSelection.h"
#include "core/services/Services.h"
#include "core/sprite/hlspr.h"
#include "reference/Dither.h"
#include "reference/ProcessPicture1.h"

namespace varnoth::reference {

namespace {

constexpr std::int32_t optimal_mode = 1;

} // namespace

void stretch(const PictureSurface& from, PictureSurface& to) {
    const std::int32_t width = to.bitmap().width();
    const std::int32_t height = to.bitmap().height();
    for (std::int32_t y = 0; y < height; ++y) {
        for (std::int32_t x = 0; x < width; ++x) {
            const std::int32_t from_x = ((2 * x + 1) * from.bitmap().width() - 1) / (2 * width);
            const std::int32_t from_y = ((2 * y + 1) * from.bitmap().height() - 1) / (2 * height);
            if (from.bitmap().contains(from_x, from_y)) {
                to.PSet(x, y, from.Point(from_x, from_y));
            }
        }
    }
}

void add_frame(SpriteDocument& sprite, const PictureSurface& picture, const Mixpals& mixing) {
    sprite.SpriteHeader.FrameCount = checked_add(sprite.SpriteHeader.FrameCount, 1);
    const auto number = narrow<std::int16_t>(sprite.SpriteHeader.FrameCount - 1);
    const auto slot = static_cast<std::size_t>(number);
    sprite.FrameOrder.resize(slot + 1);
    sprite.FrameOrder[slot] = number;
    sprite.FrameStore.resize(slot + 1);
    const std::int32_t width = picture.bitmap().width();
    const std::int32_t height = picture.bitmap().height();
    check_subscript(0, width * height);
    sprite.FrameStore[slot] = ByteArray(static_cast<std::size_t>(width * height));
    if (number == 0) {
        for (std::size_t i = 0; i < 256; ++i) {
            const RGBQUAD& entry = mixing.ImportPalette[i];
            sprite.Palette.Colours[i] = {entry.rgbRed, entry.rgbGreen, entry.rgbBlue};
        }
    }
    std::size_t at = 0;
    for (std::int32_t y = 0; y < height; ++y) {
        yield_to_events();
        for (std::int32_t x = 0; x < width; ++x) {
            yield_to_events();
            const Colour colour = picture.Point(x, y);
            sprite.FrameStore[slot][at] =
                narrow<std::uint8_t>(mixing.nearest_index(red_of(colour), green_of(colour), blue_of(colour)));
            ++at;
        }
    }
}

namespace {

// Loads, stretches and reduces one picture, in both passes.
void prepare(AddFramesForm& form, std::int16_t index, ProcessPicture1& toolbox, ImportView* view) {
    LoadSelectedPicture(form, index, form.Buffer1());
    stretch(form.Buffer1(), form.Buffer2());
    bool reduce = true;
    if (form.format() == PictureFormat::Bmp) {
        std::int32_t width = 0;
        std::int32_t height = 0;
        std::int16_t depth = 0;
        std::int16_t compression = 0;
        BmpMod::ProbeBmp(path_of_entry(form, index), width, height, depth, compression);
        if (depth < 9) {
            reduce = false;
        }
    }
    if (reduce && toolbox.is_more_than_256(form.Buffer2())) {
        if (view != nullptr) {
            view->show_step("Dithering...");
        }
        transform_to_8bit(optimal_mode, form.Buffer2(), form.Buffer2());
    }
}

void swap_transparent(Mixpals& mixing, Colour c) {
    const std::int32_t red = c % 256;
    const auto blue = static_cast<std::int32_t>(std::floor(c / 65536.0));
    const auto green = static_cast<std::int32_t>(std::floor((c - blue * 65536.0 - red) / 256.0));
    mixing.SwapTransparent(narrow<std::uint8_t>(red), narrow<std::uint8_t>(green),
                           narrow<std::uint8_t>(blue));
}

} // namespace

void import_frames(AddFramesForm& form, ImportView& view, Mixpals& mixing) {
    std::int16_t selected = 0;
    for (std::int32_t i = 0; i < form.entry_count(); ++i) {
        if (form.is_selected(i)) {
            selected = checked_add(selected, 1);
        }
    }
    if (form.entry_count() == 0 || selected == 0) {
        show_message("Select Picture/s To Add.");
        return;
    }
    if (!ValidateSelection(form)) {
        return;
    }
    view.open_progress("Building Palette...", 2 * selected + 1);
    hlspr::clear_frames();

    const SpriteHeaderRecord header = hlspr::document().SpriteHeader;
    double width = form.Picture1().ScaleWidth();
    double height = form.Picture1().ScaleHeight();
    if (form.size_question_open() && !form.set_sprite_chosen()) {
        width = header.Width;
        height = header.Height;
    } else if (form.size_question_open()) {
        hlspr::new_sprite(form.SizeChoiceWidth, form.SizeChoiceHeight, header.SpriteType, header.RenderMode);
        view.show_sprite_size(
            std::to_string(form.SizeChoiceWidth) + " x " + std::to_string(form.SizeChoiceHeight),
            "-" + number_text(form.SizeChoiceWidth / 2.0) + ", " + number_text(form.SizeChoiceHeight / 2.0));
    }
    form.Buffer2().SetWidth(width);
    form.Buffer2().SetHeight(height);

    ProcessPicture1 toolbox;
    view.show_step("Initializing...");
    mixing.InitColorTable();
    for (std::int16_t i = 0; i < form.entry_count() && !view.aborted(); i = checked_add(i, 1)) {
        yield_to_events();
        if (form.is_selected(i)) {
            view.show_step("Loading Picture...");
            prepare(form, i, toolbox, &view);
            view.show_step("Picture Color Lookup...");
            mixing.AddPictureColors(form.Buffer2());
            view.advance();
        }
    }

    const bool aborted = view.aborted();
    if (!aborted) {
        mixing.DrawColorTable(form.jojoPalette());
        if (toolbox.is_more_than_256(form.jojoPalette())) {
            view.show_step("Dithering Palette...");
            transform_to_8bit(optimal_mode, form.jojoPalette(), form.jojoPalette());
        }
        view.show_step("Finalizing Palette...");
        mixing.FinalizePalette(form.jojoPalette());
        if (form.pick_enabled()) {
            swap_transparent(mixing, form.transparent_colour());
        }
        view.show_phase("Adding Frames...");
    }

    std::int16_t status = 0;
    for (std::int16_t i = 0; i < form.entry_count() && !view.aborted(); i = checked_add(i, 1)) {
        if (form.is_selected(i)) {
            view.show_step("Frame " + std::to_string(status));
            prepare(form, i, toolbox, nullptr);
            add_frame(hlspr::document(), form.Buffer2(), mixing);
            view.add_frame_line("Frame " + std::to_string(view.frame_line_count()));
            view.advance();
        }
        status = checked_add(status, 1);
    }

    view.close_progress();
    if (aborted) {
        show_message("Process Aborted By User. Some Pictures Where Not Imported.");
    } else {
        if (view.frame_line_count() > 0) {
            view.release_frames();
            hlspr::SpriteDirty = true;
        }
        show_message("Frames Generated Successfully !");
    }
    view.finish();
}

} // namespace varnoth::reference
