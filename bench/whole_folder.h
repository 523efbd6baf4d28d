// Imports all pictures of a folder, for the benchmarks.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/jobs/ImportPipeline.h"
#include "core/jobs/PictureSelection.h"
#include "core/sprite/hlspr.h"
#include "support/ScriptedAddFrames.h"

namespace varnoth::bench {

class WholeFolder : public test::ScriptedAddFrames {
  public:
    explicit WholeFolder(const std::string& folder) : ScriptedAddFrames(folder, PictureFormat::Bmp, false) {
        LoadSelectedPicture(*this, 0, Picture1());
    }

    bool is_selected(std::int32_t /*index*/) const override { return true; }
};

/// Stores what it receives and shows nothing.
class SilentView : public ImportView {
  public:
    void open_progress(std::string_view phase, std::int32_t /*maximum*/) override { text_ = phase; }

    void show_phase(std::string_view phase) override { text_ = phase; }

    void show_step(std::string_view step) override { text_ = step; }

    void advance() override { ++progress_; }

    bool aborted() const override { return false; }

    void close_progress() override {}

    void show_sprite_size(const std::string& size, const std::string& /*origin*/) override { text_ = size; }

    std::int32_t frame_line_count() const override { return lines_; }

    void add_frame_line(const std::string& line) override {
        text_ = line;
        ++lines_;
    }

    void release_frames() override {}

    void finish() override {}

  private:
    std::string text_;
    std::int32_t progress_ = 0;
    std::int32_t lines_ = 0;
};

/// Imports a folder's pictures into a new sprite, with the program's code.
inline void import_folder(const std::string& folder) {
    hlspr::new_sprite(256, 256, 2, 1);
    WholeFolder form(folder);
    SilentView view;
    import_frames(form, view);
}

} // namespace varnoth::bench
