#include "core/jobs/FrameExtraction.h"

#include <optional>

#include "core/base/Truth.h"
#include "core/base/files.h"
#include "core/base/numbers.h"
#include "core/codecs/SavePCX.h"
#include "core/codecs/SaveTGA.h"
#include "core/jobs/Module1.h"
#include "core/quantize/mDither8bpp.h"
#include "core/services/Services.h"
#include "core/sprite/hlspr.h"

namespace varnoth {

namespace {

class Extraction {
  public:
    Extraction(const ExtractionOptions& options, ExtractionView& view, PictureSurface& scratch)
        : options_(options),
          view_(view),
          scratch_(scratch),
          base_name_(Module1::strip_extension(Module1::strip_folder(options.sprite_path))) {}

    void run();

  private:
    std::string name_of(std::int16_t number) const;
    std::string path_of(std::int16_t number) const;
    bool may_write(std::int16_t position) const;
    void write(const std::string& path);

    const ExtractionOptions& options_;
    ExtractionView& view_;
    PictureSurface& scratch_;
    std::string base_name_;
    // Created on first use and shared by all frames.
    std::optional<mDither8bpp> bmp_writer_;
    std::optional<SaveTGA> tga_writer_;
    std::optional<SavePCX> pcx_writer_;
};

void Extraction::run() {
    for (std::int16_t i = 0; i <= view_.line_count() - 1 && !view_.aborted(); i = checked_add(i, 1)) {
        if (!view_.is_selected(i)) {
            continue;
        }
        view_.show_item(name_of(i));
        if (may_write(i)) {
            hlspr::draw_frame(i, scratch_); // changes i to the stored number
            write(path_of(i));
        }
        view_.advance();
    }
}

std::string Extraction::name_of(std::int16_t number) const {
    return base_name_ + "_" + std::to_string(number) + std::string(extension_of(options_.format));
}

std::string Extraction::path_of(std::int16_t number) const {
    return join_path(options_.folder, name_of(number));
}

bool Extraction::may_write(std::int16_t position) const {
    if (options_.if_file_exists == IfFileExists::Overwrite || !file_exists(path_of(position))) {
        return true;
    }
    return options_.if_file_exists == IfFileExists::Ask &&
           ask_yes_no("File " + name_of(position) + " Already Exists. Overwrite?");
}

void Extraction::write(const std::string& path) {
    const Truth compress = truth(options_.compressed);
    switch (options_.format) {
    case ExtractionFormat::Bmp:
        if (options_.eight_bits) {
            return;
        }
        (bmp_writer_ ? *bmp_writer_ : bmp_writer_.emplace()).save_bmp(path, scratch_);
        break;
    case ExtractionFormat::Tga:
        (tga_writer_ ? *tga_writer_ : tga_writer_.emplace()).SaveTGAinFile(path, scratch_, compress);
        break;
    case ExtractionFormat::Pcx:
        (pcx_writer_ ? *pcx_writer_ : pcx_writer_.emplace()).SavePCXinFile(path, scratch_, compress);
        break;
    }
    view_.frame_written(path);
}

} // namespace

std::string_view extension_of(ExtractionFormat format) {
    switch (format) {
    case ExtractionFormat::Bmp:
        return ".bmp";
    case ExtractionFormat::Tga:
        return ".tga";
    default:
        return ".pcx";
    }
}

void extract_frames(const ExtractionOptions& options, ExtractionView& view, PictureSurface& scratch) {
    Extraction(options, view, scratch).run();
}

} // namespace varnoth
