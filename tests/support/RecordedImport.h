// An import view that records all calls in order and can simulate Cancel.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "core/jobs/ImportView.h"
#include "support/lists.h"

namespace varnoth::test {

class RecordedImport : public ImportView {
  public:
    Texts events; ///< "phase X", "step X", "size X", "line X" and so on
    Texts lines;  ///< of the frame list
    std::int32_t progress = 0;
    std::int32_t maximum = -1;
    bool abort = false;
    bool open = false;
    int releases = 0;
    int ends = 0;
    std::function<void(const std::string& event)> on_event;

    void open_progress(std::string_view phase, std::int32_t most) override {
        open = true;
        progress = 0;
        maximum = most;
        note("open ", phase);
    }

    void show_phase(std::string_view phase) override { note("phase ", phase); }

    void show_step(std::string_view step) override { note("step ", step); }

    void advance() override { ++progress; }

    bool aborted() const override { return abort; }

    void close_progress() override {
        open = false;
        note("close");
    }

    void show_sprite_size(const std::string& size, const std::string& origin) override {
        note("size ", size + " | " + origin);
    }

    std::int32_t frame_line_count() const override { return static_cast<std::int32_t>(lines.size()); }

    void add_frame_line(const std::string& line) override { note(frame_line, line); }

    void release_frames() override {
        ++releases;
        note("release");
    }

    void finish() override {
        ++ends;
        note("finish");
    }

  protected:
    /// Every call that is recorded; the only place where the view itself allocates.
    virtual void note(std::string_view kind, std::string_view text = {}) {
        if (kind == frame_line) {
            lines.emplace_back(text);
        }
        const std::string event = std::string(kind) + std::string(text);
        events.push_back(event);
        if (on_event) {
            on_event(event);
        }
    }

  private:
    static constexpr std::string_view frame_line = "line ";
};

} // namespace varnoth::test
