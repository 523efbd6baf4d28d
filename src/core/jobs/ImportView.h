// The import's interface to the progress dialog and the main window. Implemented by the form coordinator, by
// scripted users and by recording tests.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace varnoth {

class ImportView {
  public:
    virtual ~ImportView() = default;

    // The progress dialog.

    /// Shows the dialog with a phase text and the bar at 0 of `maximum`, and disables the dialog that started
    /// the import.
    virtual void open_progress(std::string_view phase, std::int32_t maximum) = 0;
    virtual void show_phase(std::string_view phase) = 0;
    virtual void show_step(std::string_view step) = 0;

    /// Advances the progress bar by one.
    virtual void advance() = 0;

    /// The abort flag: whether the user pressed Cancel.
    virtual bool aborted() const = 0;
    virtual void close_progress() = 0;

    // The main window.

    /// Shows the size and origin values.
    virtual void show_sprite_size(const std::string& size, const std::string& origin) = 0;
    virtual std::int32_t frame_line_count() const = 0;
    virtual void add_frame_line(const std::string& line) = 0;

    /// Enables Save, Remove, Export, Clear and the frame list, and selects the list's last line, which draws
    /// its frame if the document has one.
    virtual void release_frames() = 0;

    /// Ends the import: enables the main window and closes the dialog.
    virtual void finish() = 0;
};

} // namespace varnoth
