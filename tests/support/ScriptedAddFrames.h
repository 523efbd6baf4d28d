// The Add Frame/s dialog without a window: holds its state and offers the user's actions as functions.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/jobs/AddFramesForm.h"
#include "core/jobs/PictureSelection.h"
#include "core/services/FileList.h"
#include "support/lists.h"

namespace varnoth::test {

class ScriptedAddFrames : public AddFramesForm {
  public:
    /// Opens on a folder and lists its files of the format. The picker is enabled in render modes with a
    /// transparent colour.
    ScriptedAddFrames(const std::string& folder, PictureFormat format, bool pick_enabled)
        : ScriptedAddFrames(folder, format, pick_enabled, list_files(folder, extension_of(format))) {}

    /// Lists these files instead.
    ScriptedAddFrames(const std::string& folder, PictureFormat format, bool pick_enabled, const Texts& names)
        : folder_(folder), format_(format), pick_enabled_(pick_enabled) {
        for (const std::string& name : names) {
            entries_.push_back({name, false});
        }
    }

    /// Adds an entry to the selection, as a click with the Control key does: validates the selection, shows
    /// the entry in the preview and, unless a colour was picked, takes its top left pixel as the transparent
    /// colour.
    void click(std::int16_t index) {
        entries_.at(static_cast<std::size_t>(index)).selected = true;
        if (ValidateSelection(*this)) {
            LoadSelectedPicture(*this, index, picture1_);
        }
        if (!picked_ && pick_enabled_) {
            transparent_ = picture1_.Point(0, 0);
        }
    }

    /// Picks a pixel of the preview as the transparent colour. Does nothing without the picker or outside.
    void pick(std::int32_t x, std::int32_t y) {
        if (pick_enabled_ && picture1_.bitmap().contains(x, y)) {
            transparent_ = picture1_.Point(x, y);
            picked_ = true;
        }
    }

    void choose_resize(bool resize) { resize_ = resize; }

    PictureFormat format() const override { return format_; }

    std::string folder() const override { return folder_; }

    std::int32_t entry_count() const override { return static_cast<std::int32_t>(entries_.size()); }

    std::string entry(std::int32_t index) const override { return at(index).name; }

    bool is_selected(std::int32_t index) const override { return at(index).selected; }

    void unselect(std::int32_t index) override {
        entries_.at(static_cast<std::size_t>(index)).selected = false;
    }

    void open_size_question(const std::string& set_caption, const std::string& resize_caption) override {
        question_open_ = true;
        set_caption_ = set_caption;
        resize_caption_ = resize_caption;
    }

    void close_size_question() override { question_open_ = false; }

    bool size_question_open() const override { return question_open_; }

    bool set_sprite_chosen() const override { return !resize_; }

    bool pick_enabled() const override { return pick_enabled_; }

    Colour transparent_colour() const override { return transparent_; }

    PictureSurface& Picture1() override { return picture1_; }

    PictureSurface& Buffer1() override { return buffer1_; }

    PictureSurface& Buffer2() override { return buffer2_; }

    PictureSurface& jojoPalette() override { return sheet_; }

    const std::string& set_caption() const { return set_caption_; }

    const std::string& resize_caption() const { return resize_caption_; }

  private:
    struct Entry {
        std::string name;
        bool selected = false;
    };

    const Entry& at(std::int32_t index) const { return entries_.at(static_cast<std::size_t>(index)); }

    std::string folder_;
    PictureFormat format_;
    std::vector<Entry> entries_;
    bool question_open_ = false;
    bool resize_ = false;
    std::string set_caption_;
    std::string resize_caption_;
    bool pick_enabled_;
    bool picked_ = false;
    Colour transparent_ = 0;
    SurfaceContainer window_;
    PictureSurface picture1_{{&window_, 256, 256}};
    PictureSurface buffer1_{{&window_, 1, 1}};
    PictureSurface buffer2_{{&window_, 1, 1}};
    PictureSurface sheet_{{&window_, 1, 1}};
};

} // namespace varnoth::test
