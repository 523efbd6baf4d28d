#include "reference/Import.h"

#include <cmath>
#include <string>

#include "base/number_text.h"
#include "base/numbers.h"
#include "codecs/BmpMod.h"
#include "import/PictureSelection.h"
#include "platform/Services.h"
#include "reference/Dither.h"
#include "reference/ProcessPicture1.h"
#include "sprite/hlspr.h"

namespace varnoth::reference {

namespace {

constexpr std::int32_t optimal_mode = 1;

bool same_channels(const RGBQUAD& a, const RGBQUAD& b) {
    return a.rgbRed == b.rgbRed && a.rgbGreen == b.rgbGreen && a.rgbBlue == b.rgbBlue;
}

} // namespace

void PaletteMixing::InitColorTable() {
    ColorCount = 0;
    ColorTable.assign(1001, RGBQUAD{});
}

bool PaletteMixing::PrepareMixBits(const PictureSurface& surface) {
    if (surface.ScaleWidth() == MixInfo.bmWidth && surface.ScaleHeight() == MixInfo.bmHeight) {
        return true;
    }
    MixInfo = surface.description();
    if (MixInfo.bmBitsPixel < 24) {
        MixBits.shrink();
        return false;
    }
    MixBits.size_for(MixInfo);
    return true;
}

RGBQUAD PaletteMixing::pixel_at(std::int32_t x, std::int32_t y) const {
    return {MixBits.at(0, x, y), MixBits.at(1, x, y), MixBits.at(2, x, y), 0};
}

bool PaletteMixing::SeekColorInTable(const RGBQUAD& colour, std::int32_t limit) const {
    const std::int32_t upper = static_cast<std::int32_t>(ColorTable.size()) - 1;
    for (std::int32_t position = 0; position <= limit && position <= upper; ++position) {
        if (same_channels(ColorTable[static_cast<std::size_t>(position)], colour)) {
            return true;
        }
    }
    return false;
}

bool PaletteMixing::AddPictureColors(const PictureSurface& surface) {
    if (!PrepareMixBits(surface)) {
        return false;
    }
    MixBits.read(surface);
    for (std::int32_t y = 0; y < surface.ScaleHeight(); ++y) {
        yield_to_events();
        for (std::int32_t x = 0; x < surface.ScaleWidth(); ++x) {
            const RGBQUAD colour = pixel_at(x, y);
            if (!SeekColorInTable(colour, ColorCount)) {
                ColorTable[static_cast<std::size_t>(ColorCount)] = colour;
                ++ColorCount;
                if (ColorCount > static_cast<std::int32_t>(ColorTable.size()) - 1) {
                    ColorTable.resize(ColorTable.size() + 1000);
                }
            }
        }
    }
    return true;
}

void PaletteMixing::DrawColorTable(PictureSurface& surface) const {
    surface.SetWidth(512);
    surface.SetHeight(512);
    surface.SetBackColor(colour_of(ColorTable[0]));
    std::int32_t x = 0;
    std::int32_t y = 0;
    for (std::int32_t position = 0; position <= ColorCount; ++position) {
        surface.PSet(x, y, colour_of(ColorTable[static_cast<std::size_t>(position)]));
        if (x <= surface.ScaleWidth()) {
            x = x + 1;
        } else {
            x = 0;
            y = y + 1;
        }
    }
    for (y = 0; y < surface.ScaleHeight(); ++y) {
        if (surface.Point(0, y) == surface.BackColor() && surface.Point(0, y + 1) == surface.BackColor()) {
            surface.SetHeight(y + 1);
            break;
        }
    }
}

bool PaletteMixing::SeekColorInPalette(const RGBQUAD& colour, std::int32_t limit) const {
    for (std::int32_t position = 0; position <= limit && position <= 255; ++position) {
        if (same_channels(ImportPalette[static_cast<std::size_t>(position)], colour)) {
            return true;
        }
    }
    return false;
}

void PaletteMixing::FinalizePalette(const PictureSurface& surface) {
    InitColorTable();
    PrepareMixBits(surface);
    MixBits.read(surface);
    for (std::int32_t y = 0; y < surface.ScaleHeight(); ++y) {
        yield_to_events();
        for (std::int32_t x = 0; x < surface.ScaleWidth(); ++x) {
            const RGBQUAD colour = pixel_at(x, y);
            if (!SeekColorInPalette(colour, ColorCount)) {
                check_subscript(ColorCount, 256);
                ImportPalette[static_cast<std::size_t>(ColorCount)] = colour;
                ++ColorCount;
            }
        }
    }
    LookupPalette = ImportPalette;
    has_lookup = true;
}

void PaletteMixing::SwapTransparent(const RGBQUAD& colour) {
    bool moved = false;
    RGBQUAD remembered;
    for (std::size_t i = 0; i < 256; ++i) {
        if (same_channels(ImportPalette[i], colour)) {
            if (!moved) {
                remembered = ImportPalette[255];
                ImportPalette[255] = colour;
                ImportPalette[i] = remembered;
                moved = true;
            } else {
                ImportPalette[255] = colour;
                ImportPalette[i] = remembered;
            }
        }
    }
}

std::int16_t PaletteMixing::nearest_index(const RGBQUAD& colour) const {
    if (!has_lookup) {
        fail(Failure::Overflow);
    }
    std::int16_t nearest = 0;
    std::int32_t nearest_distance = 1 << 30;
    for (std::int16_t i = 0; i < 256; ++i) {
        const RGBQUAD& entry = LookupPalette[static_cast<std::size_t>(i)];
        const std::int32_t to_red = entry.rgbRed - colour.rgbRed;
        const std::int32_t to_green = entry.rgbGreen - colour.rgbGreen;
        const std::int32_t to_blue = entry.rgbBlue - colour.rgbBlue;
        const std::int32_t distance = to_red * to_red + to_green * to_green + to_blue * to_blue;
        if (distance < nearest_distance) {
            nearest_distance = distance;
            nearest = i;
        }
    }
    return nearest;
}

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

void add_frame(SpriteDocument& sprite, const PictureSurface& picture, const PaletteMixing& mixing) {
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
            sprite.FrameStore[slot][at] =
                narrow<std::uint8_t>(mixing.nearest_index(quad_of(picture.Point(x, y))));
            ++at;
        }
    }
}

namespace {

// What both passes do with one picture.
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

RGBQUAD channels_of(Colour c) {
    const std::int32_t red = c % 256;
    const auto blue = static_cast<std::int32_t>(std::floor(c / 65536.0));
    const auto green = static_cast<std::int32_t>(std::floor((c - blue * 65536.0 - red) / 256.0));
    return {narrow<std::uint8_t>(blue), narrow<std::uint8_t>(green), narrow<std::uint8_t>(red), 0};
}

} // namespace

void import_frames(AddFramesForm& form, ImportView& view, PaletteMixing& mixing) {
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
            mixing.SwapTransparent(channels_of(form.transparent_colour()));
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
