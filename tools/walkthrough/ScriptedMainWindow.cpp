#include "walkthrough/ScriptedMainWindow.h"

#include <algorithm>
#include <utility>

#include "base/RunTimeFailure.h"
#include "platform/Services.h"
#include "sprite/hlspr.h"

namespace varnoth::walkthrough {

void ScriptedMainWindow::make_new(const std::string& name, std::int32_t width, std::int32_t height,
                                  std::int32_t type, std::int32_t render) {
    hlspr::UnnamedSprite = true;
    picture1_.Cls();
    save_enabled_ = false;
    import_enabled_ = true;
    frames_enabled_ = false;
    lines_.clear();
    path_text_ = name;
    hlspr::new_sprite(width, height, type, render);
    hlspr::SpriteDirty = false;
}

bool ScriptedMainWindow::open(const std::string& path) {
    if (hlspr::load_sprite(path) != True) {
        return false;
    }
    hlspr::UnnamedSprite = false;
    hlspr::SpriteDirty = false;
    lines_.clear();
    import_enabled_ = true;
    frames_enabled_ = true;
    path_text_ = path;
    for (std::int32_t i = 0; i < hlspr::document().SpriteHeader.FrameCount; ++i) {
        add_frame_line("Frame " + std::to_string(i));
    }
    click_line(0);
    return true;
}

bool ScriptedMainWindow::save(const std::string& path) {
    if (!save_enabled_ && frames_enabled_) {
        // Clear marks the sprite as changed, which is what enables Save.
        hlspr::SpriteDirty = true;
        save_enabled_ = true;
    }
    if (!save_enabled_) {
        return false;
    }
    if (lines_.empty()) {
        show_message("Sprite Cant Be Empty. Put Some Pictures In It.");
        return false;
    }
    const bool through_chooser = hlspr::UnnamedSprite;
    if (!through_chooser) {
        path_text_ = path;
    }
    const bool saved = hlspr::save_sprite(path) == True;
    if (saved) {
        report_("wrote", path);
    }
    if (!through_chooser) {
        hlspr::SpriteDirty = false;
    } else if (saved) {
        hlspr::UnnamedSprite = false;
        hlspr::SpriteDirty = false;
        show_message("Sprite Saved Successfully !");
    }
    return saved;
}

void ScriptedMainWindow::move(std::int16_t position, bool up) {
    click_line(position);
    const auto other = static_cast<std::int16_t>(up ? position - 1 : position + 1);
    if (!has_line(other)) {
        return;
    }
    save_enabled_ = true;
    hlspr::SpriteDirty = true;
    std::vector<std::int16_t>& order = hlspr::document().FrameOrder;
    check_subscript(position, order.size());
    check_subscript(other, order.size());
    std::swap(order[static_cast<std::size_t>(position)], order[static_cast<std::size_t>(other)]);
    click_line(other);
}

void ScriptedMainWindow::select_lines(const std::vector<std::int16_t>* positions) {
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        lines_[i].selected =
            positions == nullptr || std::ranges::count(*positions, static_cast<std::int16_t>(i)) > 0;
    }
}

void ScriptedMainWindow::cancel() {
    if (!aborted_) {
        aborted_ = true;
        report_("step", "Aborting Process...");
    }
}

bool ScriptedMainWindow::has_line(std::int16_t position) const {
    return position >= 0 && position < line_count();
}

void ScriptedMainWindow::open_progress(std::string_view phase, std::int32_t /*maximum*/) {
    show_phase(phase);
}

void ScriptedMainWindow::show_phase(std::string_view phase) {
    report_("step", phase);
}

void ScriptedMainWindow::show_step(std::string_view step) {
    if (step == "Loading Picture..." || step.starts_with("Frame ")) {
        ++pictures_begun_;
    }
    report_("step", step);
}

void ScriptedMainWindow::add_frame_line(const std::string& line) {
    lines_.push_back({line, false});
    report_("list", line);
}

void ScriptedMainWindow::release_frames() {
    save_enabled_ = true;
    frames_enabled_ = true;
    const auto last = static_cast<std::int16_t>(line_count() - 1);
    // After a second import the list is longer than the sprite; its last line then has no frame to draw.
    if (last < hlspr::document().SpriteHeader.FrameCount) {
        draw_current(last);
    }
    lines_.back().selected = true;
}

void ScriptedMainWindow::show_item(std::string_view name) {
    report_("step", name);
}

void ScriptedMainWindow::frame_written(const std::string& path) {
    ++frames_written_;
    report_("wrote", path);
}

void ScriptedMainWindow::click_line(std::int16_t position) {
    const std::vector<std::int16_t> only{position};
    select_lines(&only);
    draw_current(position);
}

void ScriptedMainWindow::draw_current(std::int16_t position) {
    std::int16_t frame_number = position;
    hlspr::draw_frame(frame_number, picture1_);
}

} // namespace varnoth::walkthrough
