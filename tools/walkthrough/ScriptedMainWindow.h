// The main window and its progress dialog without a window: the frame list, the commands and what they
// enable.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "import/ImportView.h"
#include "platform/PictureSurface.h"
#include "walkthrough/Report.h"
#include "workbench/FrameExtraction.h"

namespace varnoth::walkthrough {

class ScriptedMainWindow : public ImportView, public ExtractionView {
  public:
    explicit ScriptedMainWindow(Report report) : report_(std::move(report)) {}

    // Commands.

    void make_new(const std::string& name, std::int32_t width, std::int32_t height, std::int32_t type,
                  std::int32_t render);

    /// Whether the file was opened.
    bool open(const std::string& path);

    /// Saves under the path, by the chooser for a sprite without a file name, else by typing it into the path
    /// box. Whether a file was written.
    bool save(const std::string& path);

    /// Clicks the line alone and then one of the arrows.
    void move(std::int16_t position, bool up);

    /// Selects these lines of the list, all of them when there are no positions.
    void select_lines(const std::vector<std::int16_t>* positions);

    /// Presses Cancel of the progress dialog.
    void cancel();

    bool can_import() const { return import_enabled_; }

    bool can_export() const { return frames_enabled_; }

    /// The text of the path box.
    const std::string& path_text() const { return path_text_; }

    bool has_line(std::int16_t position) const;

    /// Pictures that the import has asked for so far, counting the one in hand.
    std::int32_t pictures_begun() const { return pictures_begun_; }

    /// Frames written so far.
    std::int32_t frames_written() const { return frames_written_; }

    // ImportView.

    void open_progress(std::string_view phase, std::int32_t maximum) override;
    void show_phase(std::string_view phase) override;
    void show_step(std::string_view step) override;

    void advance() override {}

    bool aborted() const override { return aborted_; }

    void close_progress() override { aborted_ = false; }

    void show_sprite_size(const std::string& /*size*/, const std::string& /*origin*/) override {}

    std::int32_t frame_line_count() const override { return line_count(); }

    void add_frame_line(const std::string& line) override;
    void release_frames() override;

    void finish() override {}

    // ExtractionView.

    std::int32_t line_count() const override { return static_cast<std::int32_t>(lines_.size()); }

    bool is_selected(std::int16_t line) const override {
        return lines_.at(static_cast<std::size_t>(line)).selected;
    }

    void show_item(std::string_view name) override;
    void frame_written(const std::string& path) override;

  private:
    struct Line {
        std::string text;
        bool selected = false;
    };

    /// Makes the line the current and only selected one, which draws its frame.
    void click_line(std::int16_t position);
    void draw_current(std::int16_t position);

    Report report_;
    std::vector<Line> lines_;
    std::string path_text_;
    bool import_enabled_ = false;
    bool frames_enabled_ = false; ///< Export, Clear and Remove
    bool save_enabled_ = false;
    bool aborted_ = false;
    std::int32_t pictures_begun_ = 0;
    std::int32_t frames_written_ = 0;
    SurfaceContainer window_;
    PictureSurface picture1_{{&window_, 256, 256}};
};

} // namespace varnoth::walkthrough
