// What the import shows while it runs: the progress dialog, the main window's frame list and its commands.
// The coordinator implements it, and so does a scripted user; tests write it down.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace varnoth {

class ImportView {
  public:
    virtual ~ImportView() = default;

    // The progress dialog.

    /// Shows it with a phase text, the bar at 0 of `maximum`, and disables the dialog that asked for the
    /// import.
    virtual void open_progress(std::string_view phase, std::int32_t maximum) = 0;
    virtual void show_phase(std::string_view phase) = 0;
    virtual void show_step(std::string_view step) = 0;

    /// One more on the bar.
    virtual void advance() = 0;

    /// The abort mark: whether the user pressed Cancel.
    virtual bool aborted() const = 0;
    virtual void close_progress() = 0;

    // The main window.

    /// The size and origin values.
    virtual void show_sprite_size(const std::string& size, const std::string& origin) = 0;
    virtual std::int32_t frame_line_count() const = 0;
    virtual void add_frame_line(const std::string& line) = 0;

    /// Enables Save, Remove, Export, Clear and the frame list, and makes the list's last line the current and
    /// selected one, which draws its frame if the document has it.
    virtual void release_frames() = 0;

    /// The import is over: enables the main window and ends the dialog.
    virtual void finish() = 0;
};

} // namespace varnoth
