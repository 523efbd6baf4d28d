#include "desktop/forms/add_frames/Form4.h"

#include <algorithm>

#include <QCursor>

#include "core/base/number_text.h"
#include "core/base/numbers.h"
#include "core/jobs/PictureSelection.h"
#include "desktop/forms/FormParts.h"
#include "desktop/forms/main_window/Form1.h"
#include "desktop/services/exception_barrier.h"
#include "desktop/widgets/checked_state.h"
#include "qt/path_text.h"

namespace varnoth {

namespace {

constexpr int right_column = 478;
constexpr int right_width = 267;
constexpr int foot = 503 - design::margin - design::button_height;

// The text colour of the Pick button is the picker's only state variable.
constexpr Colour armed_colour = theme::highlight;
constexpr Colour idle_colour = theme::light_text;

} // namespace

// Gives the import access to the dialog's controls.
class Form4::ImportSide : public AddFramesForm {
  public:
    explicit ImportSide(Form4& form) : form_(form) {}

    PictureFormat format() const override { return static_cast<PictureFormat>(form_.Combo1.ListIndex()); }

    std::string folder() const override { return form_.Dir1.Path(); }

    std::int32_t entry_count() const override { return form_.File1.ListCount(); }

    std::string entry(std::int32_t index) const override { return path_of_text(form_.File1.List(index)); }

    bool is_selected(std::int32_t index) const override { return form_.File1.Selected(index); }

    void unselect(std::int32_t index) override { form_.File1.SetSelected(index, false); }

    void open_size_question(const std::string& set_caption, const std::string& resize_caption) override {
        form_.ellabel6.show();
        form_.elradio1[0].SetCaption(QString::fromStdString(set_caption));
        form_.elradio1[1].SetCaption(QString::fromStdString(resize_caption));
        for (elradio& choice : form_.elradio1) {
            choice.SetEnabled(true);
            choice.show();
        }
    }

    void close_size_question() override {
        form_.ellabel6.hide();
        for (elradio& choice : form_.elradio1) {
            choice.SetEnabled(false);
            choice.hide();
        }
    }

    bool size_question_open() const override { return form_.elradio1[0].Enabled(); }

    bool set_sprite_chosen() const override { return form_.elradio1[0].Value(); }

    bool pick_enabled() const override { return form_.elboton1.Enabled(); }

    Colour transparent_colour() const override { return form_.Picture2.surface().BackColor(); }

    PictureSurface& Picture1() override { return form_.Picture1.surface(); }

    PictureSurface& Buffer1() override { return form_.Buffer1; }

    PictureSurface& Buffer2() override { return form_.Buffer2; }

    PictureSurface& jojoPalette() override { return form_.jojoPalette; }

  private:
    Form4& form_;
};

Form4::Form4(Form1& main_window)
    : Form("Form4", "Add Frame/s", Kind::Dialog, 752, 503),
      Picture1("Picture1", &Picture3,
               {.parent = nullptr, .width = 256, .height = 256, .back_colour = theme::white}),
      Picture2("Picture2", &elframe4, {.parent = nullptr, .width = 38, .height = 22, .border = 1}),
      main_window_(main_window),
      import_side_(std::make_unique<ImportSide>(*this)) {
    design();
    connect_controls();
    design_keys();
    for (const PictureFormat format :
         {PictureFormat::Bmp, PictureFormat::Jpg, PictureFormat::Tga, PictureFormat::Pcx}) {
        Combo1.AddItem("*" + QString::fromLatin1(extension_of(format)));
    }
    Combo1.SetListIndex(0);
}

Form4::~Form4() = default;

AddFramesForm& Form4::add_frames_form() {
    return *import_side_;
}

// Layout.

void Form4::design() {
    set_panel(elpanel1, "Add Frame/s");
    elpanel1.SetCerrar(false);
    design_browser();
    design_preview();
    design_sizes();
    constexpr int cancel_left = right_column + right_width - design::button_width;
    design::place_button(elboton2, cancel_left - design::gap - design::button_width, foot, "Ok");
    design::place_button(elboton3, cancel_left, foot, "Cancel");
}

void Form4::design_browser() {
    constexpr int height = foot - design::gap - design::below_title;
    constexpr int list_top = 6 + design::text_height + design::gap;
    design::place_edged(elframe1, {design::margin, design::below_title, 467, height});
    Drive1.setGeometry(6, 6, 222, design::text_height);
    Drive1.setAccessibleName("Drives");
    Dir1.setGeometry(6, list_top, 222, height - 6 - list_top);
    Dir1.setAccessibleName("Folders");
    Combo1.setGeometry(232, 6, 229, design::text_height);
    Combo1.setAccessibleName("File type");
    File1.setGeometry(232, list_top, 229, height - 6 - list_top);
    File1.setAccessibleName("Files");
}

void Form4::design_preview() {
    design::place_edged(elframe2, {right_column, design::below_title, right_width, 268});
    design::place_edged(elframe3, {4, 5, 258, 258});
    Picture3.setObjectName("Picture3");
    Picture3.setGeometry(1, 1, 256, 256);
    QPalette colours = Picture3.palette();
    colours.setColor(QPalette::Window, Qt::white);
    Picture3.setPalette(colours);
    Picture3.setAutoFillBackground(true);
    Picture1.move(0, 0);
    Picture1.setAccessibleName("Preview");
}

void Form4::design_sizes() {
    constexpr int top = design::below_title + 268 + design::gap;
    design::place_edged(elframe4, {right_column, top, right_width, foot - design::gap - top});
    const auto line = [](int number) { return 9 + number * design::row; };
    constexpr Colour ground = theme::field_background;
    design::place_label(ellabel4, {10, line(0), 90, design::text_height}, "Sprite Size:", ground);
    design::place_label(ellabel5, {104, line(0), 153, design::text_height}, QString(), ground);
    design::place_label(ellabel2, {10, line(1), 90, design::text_height}, "Pictures Size:", ground);
    design::place_label(ellabel3, {104, line(1), 153, design::text_height}, QString(), ground);
    design::place_label(ellabel6, {10, line(2), 247, design::text_height}, "Sizes Dont Match:", ground);
    ellabel6.SetEnabled(false);
    ellabel6.hide();
    constexpr std::array choices{"Set Sprite To 256x256", "Resize Pictures To 256x256"};
    for (std::size_t i = 0; i < choices.size(); ++i) {
        design::place_checkable(elradio1[i], {10, line(3 + static_cast<int>(i)), 247, 19}, choices[i], ground,
                                "Sizes Dont Match");
        elradio1[i].SetEnabled(false);
        elradio1[i].hide();
    }
    elradio1[0].SetValue(true);
    design::place_label(ellabel1, {10, line(5) + 9, 122, design::text_height}, "Transparent Color:", ground);
    ellabel1.SetForeColor(theme::disabled_text);
    Picture2.move(144, line(5) + 7);
    Picture2.raise(); // screen readers visit it after its caption
    Picture2.setAccessibleName("Transparent Color");
    show_transparent(Picture2.surface().BackColor());
    design::place_button(elboton1, 201, line(5) + 7, "Pick");
    elboton1.setToolTip("Pick Transparent Color From Picture");
    disable_button(elboton1);
}

// Events.

void Form4::connect_controls() {
    connect_browser();
    connect_picker();
    on_event(&elradio1[0], &elradio::Click, this, [this] { elradio1[1].SetValue(false); });
    on_event(&elradio1[1], &elradio::Click, this, [this] { elradio1[0].SetValue(false); });
    on_event(&elboton2, &elboton::Click, this, [this] { emit importRequested(); });
    on_event(&elboton3, &elboton::Click, this, [this] {
        main_window_.SetEnabled(true);
        emit unloadRequested();
    });
}

void Form4::connect_browser() {
    on_event(&Drive1, &DriveList::Change, this, [this] { Dir1.SetPath(Drive1.Drive()); });
    on_event(&Dir1, &FolderListBox::Change, this, [this] { File1.SetPath(Dir1.Path()); });
    on_event(&Combo1, &DropDownList::Click, this,
             [this] { File1.SetPattern(Combo1.List(Combo1.ListIndex())); });
    on_event(&File1, &FileListBox::Click, this, [this] { click_file(); });
}

void Form4::connect_picker() {
    on_event(&elboton1, &elboton::Click, this, [this] { click_pick(); });
    on_event(&Picture1, &PictureBox::MouseMove, this,
             [this](const MouseArguments& mouse) { show_colour_under(mouse); });
    on_event(&Picture1, &PictureBox::MouseDown, this,
             [this](const MouseArguments& mouse) { take_colour_under(mouse); });
}

void Form4::click_file() {
    if (ValidateSelection(*import_side_) && File1.ListCount() >= 1) {
        LoadSelectedPicture(*import_side_, narrow<std::int16_t>(File1.ListIndex()), Picture1.surface());
        const PictureSurface& picture = Picture1.surface();
        ellabel3.SetCaption(QString::fromStdString(number_text(picture.ScaleWidth()) + "x" +
                                                   number_text(picture.ScaleHeight())));
    }
    // Until the user picks a colour, the top left pixel is the transparent colour.
    if (!TransparentPicked && elboton1.Enabled()) {
        show_transparent(Picture1.surface().Point(0, 0));
    }
}

void Form4::enable_picker() {
    elboton1.SetEnabled(true);
    set_armed(false);
    ellabel1.SetForeColor(idle_colour);
}

bool Form4::armed() const {
    return elboton1.ForeColor() == armed_colour;
}

void Form4::set_armed(bool armed) {
    elboton1.SetForeColor(armed ? armed_colour : idle_colour);
    set_checked_state(elboton1, armed);
}

void Form4::click_pick() {
    set_armed(!armed());
}

void Form4::show_transparent(Colour colour) {
    Picture2.SetBackColor(colour);
    Picture2.setAccessibleDescription(colour == no_colour ? QStringLiteral("No color")
                                                          : QStringLiteral("Red %1, green %2, blue %3")
                                                                .arg(red_of(colour))
                                                                .arg(green_of(colour))
                                                                .arg(blue_of(colour)));
}

void Form4::show_colour_under(const MouseArguments& mouse) {
    if (!armed()) {
        return;
    }
    const Colour colour =
        Picture1.surface().Point(round_to_even<std::int32_t>(mouse.x), round_to_even<std::int32_t>(mouse.y));
    if (colour != no_colour) {
        show_transparent(colour);
    }
}

void Form4::take_colour_under(const MouseArguments& mouse) {
    if (!armed()) {
        return;
    }
    show_colour_under(mouse);
    set_armed(false);
    TransparentPicked = true;
}

// Keys.

void Form4::design_keys() {
    // The picker comes first: it takes Return while it is armed.
    add_keys(picker_keys());
    add_keys(dialog_keys(elboton2, elboton3));
    add_keys({shortcut(Qt::ALT | Qt::Key_D, Drive1), shortcut(Qt::ALT | Qt::Key_T, Combo1),
              shortcut(Qt::ALT | Qt::Key_S, elradio1[0]), shortcut(Qt::ALT | Qt::Key_R, elradio1[1]),
              shortcut(Qt::ALT | Qt::Key_P, elboton1)});
}

std::vector<FormKey> Form4::picker_keys() {
    struct Step {
        QKeyCombination key;
        QPoint step;
    };

    constexpr int leap = 10;
    constexpr std::array steps{
        Step{Qt::Key_Left, {-1, 0}}, Step{Qt::SHIFT | Qt::Key_Left, {-leap, 0}},
        Step{Qt::Key_Right, {1, 0}}, Step{Qt::SHIFT | Qt::Key_Right, {leap, 0}},
        Step{Qt::Key_Up, {0, -1}},   Step{Qt::SHIFT | Qt::Key_Up, {0, -leap}},
        Step{Qt::Key_Down, {0, 1}},  Step{Qt::SHIFT | Qt::Key_Down, {0, leap}},
    };
    const auto is_armed = [this] { return armed(); };
    std::vector<FormKey> keys;
    keys.reserve(steps.size() + 1);
    for (const Step& each : steps) {
        keys.push_back({each.key, &Picture1, [this, step = each.step] { move_picker(step); },
                        FormKey::First::Form, is_armed, true});
    }
    keys.push_back({Qt::Key_Return, &Picture1,
                    [this] { Picture1.perform_click_at(place_in_picture(picker_place_)); },
                    FormKey::First::Form, is_armed});
    on_event(&Picture1, &PictureBox::MouseMove, this,
             [this](const MouseArguments& mouse) { follow_pointer(mouse); });
    return keys;
}

// The window system also reports the moves that the arrow keys caused, possibly after the next key has moved
// the picker on. Those are ignored.
void Form4::follow_pointer(const MouseArguments& mouse) {
    if (QCursor::pos() != pointer_set_to_) {
        pointer_set_to_.reset();
        picker_place_ =
            place_in_picture({round_to_even<int>(double{mouse.x}), round_to_even<int>(double{mouse.y})});
    }
}

// Where the platform allows it, the pointer moves along to show the position.
void Form4::move_picker(const QPoint& step) {
    picker_place_ = place_in_picture(picker_place_ + step);
    if (clients_place_windows()) {
        pointer_set_to_ = Picture1.mapToGlobal(picker_place_);
        QCursor::setPos(*pointer_set_to_);
    }
    Picture1.perform_move(picker_place_);
}

QPoint Form4::place_in_picture(const QPoint& place) const {
    const QRect seen = Picture1.rect() & Picture3.rect();
    return {std::clamp(place.x(), 0, std::max(seen.right(), 0)),
            std::clamp(place.y(), 0, std::max(seen.bottom(), 0))};
}

} // namespace varnoth
