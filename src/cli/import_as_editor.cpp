#include "cli/import_as_editor.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "cli/command.h"
#include "cli/console.h"
#include "core/base/files.h"
#include "core/base/numbers.h"
#include "core/jobs/AddFramesForm.h"
#include "core/jobs/ImportPipeline.h"
#include "core/jobs/PictureSelection.h"
#include "core/services/FileList.h"
#include "core/services/Services.h"
#include "core/sprite/hlspr.h"
#include "qt/QtPictureLoader.h"

namespace varnoth::cli {

namespace {

constexpr std::array formats{PictureFormat::Bmp, PictureFormat::Jpg, PictureFormat::Tga, PictureFormat::Pcx};

std::optional<PictureFormat> format_of(const std::string& path) {
    for (const PictureFormat format : formats) {
        const std::string_view extension = extension_of(format);
        if (path.size() > extension.size() &&
            std::equal(extension.begin(), extension.end(), path.end() - std::ssize(extension),
                       [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? b - 'A' + 'a' : b); })) {
            return format;
        }
    }
    return std::nullopt;
}

void add_folder(const std::string& folder, std::vector<std::string>& files) {
    std::vector<std::string> names;
    for (const PictureFormat format : formats) {
        const std::vector<std::string> more = list_files(folder, extension_of(format));
        names.insert(names.end(), more.begin(), more.end());
    }
    if (names.empty()) {
        throw CommandError(folder, "no pictures that the editor reads");
    }
    std::ranges::sort(names, comes_before);
    for (const std::string& name : names) {
        files.push_back(join_path(folder, name));
    }
}

std::vector<std::string> list_files_of(const std::vector<std::string>& paths) {
    std::vector<std::string> files;
    for (const std::string& path : paths) {
        if (folder_exists(path)) {
            add_folder(path, files);
        } else if (!file_exists(path)) {
            throw CommandError(path, "no such file");
        } else {
            files.push_back(path);
        }
    }
    return files;
}

PictureFormat common_format(const std::vector<std::string>& files) {
    std::optional<PictureFormat> common;
    for (const std::string& file : files) {
        const std::optional<PictureFormat> format = format_of(file);
        if (!format) {
            throw CommandError(file, "the editor reads only .bmp, .jpg, .tga and .pcx files");
        }
        if (common && *common != *format) {
            throw CommandError(file, "the editor does not import files of several formats together");
        }
        common = format;
    }
    return *common;
}

/// The Add Frame/s dialog with all files selected. The folder is part of the entries' names.
class Dialog : public AddFramesForm {
  public:
    Dialog(const std::vector<std::string>& files, const EditorImport& options)
        : files_(files),
          format_(common_format(files)),
          resize_(options.size.has_value()),
          pick_enabled_(options.mode == RenderMode::IndexAlpha || options.mode == RenderMode::AlphaTest) {}

    /// Does what clicking the last selected file does.
    void click(std::int16_t index) { LoadSelectedPicture(*this, index, picture1_); }

    void set_transparent(const std::optional<PaletteColour>& picked) {
        transparent_ = picked ? make_colour(picked->red, picked->green, picked->blue) : picture1_.Point(0, 0);
    }

    PictureFormat format() const override { return format_; }

    std::string folder() const override { return {}; }

    std::int32_t entry_count() const override { return narrow<std::int32_t>(files_.size()); }

    std::string entry(std::int32_t index) const override { return files_[static_cast<std::size_t>(index)]; }

    bool is_selected(std::int32_t /*index*/) const override { return true; }

    void unselect(std::int32_t index) override { refused_ = entry(index); }

    void open_size_question(const std::string& /*set_caption*/,
                            const std::string& /*resize_caption*/) override {
        question_open_ = true;
    }

    void close_size_question() override { question_open_ = false; }

    bool size_question_open() const override { return question_open_; }

    bool set_sprite_chosen() const override { return !resize_; }

    bool pick_enabled() const override { return pick_enabled_; }

    Colour transparent_colour() const override { return transparent_; }

    PictureSurface& Picture1() override { return picture1_; }

    PictureSurface& Buffer1() override { return buffer1_; }

    PictureSurface& Buffer2() override { return buffer2_; }

    PictureSurface& jojoPalette() override { return sheet_; }

    /// The file that the last validation unselected.
    const std::optional<std::string>& refused() const { return refused_; }

  private:
    const std::vector<std::string>& files_;
    PictureFormat format_;
    bool resize_;
    bool pick_enabled_;
    bool question_open_ = false;
    std::optional<std::string> refused_;
    Colour transparent_ = 0;
    SurfaceContainer window_;
    PictureSurface picture1_{{.parent = &window_, .width = 256, .height = 256, .back_colour = 0xFFFFFF}};
    PictureSurface buffer1_{{.parent = &window_, .width = 1, .height = 1}};
    PictureSurface buffer2_{{.parent = &window_, .width = 1, .height = 1}};
    PictureSurface sheet_{{.parent = &window_, .width = 1, .height = 1}};
};

/// The main window and the progress dialog.
class View : public ImportView {
  public:
    explicit View(Progress& progress) : progress_(progress) {}

    void open_progress(std::string_view /*phase*/, std::int32_t /*maximum*/) override {}

    void show_phase(std::string_view /*phase*/) override {}

    void show_step(std::string_view /*step*/) override {}

    void advance() override { progress_.advance(); }

    bool aborted() const override { return false; }

    void close_progress() override {}

    void show_sprite_size(const std::string& /*size*/, const std::string& /*origin*/) override {}

    std::int32_t frame_line_count() const override { return lines_; }

    void add_frame_line(const std::string& /*line*/) override { ++lines_; }

    void release_frames() override {}

    void finish() override {}

  private:
    Progress& progress_;
    std::int32_t lines_ = 0;
};

/// Keeps the last message instead of showing it.
class LastMessage : public MessageBoxes {
  public:
    void show(std::string_view text) override { text_ = text; }

    bool ask(std::string_view /*question*/) override { return true; }

    const std::string& text() const { return text_; }

  private:
    std::string text_;
};

// The editor writes the frames of the last import in their order, all with one frame header.
SpriteFile take_document() {
    SpriteDocument& document = hlspr::document();
    SpriteFile sprite{document.SpriteHeader, document.Palette, {}};
    for (ByteArray& indices : document.FrameStore) {
        sprite.frames.push_back({document.FrameHeader, std::move(indices)});
    }
    return sprite;
}

} // namespace

SpriteFile import_as_editor(const std::vector<std::string>& paths, const EditorImport& options) {
    QtPictureLoader loader;
    LastMessage message;
    const ServicesInstallation services({&message, nullptr, &loader, nullptr});
    const std::vector<std::string> files = list_files_of(paths);
    Dialog dialog(files, options);
    // Without a size, the question sets the sprite to the pictures' size.
    const FrameSize size = options.size.value_or(FrameSize{32, 32});
    hlspr::new_sprite(size.width, size.height, options.type, static_cast<std::int32_t>(options.mode));
    ValidateSelection(dialog);
    if (dialog.refused()) {
        throw CommandError(*dialog.refused(), "the editor refuses it: " + message.text());
    }
    Progress progress("Importing", 2 * files.size(), options.quiet);
    std::string file = files.front();
    try {
        for (std::size_t index = 0; index < files.size(); ++index) {
            file = files[index];
            dialog.click(narrow<std::int16_t>(index));
        }
        dialog.set_transparent(options.transparent);
        View view(progress);
        import_frames(dialog, view);
    } catch (const RunTimeFailure& failure) {
        throw CommandError(file, "the editor fails: " + std::string(failure.words()));
    }
    return take_document();
}

} // namespace varnoth::cli
