#include "core/jobs/PictureSelection.h"

#include <optional>

#include "core/base/Truth.h"
#include "core/base/files.h"
#include "core/codecs/BmpMod.h"
#include "core/codecs/JpgMod.h"
#include "core/codecs/LoadPCX.h"
#include "core/codecs/LoadTGA.h"
#include "core/image/Picture.h"
#include "core/services/Services.h"
#include "core/sprite/hlspr.h"

namespace varnoth {

namespace {

constexpr std::int32_t largest_side = 256;

struct Size {
    std::int32_t width = 0;
    std::int32_t height = 0;

    friend bool operator==(const Size&, const Size&) = default;
};

enum class Fault { None, SizesDiffer, TooLarge, BadFormat };

std::string size_text(const Size& size) {
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

Size sprite_size() {
    const SpriteHeaderRecord& header = hlspr::document().SpriteHeader;
    return {header.Width, header.Height};
}

// The size in the header of a picture file; empty when the probe rejects the file.
std::optional<Size> probe(PictureFormat format, const std::string& path) {
    Size size;
    std::int16_t depth = 0;
    std::int16_t compression = 0;
    Truth usable = False;
    switch (format) {
    case PictureFormat::Bmp:
        usable = BmpMod::ProbeBmp(path, size.width, size.height, depth, compression);
        break;
    case PictureFormat::Jpg:
        usable = JpgMod::ProbeJpeg(path, size.width, size.height);
        break;
    case PictureFormat::Tga:
        usable = LoadTGA().GetInfoTGA(path, size.width, size.height, depth);
        break;
    case PictureFormat::Pcx:
        usable = LoadPCX().GetInfoPCX(path, size.width, size.height, depth);
        break;
    }
    return usable == False ? std::nullopt : std::optional(size);
}

void ask_for_size(AddFramesForm& form, const Size& picture) {
    form.SizeChoiceWidth = picture.width;
    form.SizeChoiceHeight = picture.height;
    form.open_size_question("Set Sprite To " + size_text(picture),
                            "Resize Pictures To " + size_text(sprite_size()));
}

// Checks one entry against the size of the first one. While the height of `first` is 0, takes it from the
// entry.
Fault check_entry(AddFramesForm& form, std::int32_t index, Size& first) {
    const std::optional<Size> size = probe(form.format(), path_of_entry(form, index));
    if (!size) {
        return Fault::BadFormat;
    }
    if (size->width > largest_side || size->height > largest_side) {
        return Fault::TooLarge;
    }
    if (first.height == 0) {
        first = *size;
        // Equal sizes do not close a question that an earlier click opened.
        if (first != sprite_size()) {
            ask_for_size(form, first);
        }
        return Fault::None;
    }
    return *size == first ? Fault::None : Fault::SizesDiffer;
}

std::string message_of(Fault fault, const std::string& name) {
    switch (fault) {
    case Fault::BadFormat:
        return "File: " + name + " Bad Format/Corrupt.";
    case Fault::TooLarge:
        return "File: " + name + " With Size Greater Than 256 x 256.";
    default:
        return "All Selected Pictures Must Have Same Size.";
    }
}

// In pixels (scale mode 0), the unit of the target's container.
void draw_tga(const std::string& path, PictureSurface& target) {
    LoadTGA reader;
    reader.Load(path);
    if (reader.IsTGA() == False) {
        return;
    }
    reader.SetAutoscale(True);
    reader.SetScaleMode(0);
    target.SetWidth(reader.TGAWidth());
    target.SetHeight(reader.TGAHeight());
    reader.DrawTGA(target);
}

void draw_pcx(const std::string& path, PictureSurface& target) {
    LoadPCX reader;
    reader.Load(path);
    if (reader.IsPCX() == False) {
        return;
    }
    reader.SetAutoscale(True);
    reader.SetScaleMode(0);
    target.SetWidth(reader.PCXWidth());
    target.SetHeight(reader.PCXHeight());
    reader.DrawPCX(target);
}

} // namespace

std::string path_of_entry(const AddFramesForm& form, std::int32_t index) {
    return join_path(form.folder(), form.entry(index));
}

bool ValidateSelection(AddFramesForm& form) {
    Size first;
    Fault fault = Fault::None;
    std::int32_t index = 0;
    while (index < form.entry_count() && fault == Fault::None) {
        if (form.is_selected(index)) {
            fault = check_entry(form, index, first);
        }
        ++index;
    }
    if (fault != Fault::None) {
        form.close_size_question();
        show_message(message_of(fault, form.entry(index - 1)));
        form.unselect(index - 1);
    }
    return true;
}

void LoadSelectedPicture(AddFramesForm& form, std::int16_t index, PictureSurface& target) {
    const std::string path = path_of_entry(form, index);
    switch (form.format()) {
    case PictureFormat::Bmp:
    case PictureFormat::Jpg:
        target.AutoSize = true;
        target.SetPicture(picture_loader().load(path));
        break;
    case PictureFormat::Tga:
        target.AutoSize = false;
        draw_tga(path, target);
        break;
    case PictureFormat::Pcx:
        target.AutoSize = false;
        draw_pcx(path, target);
        break;
    }
}

} // namespace varnoth
