// The walk that writes the selected frames to picture files, one file each. It asks no window; the Extract
// dialog and a scripted user answer for the frame list and show the progress.
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
    std::string sprite_path; ///< the sprite's path or typed name; the base name is cut from it
    ExtractionFormat format = ExtractionFormat::Bmp;
    bool eight_bits = false; ///< the "8 bpp" choice, which cannot be taken; it would write no BMP file
    bool compressed = false; ///< for TGA and PCX
    IfFileExists if_file_exists = IfFileExists::Ask;
};

/// What the walk asks of the frame list and shows while it runs.
class ExtractionView {
  public:
    virtual ~ExtractionView() = default;

    /// Lines of the frame list.
    virtual std::int32_t line_count() const = 0;

    /// Whether one of them is selected.
    virtual bool is_selected(std::int16_t line) const = 0;

    /// The abort mark, tested before each line.
    virtual bool aborted() const = 0;

    /// The name of the file in hand.
    virtual void show_item(std::string_view name) = 0;

    /// One more on the bar, unless that passes its maximum, the number of selected lines.
    virtual void advance() = 0;

    /// A frame has been handed to its writer, whose answer nobody looks at.
    virtual void frame_written(const std::string& path) = 0;
};

/// ".bmp", ".tga" or ".pcx".
std::string_view extension_of(ExtractionFormat format);

/// Walks the lines from 0 on. A line's name is tested and shown under its position; drawing turns the
/// position into the number of the stored frame, the file takes that number, and the walk goes on from there.
/// With a changed order it therefore jumps, may leave frames out, and may turn in a circle until it is
/// aborted. `scratch` takes each frame on its way to the writer.
void extract_frames(const ExtractionOptions& options, ExtractionView& view, PictureSurface& scratch);

} // namespace varnoth
