#include "desktop/forms/FormCoordinator.h"

#include <QStandardPaths>

#include "core/base/files.h"
#include "core/jobs/FrameExtraction.h"
#include "core/jobs/ImportPipeline.h"
#include "core/jobs/ImportView.h"
#include "core/jobs/Module1.h"
#include "core/sprite/hlspr.h"
#include "desktop/forms/add_frames/Form4.h"
#include "desktop/forms/extract/Form3.h"
#include "desktop/forms/folder/Form5.h"
#include "desktop/forms/main_window/Form1.h"
#include "desktop/forms/new_sprite/Form2.h"
#include "desktop/forms/preview/Form7.h"
#include "desktop/forms/progress/Form6.h"
#include "desktop/services/exception_barrier.h"
#include "qt/path_text.h"

namespace varnoth {

namespace {

// A dialog closes in one of its own signal handlers, so it must outlive the handler.
template <typename Dialog>
void unload(std::unique_ptr<Dialog>& dialog) {
    if (Dialog* gone = dialog.release()) {
        gone->hide();
        gone->deleteLater();
    }
}

} // namespace

// Shows the import on the progress dialog and the main window.
class FormCoordinator::ImportWindows : public ImportView {
  public:
    explicit ImportWindows(FormCoordinator& coordinator) : coordinator_(coordinator) {}

    void open_progress(std::string_view phase, std::int32_t maximum) override {
        coordinator_.make_progress(*coordinator_.form4_);
        progress().Label1.SetCaption(QString::fromUtf8(phase));
        progress().Progressbar1.SetValue(0);
        progress().Progressbar1.SetMax(maximum);
        progress().show_over(*coordinator_.form4_);
        coordinator_.form4_->SetEnabled(false);
        coordinator_.form4_->setCursor(Qt::WaitCursor);
    }

    void show_phase(std::string_view phase) override {
        progress().Label1.SetCaption(QString::fromUtf8(phase));
    }

    void show_step(std::string_view step) override { progress().Label2.SetCaption(QString::fromUtf8(step)); }

    void advance() override { progress().Progressbar1.SetValue(progress().Progressbar1.Value() + 1); }

    bool aborted() const override { return coordinator_.form6_->aborted(); }

    void close_progress() override { unload(coordinator_.form6_); }

    void show_sprite_size(const std::string& size, const std::string& origin) override {
        coordinator_.form1_->ellabel7.SetCaption(QString::fromStdString(size));
        coordinator_.form1_->ellabel6.SetCaption(QString::fromStdString(origin));
    }

    std::int32_t frame_line_count() const override { return coordinator_.form1_->List1.ListCount(); }

    void add_frame_line(const std::string& line) override {
        coordinator_.form1_->add_frame_line(QString::fromStdString(line));
    }

    void release_frames() override { coordinator_.form1_->release_frames(); }

    void finish() override {
        coordinator_.form1_->SetEnabled(true);
        unload(coordinator_.form4_);
    }

  private:
    Form6& progress() { return *coordinator_.form6_; }

    FormCoordinator& coordinator_;
};

// Connects the extraction to the main window's frame list and the progress dialog. The extraction does not
// process events itself: each refresh of the dialog repaints it and handles Cancel.
class FormCoordinator::ExtractionWindows : public ExtractionView {
  public:
    explicit ExtractionWindows(FormCoordinator& coordinator) : coordinator_(coordinator) {}

    std::int32_t line_count() const override { return coordinator_.form1_->List1.ListCount(); }

    bool is_selected(std::int16_t line) const override { return coordinator_.form1_->List1.Selected(line); }

    bool aborted() const override { return coordinator_.form6_->aborted(); }

    void show_item(std::string_view name) override {
        coordinator_.form6_->Label2.SetCaption(QString::fromUtf8(name));
        coordinator_.form6_->refresh();
    }

    void advance() override {
        elprogress& bar = coordinator_.form6_->Progressbar1;
        if (bar.Value() + 1 <= bar.Max()) {
            bar.SetValue(bar.Value() + 1);
        }
        coordinator_.form6_->refresh();
    }

    void frame_written(const std::string& path) override { emit coordinator_.frame_written(path); }

  private:
    FormCoordinator& coordinator_;
};

template <typename Dialog, typename... Arguments>
Dialog& FormCoordinator::make(std::unique_ptr<Dialog>& dialog, Arguments&... arguments) {
    dialog = std::make_unique<Dialog>(arguments...);
    emit dialog_made(*dialog);
    return *dialog;
}

FormCoordinator::FormCoordinator() : form1_(std::make_unique<Form1>()) {
    on_event(form1_.get(), &Form1::newRequested, this, [this] { open_new(); });
    on_event(form1_.get(), &Form1::importRequested, this, [this] { open_import(); });
    on_event(form1_.get(), &Form1::exportRequested, this, [this] { open_export(); });
    on_event(form1_.get(), &Form1::previewRequested, this, [this] { open_preview(); });
    on_event(form1_.get(), &Form1::endRequested, this, [this] { emit ended(); });
}

FormCoordinator::~FormCoordinator() = default;

void FormCoordinator::start() {
    form1_->show_first();
}

// Dialogs.

void FormCoordinator::open_new() {
    form1_->SetEnabled(false);
    make(form2_, *form1_);
    on_event(form2_.get(), &Form2::unloadRequested, this, [this] { unload(form2_); });
    form2_->show_over(*form1_);
}

void FormCoordinator::open_import() {
    form1_->SetEnabled(false);
    make(form4_, *form1_);
    on_event(form4_.get(), &Form4::importRequested, this, [this] { import(); });
    on_event(form4_.get(), &Form4::unloadRequested, this, [this] {
        picture_folder_ = form4_->Dir1.Path();
        unload(form4_);
    });
    form4_->Dir1.SetPath(first_folder(picture_folder_));
    form4_->Drive1.show_drive_of(form4_->Dir1.Path());
    form4_->File1.SetPath(form4_->Dir1.Path());
    const SpriteHeaderRecord& header = hlspr::document().SpriteHeader;
    form4_->ellabel5.SetCaption(QString("%1x%2").arg(header.Width).arg(header.Height));
    const QString render_mode = form1_->ellabel10.Caption();
    if (render_mode == "ALPHATEST" || render_mode == "INDEXALPHA") {
        form4_->enable_picker();
    }
    form4_->show_over(*form1_);
}

void FormCoordinator::open_export() {
    make(form3_, *form1_);
    on_event(form3_.get(), &Form3::folderRequested, this, [this] { open_folder(); });
    on_event(form3_.get(), &Form3::extractionRequested, this,
             [this](const ExtractionOptions& options) { extract(options); });
    on_event(form3_.get(), &Form3::unloadRequested, this, [this] { unload(form3_); });
    if (!hlspr::ExtractFolder.empty()) {
        form3_->eltexto1.SetText(text_of_path(hlspr::ExtractFolder));
    }
    form3_->show_over(*form1_);
    form1_->SetEnabled(false);
}

void FormCoordinator::open_preview() {
    form1_->SetEnabled(false);
    make(form7_, *form1_);
    on_event(form7_.get(), &Form7::unloadRequested, this, [this] { unload(form7_); });
    form7_->show_over(*form1_);
    std::int16_t first = 0;
    hlspr::draw_frame(first, form7_->Picture1.surface());
}

// Shows the remembered folder, not the one in the text box.
void FormCoordinator::open_folder() {
    make(form5_);
    on_event(form5_.get(), &Form5::chosen, this, [this](const std::string& folder) { take_folder(folder); });
    on_event(form5_.get(), &Form5::cancelled, this, [this] {
        form3_->SetEnabled(true);
        unload(form5_);
    });
    form5_->Dir1.SetPath(first_folder(std::string()));
    const QString typed = form3_->eltexto1.Text();
    if (!typed.isEmpty() && folder_exists(path_of_text(typed))) {
        form5_->Dir1.SetPath(hlspr::ExtractFolder);
    }
    form5_->show_over(*form3_);
    form3_->SetEnabled(false);
}

void FormCoordinator::take_folder(const std::string& folder) {
    form3_->SetEnabled(true);
    form3_->eltexto1.SetText(text_of_path(folder));
    hlspr::ExtractFolder = folder;
    unload(form5_);
}

Form6& FormCoordinator::make_progress(const Form& opener) {
    make(form6_).setWindowTitle(opener.windowTitle());
    return *form6_;
}

// A folder list starts at the last folder, else at the sprite's folder, else at the user's pictures. If none
// exists, the path is empty and the list stays at the current folder.
std::string FormCoordinator::first_folder(const std::string& last) const {
    const std::string sprite_folder = Module1::folder_of(path_of_text(form1_->eltexto1.Text()));
    const QStringList pictures = QStandardPaths::standardLocations(QStandardPaths::PicturesLocation);
    for (const std::string& folder :
         {last, sprite_folder, pictures.isEmpty() ? std::string() : pictures.front().toStdString()}) {
        if (!folder.empty() && folder_exists(folder)) {
            return folder;
        }
    }
    return {};
}

// Jobs.

void FormCoordinator::import() {
    picture_folder_ = form4_->Dir1.Path();
    ImportWindows windows(*this);
    import_frames(form4_->add_frames_form(), windows);
}

void FormCoordinator::extract(const ExtractionOptions& options) {
    make_progress(*form3_).show_over(*form3_);
    form3_->SetEnabled(false);
    form3_->setCursor(Qt::WaitCursor);
    form6_->Label1.SetCaption("Extracting Frames...");
    form6_->Progressbar1.SetMax(form1_->List1.SelCount());
    form6_->Progressbar1.SetValue(0);
    form6_->refresh();
    ExtractionWindows windows(*this);
    extract_frames(options, windows, form3_->scratch());
    unload(form6_);
    form1_->SetEnabled(true);
    unload(form3_);
}

} // namespace varnoth
