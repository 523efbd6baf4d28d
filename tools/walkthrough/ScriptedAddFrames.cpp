#include "walkthrough/ScriptedAddFrames.h"

#include "import/PictureSelection.h"
#include "platform/FileList.h"

namespace varnoth::walkthrough {

ScriptedAddFrames::ScriptedAddFrames(const std::string& folder, PictureFormat format, bool pick_enabled)
    : folder_(folder), format_(format), pick_enabled_(pick_enabled) {
    for (std::string& name : list_files(folder, extension_of(format))) {
        entries_.push_back({std::move(name), false});
    }
}

void ScriptedAddFrames::click(std::int16_t index) {
    entries_.at(static_cast<std::size_t>(index)).selected = true;
    if (ValidateSelection(*this)) {
        LoadSelectedPicture(*this, index, picture1_);
    }
    if (!picked_ && pick_enabled_) {
        transparent_ = picture1_.Point(0, 0);
    }
}

void ScriptedAddFrames::pick(std::int32_t x, std::int32_t y) {
    if (pick_enabled_ && picture1_.bitmap().contains(x, y)) {
        transparent_ = picture1_.Point(x, y);
        picked_ = true;
    }
}

void ScriptedAddFrames::open_size_question(const std::string& set_caption,
                                           const std::string& resize_caption) {
    question_open_ = true;
    set_caption_ = set_caption;
    resize_caption_ = resize_caption;
}

std::string extension_of(PictureFormat format) {
    switch (format) {
    case PictureFormat::Bmp:
        return ".bmp";
    case PictureFormat::Jpg:
        return ".jpg";
    case PictureFormat::Tga:
        return ".tga";
    default:
        return ".pcx";
    }
}

} // namespace varnoth::walkthrough
