// The export of the selected frames, one picture file per frame. The Extract dialog or a scripted user
// supplies the frame list and shows the progress.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/image/PictureSurface.h"

namespace varnoth {

/// The choice under "Format:".
enum class ExtractionFormat { Bmp, Tga, Pcx };

/// The choice under "If File Exists Then:".
enum class IfFileExists { Skip, Ask, Overwrite };

/// What the user chose for one extraction.
struct ExtractionOptions {
    std::string folder;
    std::string sprite_path; ///< the sprite's path or typed name, from which the base name is taken
    ExtractionFormat format = ExtractionFormat::Bmp;
    bool eight_bits = false; ///< the disabled "8 bpp" choice, with which no BMP file would be written
    bool compressed = false; ///< for TGA and PCX
    IfFileExists if_file_exists = IfFileExists::Ask;
};

/// The export's interface to the frame list and the progress display.
class ExtractionView {
  public:
    virtual ~ExtractionView() = default;

    /// The number of lines in the frame list.
    virtual std::int32_t line_count() const = 0;

    /// Whether a line is selected.
    virtual bool is_selected(std::int16_t line) const = 0;

    /// The abort flag, tested before each line.
    virtual bool aborted() const = 0;

    /// Shows the name of the current file.
    virtual void show_item(std::string_view name) = 0;

    /// Advances the progress bar by one, up to its maximum, the number of selected lines.
    virtual void advance() = 0;

    /// Called after a frame has been passed to its writer, whether or not the file could be written.
    virtual void frame_written(const std::string& path) = 0;
};

/// ".bmp", ".tga" or ".pcx".
std::string_view extension_of(ExtractionFormat format);

/// Exports the selected lines from 0 on. The existence test and the displayed name use the line's position;
/// draw_frame() then replaces the position by the number of the stored frame, which names the file and from
/// which the loop continues. With a changed frame order the loop therefore jumps: it may omit frames, or
/// repeat until aborted. Each frame is drawn on `scratch` before it is written.
void extract_frames(const ExtractionOptions& options, ExtractionView& view, PictureSurface& scratch);

} // namespace varnoth
