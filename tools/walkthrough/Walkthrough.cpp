#include "walkthrough/Walkthrough.h"

#include <algorithm>
#include <optional>

#include <QApplication>
#include <QFileInfo>
#include <QTest>

#include "core/base/files.h"
#include "core/base/numbers.h"
#include "core/services/FileList.h"
#include "core/services/folders.h"
#include "core/sprite/hlspr.h"
#include "desktop/forms/FormCoordinator.h"
#include "desktop/forms/add_frames/Form4.h"
#include "desktop/forms/exit_picture/Form9.h"
#include "desktop/forms/extract/Form3.h"
#include "desktop/forms/folder/Form5.h"
#include "desktop/forms/main_window/Form1.h"
#include "desktop/forms/new_sprite/Form2.h"
#include "desktop/forms/preview/Form7.h"
#include "desktop/forms/progress/Form6.h"
#include "qt/path_text.h"
#include "shared/ppm.h"
#include "ui_driver/UiDriver.h"
#include "walkthrough/Camera.h"
#include "walkthrough/Watch.h"

namespace varnoth::walkthrough {

using namespace ui_driver;

namespace {

class Walk {
  public:
    Walk(const Options& options, const Report& report, PictureLoader& loader)
        : options_(options),
          boxes_(report, options.answer),
          services_({&boxes_, &events_, &loader, &chooser_}),
          watch_(coordinator_, report),
          report_(report),
          camera_(options.screenshots, report) {
        events_.on_yield = [this] {
            capture_progress();
            press_cancel_when_due();
        };
        boxes_.on_open = [this] { camera_.take(*QApplication::activeModalWidget(), "message"); };
        boxes_.before = [this](std::string_view text) {
            // The box is shown once the file has been written.
            if (text == "Sprite Saved Successfully !") {
                report_("wrote", chooser_.next);
            }
        };
    }

    void run();

  private:
    void check_folders() const;
    bool start();
    void make_new();
    bool open(const std::string& path);
    void import(const std::string& folder);
    void choose_drive_of(const QString& folder);
    void select_pictures();
    void pick();
    void move(const Move& move);
    void draw(const Drawing& drawing);
    bool save(const std::string& path);
    void preview();
    void extract(const std::string& folder);
    void select_lines();
    void set_extraction(const std::string& folder);
    void show_exit_picture();
    void capture_progress();
    void press_cancel_when_due();
    bool cancel_is_due();

    Form1& main() { return coordinator_.form1(); }

    bool has_line(std::int16_t position) { return position < main().List1.ListCount(); }

    const Options& options_;
    AnsweredMessageBoxes boxes_;
    WatchedEventQueue events_;
    AnsweredFileChooser chooser_;
    ServicesInstallation services_;
    FormCoordinator coordinator_;
    Watch watch_;
    const Report& report_;
    Camera camera_;
    bool captured_progress_ = false;
    bool cancelled_import_ = false;
};

void Walk::run() {
    check_folders();
    coordinator_.start();
    settle();
    camera_.take(main(), "start");
    if (!start()) {
        return;
    }
    for (const std::optional<std::string>* folder : {&options_.pictures, &options_.again}) {
        if (*folder) {
            import(**folder);
        }
    }
    for (const Move& one : options_.moves) {
        move(one);
    }
    for (const Drawing& drawing : options_.drawings) {
        draw(drawing);
    }
    preview();
    if (options_.save && save(*options_.save)) {
        open(*options_.save);
    }
    if (options_.export_folder) {
        extract(*options_.export_folder);
    }
    show_exit_picture();
}

// Called first, so that a wrong option does not leave a half-finished job. The pictures to select need to
// exist in the first folder only.
void Walk::check_folders() const {
    for (const std::optional<std::string>* folder :
         {&options_.pictures, &options_.again, &options_.screenshots}) {
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
        return open(*options_.open);
    }
    make_new();
    return true;
}

void Walk::make_new() {
    click(main().elboton2);
    Form2& dialog = *coordinator_.form2();
    type_into(dialog.eltexto2, QString::number(options_.width));
    type_into(dialog.eltexto3, QString::number(options_.height));
    choose(*dialog.elcombo1.findChild<DropDownList*>("Combo1"), options_.type);
    choose(*dialog.elcombo2.findChild<DropDownList*>("Combo1"), options_.render);
    camera_.take(dialog, "new");
    camera_.take(main(), "behind_a_dialog");
    click(dialog.elboton2);
    settle();
    camera_.take(main(), "new_sprite");
}

// Returns whether the file was opened.
bool Walk::open(const std::string& path) {
    const int boxes_before = boxes_.count();
    chooser_.next = path;
    click(main().elboton1);
    settle();
    camera_.take(main(), "opened");
    return boxes_.count() == boxes_before;
}

void Walk::import(const std::string& folder) {
    click(main().elboton4);
    if (coordinator_.form4() == nullptr) {
        return;
    }
    Form4& dialog = *coordinator_.form4();
    const QString absolute = QFileInfo(QString::fromStdString(folder)).absoluteFilePath();
    choose_drive_of(absolute);
    if (!walk_to(dialog.Dir1, absolute)) {
        throw WrongOption("cannot open the folder " + folder);
    }
    choose(dialog.Combo1, static_cast<int>(options_.filter));
    camera_.take(dialog, "add_frames");
    select_pictures();
    camera_.take(dialog, "add_frames_selected");
    pick();
    if (options_.resize && dialog.elradio1[1].isVisible()) {
        click(dialog.elradio1[1]);
    }
    click(dialog.elboton2);
    if (coordinator_.form4() != nullptr) {
        click(dialog.elboton3);
    }
    settle();
    camera_.take(main(), "imported");
}

// On Windows, the folder list may start on another drive.
void Walk::choose_drive_of(const QString& folder) {
    Form4& dialog = *coordinator_.form4();
    const std::string root = folders_down_to(plain_folder(path_of_text(folder))).front();
    const int line = dialog.Drive1.findData(text_of_path(root));
    if (line >= 0 && !is_within(dialog.Dir1.Path(), root)) {
        choose(dialog.Drive1, line);
    }
}

void Walk::select_pictures() {
    FileListBox& files = coordinator_.form4()->File1;
    for (int i = 0; i < files.ListCount(); ++i) {
        const std::string name = files.List(i).toStdString();
        if (options_.select.empty() || std::ranges::count(options_.select, name) > 0) {
            click_line(files, i, Qt::ControlModifier);
        }
    }
}

// A point outside the preview cannot be clicked.
void Walk::pick() {
    Form4& dialog = *coordinator_.form4();
    const std::optional<Point>& point = options_.pick;
    if (!point || !dialog.elboton1.Enabled() ||
        !dialog.Picture1.surface().bitmap().contains(point->x, point->y)) {
        return;
    }
    click(dialog.elboton1);
    point_at(dialog.Picture1, {point->x, point->y});
    camera_.take(dialog, "pick");
    click_at(dialog.Picture1, {point->x, point->y});
}

// Selects this line alone, then clicks an arrow.
void Walk::move(const Move& move) {
    if (!has_line(move.position)) {
        throw WrongOption("no line " + std::to_string(move.position) + " to move");
    }
    click_line(main().List1, move.position);
    click(move.up ? main().Label1 : main().Label2);
    settle();
    camera_.take(main(), "moved");
}

void Walk::draw(const Drawing& drawing) {
    check_subscript(drawing.position, main().List1.ListCount());
    click_line(main().List1, drawing.position);
    write_ppm(drawing.path, main().Picture1.surface().bitmap());
    report_("wrote", drawing.path);
}

// Returns whether a file was written. Clear enables Save for an unchanged sprite; a sprite that already has a
// file is saved to the path in the path box.
bool Walk::save(const std::string& path) {
    if (!main().elboton3.Enabled()) {
        click(main().elboton7);
    }
    const int boxes_before = boxes_.count();
    if (hlspr::UnnamedSprite) {
        chooser_.next = path;
        click(main().elboton3);
        return main().List1.ListCount() > 0 && !hlspr::UnnamedSprite;
    }
    type_into(main().eltexto1, QString::fromStdString(path));
    if (!main().elboton3.Enabled()) {
        return false;
    }
    click(main().elboton3);
    if (boxes_.count() != boxes_before) {
        return false;
    }
    report_("wrote", path);
    return true;
}

// Only for the screenshots: the preview changes nothing.
void Walk::preview() {
    if (!camera_.is_enabled() || main().List1.ListCount() == 0) {
        return;
    }
    double_click(main().Picture1);
    Form7& dialog = *coordinator_.form7();
    settle();
    camera_.take(dialog, "preview");
    click(dialog.Label2);
    click(dialog.Label3);
    settle();
    camera_.take(dialog, "preview_playing");
    click_at(dialog.elpanel1, {dialog.width() - 17, 17});
    settle();
}

void Walk::extract(const std::string& folder) {
    if (!main().elboton6.Enabled()) {
        return;
    }
    select_lines();
    click(main().elboton6);
    Form3& dialog = *coordinator_.form3();
    camera_.take(dialog, "extract");
    set_extraction(folder);
    camera_.take(dialog, "extract_set");
    click(dialog.elboton2);
    if (coordinator_.form5() != nullptr) {
        camera_.take(*coordinator_.form5(), "folder");
        click(coordinator_.form5()->elboton2);
    }
    if (coordinator_.form3() != nullptr) {
        click(dialog.elboton3);
    }
    settle();
}

void Walk::set_extraction(const std::string& folder) {
    Form3& dialog = *coordinator_.form3();
    if (camera_.is_enabled()) {
        click(dialog.elboton1);
        camera_.take(*coordinator_.form5(), "folder");
        click(coordinator_.form5()->elboton2);
        settle();
    }
    type_into(dialog.eltexto1, QString::fromStdString(folder));
    click(dialog.elradio1[static_cast<std::size_t>(options_.format)]);
    if (options_.compressed && dialog.elcheck1.isVisible()) {
        click(dialog.elcheck1);
    }
    click(dialog.elradio3[static_cast<std::size_t>(options_.if_exists)]);
}

// Clicks the first line, and the others with the Control key.
void Walk::select_lines() {
    ListBox& lines = main().List1;
    if (!options_.frames) {
        click_line(lines, 0);
        QTest::keyClick(&lines, Qt::Key_A, Qt::ControlModifier);
        return;
    }
    Qt::KeyboardModifiers keys = Qt::NoModifier;
    for (std::int16_t line = 0; has_line(line); line = checked_add(line, 1)) {
        if (std::ranges::count(*options_.frames, line) > 0) {
            click_line(lines, line, keys);
            keys = Qt::ControlModifier;
        }
    }
    if (keys == Qt::NoModifier) {
        click_line(lines, 0);
        click_line(lines, 0, Qt::ControlModifier);
    }
}

void Walk::show_exit_picture() {
    if (camera_.is_enabled()) {
        Form9 form;
        form.show_over(main());
        settle();
        camera_.take(form, "exit_picture");
    }
}

// Takes one screenshot, in the middle of the first import.
void Walk::capture_progress() {
    Form6* dialog = coordinator_.form6();
    if (dialog != nullptr && !captured_progress_ &&
        dialog->Progressbar1.Value() >= dialog->Progressbar1.Max() / 2) {
        captured_progress_ = true;
        camera_.take(*dialog, "progress");
    }
}

// Clicks Cancel while events are processed, as a user would.
void Walk::press_cancel_when_due() {
    Form6* dialog = coordinator_.form6();
    if (dialog == nullptr || !dialog->elboton1.Enabled() || !cancel_is_due()) {
        return;
    }
    cancelled_import_ = cancelled_import_ || coordinator_.form4() != nullptr;
    click(dialog->elboton1);
    camera_.take(*dialog, "aborting");
}

bool Walk::cancel_is_due() {
    if (coordinator_.form4() != nullptr) {
        return options_.abort_after && !cancelled_import_ && watch_.pictures_begun() >= *options_.abort_after;
    }
    return options_.abort_export_after && watch_.frames_written() >= *options_.abort_export_after;
}

} // namespace

void walk(const Options& options, const Report& report, PictureLoader& loader) {
    Walk(options, report, loader).run();
}

} // namespace varnoth::walkthrough
