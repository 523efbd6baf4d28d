#include "walkthrough/Walkthrough.h"

#include <algorithm>

#include "base/files.h"
#include "base/numbers.h"
#include "import/ImportPipeline.h"
#include "platform/FileList.h"
#include "shared/ppm.h"
#include "sprite/hlspr.h"
#include "walkthrough/ScriptedAddFrames.h"
#include "walkthrough/ScriptedMainWindow.h"

namespace varnoth::walkthrough {

namespace {

class ReportingMessageBoxes : public MessageBoxes {
  public:
    ReportingMessageBoxes(const Report& report, bool answer) : report_(report), answer_(answer) {}

    void show(std::string_view text) override { report_("message", text); }

    bool ask(std::string_view question) override {
        report_("question", question);
        return answer_;
    }

  private:
    const Report& report_;
    bool answer_;
};

// Presses Cancel at the first yield behind the loading of so many pictures.
class ImpatientEventQueue : public EventQueue {
  public:
    ImpatientEventQueue(ScriptedMainWindow& window, std::optional<std::int32_t> abort_after)
        : window_(window), abort_after_(abort_after) {}

    void yield() override {
        if (abort_after_ && window_.pictures_begun() >= *abort_after_) {
            window_.cancel();
            abort_after_.reset();
        }
    }

  private:
    ScriptedMainWindow& window_;
    std::optional<std::int32_t> abort_after_;
};

// The main window with a user who presses Cancel once so many frames have been written.
class WatchedMainWindow : public ScriptedMainWindow {
  public:
    WatchedMainWindow(const Report& report, std::optional<std::int32_t> abort_export_after)
        : ScriptedMainWindow(report), abort_export_after_(abort_export_after) {}

    void frame_written(const std::string& path) override {
        ScriptedMainWindow::frame_written(path);
        cancel_when_due();
    }

    void cancel_when_due() {
        if (abort_export_after_ && frames_written() >= *abort_export_after_) {
            cancel();
        }
    }

  private:
    std::optional<std::int32_t> abort_export_after_;
};

class Walk {
  public:
    Walk(const Options& options, const Report& report, PictureLoader& loader)
        : options_(options),
          report_(report),
          window_(report, options.abort_export_after),
          boxes_(report_, options.answer),
          events_(window_, options.abort_after),
          installation_({&boxes_, &events_, &loader}) {}

    void run();

  private:
    void check_places() const;
    bool start();
    void import(const std::string& folder);
    void draw(const Drawing& drawing);
    void extract();

    const Options& options_;
    const Report& report_;
    WatchedMainWindow window_;
    ReportingMessageBoxes boxes_;
    ImpatientEventQueue events_;
    ServicesInstallation installation_;
};

void Walk::run() {
    check_places();
    if (!start()) {
        return;
    }
    if (options_.pictures) {
        import(*options_.pictures);
    }
    if (options_.again) {
        import(*options_.again);
    }
    for (const Move& move : options_.moves) {
        if (!window_.has_line(move.position)) {
            throw WrongOption("no line " + std::to_string(move.position) + " to move");
        }
        window_.move(move.position, move.up);
    }
    for (const Drawing& drawing : options_.drawings) {
        draw(drawing);
    }
    if (options_.save && window_.save(*options_.save)) {
        window_.open(*options_.save);
    }
    if (options_.export_folder && window_.can_export()) {
        extract();
    }
}

// Before anything is done, so that a wrong option leaves no half of a job behind. The names to select must be
// in the first folder only.
void Walk::check_places() const {
    for (const std::optional<std::string>* folder : {&options_.pictures, &options_.again}) {
        if (*folder && !folder_exists(**folder)) {
            throw WrongOption("no folder " + **folder);
        }
    }
    if (!options_.pictures) {
        return;
    }
    const std::vector<std::string> names = list_files(*options_.pictures, extension_of(options_.filter));
    for (const std::string& name : options_.select) {
        if (std::ranges::count(names, name) == 0) {
            throw WrongOption("no picture " + name + " in " + *options_.pictures);
        }
    }
}

bool Walk::start() {
    if (options_.open) {
        return window_.open(*options_.open);
    }
    window_.make_new("Untitled", options_.width, options_.height, options_.type, options_.render);
    return true;
}

void Walk::import(const std::string& folder) {
    const std::string_view render = hlspr::render_mode_name(hlspr::document().SpriteHeader.RenderMode);
    ScriptedAddFrames dialog(folder, options_.filter, render == "ALPHATEST" || render == "INDEXALPHA");
    for (std::int32_t i = 0; i < dialog.entry_count(); ++i) {
        const bool named = std::ranges::count(options_.select, dialog.entry(i)) > 0;
        if (options_.select.empty() || named) {
            dialog.click(narrow<std::int16_t>(i));
        }
    }
    if (options_.pick) {
        dialog.pick(options_.pick->x, options_.pick->y);
    }
    dialog.choose_resize(options_.resize);
    import_frames(dialog, window_);
}

void Walk::draw(const Drawing& drawing) {
    SurfaceContainer container;
    PictureSurface surface({&container, 1, 1});
    std::int16_t frame_number = drawing.position;
    hlspr::draw_frame(frame_number, surface);
    write_ppm(drawing.path, surface.bitmap());
    report_("wrote", drawing.path);
}

void Walk::extract() {
    if (options_.export_folder->empty()) {
        show_message("Select Output Folder First.");
        return;
    }
    if (!folder_exists(*options_.export_folder)) {
        show_message("Output Folder Doesnt Exist.");
        return;
    }
    window_.select_lines(options_.frames ? &*options_.frames : nullptr);
    window_.open_progress("Extracting Frames...", 0);
    window_.cancel_when_due();
    SurfaceContainer container;
    PictureSurface scratch({&container, 1, 1});
    extract_frames({*options_.export_folder, window_.path_text(), options_.format, false, options_.compressed,
                    options_.if_exists},
                   window_, scratch);
    window_.close_progress();
}

} // namespace

void walk(const Options& options, const Report& report, PictureLoader& loader) {
    Walk(options, report, loader).run();
}

} // namespace varnoth::walkthrough
