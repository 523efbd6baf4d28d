#include "desktop/forms/main_window/Form1.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "core/base/RunTimeFailure.h"
#include "core/base/numbers.h"
#include "core/services/Services.h"
#include "core/sprite/hlspr.h"
#include "desktop/forms/FormParts.h"
#include "desktop/services/exception_barrier.h"
#include "qt/path_text.h"

namespace varnoth {

namespace {

constexpr std::string_view sprite_filter = "HL Spr File(*.spr)|*.spr";
constexpr qsizetype extension_length = 4; // of ".spr"

QString trimmed_of_blanks(const QString& text) {
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && text[begin] == QLatin1Char(' ')) {
        ++begin;
    }
    while (end > begin && text[end - 1] == QLatin1Char(' ')) {
        --end;
    }
    return text.mid(begin, end - begin);
}

// The part after the last slash or backslash.
QString title_of(const QString& path) {
    return path.mid(std::max(path.lastIndexOf(QLatin1Char('/')), path.lastIndexOf(QLatin1Char('\\'))) + 1);
}

} // namespace

Form1::Form1()
    : Form("Form1", application_title, Kind::Main, 575, 477),
      Picture1("Picture1", &picture_clip,
               {.parent = nullptr, .width = 256, .height = 256, .back_colour = theme::field_background}) {
    design();
    connect_controls();
    design_keys();
    hlspr::ExtractFolder.clear();
    hlspr::UnnamedSprite = false;
    hlspr::SpriteDirty = false;
}

// Layout.

void Form1::design() {
    set_panel(elpanel1, application_title);
    design_files();
    design_frames();
    design_picture();
    design_fields();
}

void Form1::design_files() {
    design::place_edged(elframe1, {7, 35, 561, 36});
    design::place_field(eltexto1, {8, 8, 363, 20}, QString(), "Sprite file");
    design::place_button(elboton1, 378, 6, "Open");
    design::place_button(elboton2, 438, 6, "New");
    design::place_button(elboton3, 498, 6, "Save");
    disable_button(elboton3);
}

void Form1::design_frames() {
    design::place_edged(elframe2, {7, 75, 282, 396});
    List1.setGeometry(6, 6, 247, 355);
    List1.setAccessibleName("Frames");
    List1.SetEnabled(false);
    Label1.setGeometry(258, 163, 18, 18);
    Label2.setGeometry(258, 187, 18, 18);
    Label1.SetForeColor(theme::light_text);
    Label2.SetForeColor(theme::light_text);
    design::place_button(elboton7, 6, 366, "Clear");
    design::place_button(elboton6, 76, 366, "Export");
    design::place_button(elboton5, 137, 366, "Remove");
    design::place_button(elboton4, 198, 366, "Import");
    for (elboton* button : {&elboton4, &elboton5, &elboton6, &elboton7}) {
        disable_button(*button);
    }
}

void Form1::design_picture() {
    design::place_edged(elframe3, {294, 75, 273, 269});
    design::place_edged(elframe5, {7, 5, 258, 258});
    picture_clip.setGeometry(1, 1, 256, 256);
    Picture1.move(0, 0);
    Picture1.setToolTip("DblClick To Preview Animation");
    Picture1.setAccessibleName("Selected frame");
}

void Form1::design_fields() {
    design::place_edged(elframe4, {294, 349, 273, 122});
    const std::array captions{&ellabel1, &ellabel2, &ellabel3, &ellabel4, &ellabel5};
    const std::array values{&ellabel8, &ellabel7, &ellabel6, &ellabel9, &ellabel10};
    const std::array texts{"Name:", "Size:", "Origin:", "Type:", "Render:"};
    for (std::size_t i = 0; i < captions.size(); ++i) {
        const int top = 10 + static_cast<int>(i) * design::row;
        design::place_label(*captions[i], {10, top, 45, 20}, texts[i], theme::field_background);
        captions[i]->SetForeColor(theme::disabled_text);
        design::place_label(*values[i], {55, top, 211, 20}, QString(), theme::field_background);
    }
}

void Form1::connect_controls() {
    on_event(&elpanel1, &elpanel::CloseClick, this, [this] { emit endRequested(); });
    on_event(this, &Form::closeRequested, this, [this] { emit endRequested(); });
    on_event(&elboton1, &elboton::Click, this, [this] { Open(); });
    on_event(&elboton2, &elboton::Click, this, [this] { emit newRequested(); });
    on_event(&elboton3, &elboton::Click, this, [this] { Save(); });
    on_event(&elboton4, &elboton::Click, this, [this] { emit importRequested(); });
    on_event(&elboton6, &elboton::Click, this, [this] { emit exportRequested(); });
    on_event(&elboton7, &elboton::Click, this, [this] { Clear(); });
    // Remove (elboton5) can be clicked but does nothing.
    on_event(&List1, &ListBox::Click, this, [this] { draw_current(); });
    on_event(&Label1, &Label::Click, this, [this] { move_frame(-1); });
    on_event(&Label2, &Label::Click, this, [this] { move_frame(1); });
    on_event(&Picture1, &PictureBox::DblClick, this, [this] {
        if (List1.ListCount() >= 1) {
            emit previewRequested();
        }
    });
}

void Form1::design_keys() {
    add_keys({shortcut(Qt::CTRL | Qt::Key_N, elboton2), shortcut(Qt::CTRL | Qt::Key_O, elboton1),
              shortcut(Qt::CTRL | Qt::Key_S, elboton3), shortcut(Qt::CTRL | Qt::Key_I, elboton4),
              shortcut(Qt::CTRL | Qt::Key_E, elboton6), shortcut(Qt::ALT | Qt::Key_C, elboton7),
              shortcut(Qt::ALT | Qt::Key_R, elboton5), shortcut(Qt::ALT | Qt::Key_Up, Label1),
              shortcut(Qt::ALT | Qt::Key_Down, Label2), shortcut(Qt::CTRL | Qt::Key_Q, elpanel1),
              plain_key(Qt::Key_Return, Picture1, [this] { return List1.hasFocus(); })});
}

// Commands.

void Form1::Open() {
    if (hlspr::SpriteDirty && ask_yes_no("¿ Do you want to save changes in " +
                                         path_of_text(trimmed_of_blanks(eltexto1.Text())) + " ?")) {
        Save();
    }
    const std::string path = choose_file_to_open(sprite_filter);
    if (path.empty() || hlspr::load_sprite(path) != True) {
        return;
    }
    hlspr::UnnamedSprite = false;
    hlspr::SpriteDirty = false;
    show_sprite(text_of_path(path));
}

// Does not change the state of the Save button.
void Form1::show_sprite(const QString& path) {
    List1.SetEnabled(true);
    List1.Clear();
    for (elboton* button : {&elboton4, &elboton5, &elboton6, &elboton7}) {
        enable_button(*button);
    }
    enable_captions();
    const SpriteHeaderRecord& header = hlspr::document().SpriteHeader;
    const FrameHeaderRecord& frame = hlspr::document().FrameHeader;
    const QString title = title_of(path);
    if (title.size() < extension_length) {
        fail(Failure::InvalidProcedureCall); // names shorter than the extension are not handled
    }
    ellabel8.SetCaption(title.left(title.size() - extension_length));
    ellabel7.SetCaption(QString("%1 x %2").arg(header.Width).arg(header.Height));
    ellabel6.SetCaption(QString("%1, %2").arg(frame.OriginX).arg(frame.OriginY));
    ellabel9.SetCaption(QString::fromUtf8(hlspr::sprite_type_name(header.SpriteType)));
    ellabel10.SetCaption(QString::fromUtf8(hlspr::render_mode_name(header.RenderMode)));
    eltexto1.SetText(path);
    for (std::int32_t i = 0; i < header.FrameCount; ++i) {
        add_frame_line(QString("Frame %1").arg(i));
    }
    List1.SetListIndex(0);
    List1.SetSelected(0, true);
}

void Form1::Save() {
    if (List1.ListCount() == 0) {
        show_message("Sprite Cant Be Empty. Put Some Pictures In It.");
        return;
    }
    if (!hlspr::UnnamedSprite) {
        hlspr::save_sprite(path_of_text(eltexto1.Text()));
        hlspr::SpriteDirty = false; // even if saving failed
        return;
    }
    const std::string path = choose_file_to_save(sprite_filter);
    if (path.empty() || hlspr::save_sprite(path) != True) {
        return;
    }
    // The path box keeps the typed name, so the next Save writes there, relative to the current folder.
    hlspr::UnnamedSprite = false;
    hlspr::SpriteDirty = false;
    show_message("Sprite Saved Successfully !");
}

// Enables Save; removes no frames.
void Form1::Clear() {
    hlspr::SpriteDirty = true;
    enable_button(elboton3);
}

// The frame list.

void Form1::draw_current() {
    if (List1.ListCount() >= 1 && current_has_frame_) {
        std::int16_t frame_number = narrow<std::int16_t>(List1.ListIndex());
        hlspr::draw_frame(frame_number, Picture1.surface());
    }
}

// Lines are display positions, not frames: their texts do not move.
void Form1::move_frame(int step) {
    const std::int32_t position = List1.ListIndex();
    const std::int32_t other = position + step;
    if (position < 0 || other < 0 || other >= List1.ListCount()) {
        return;
    }
    if (List1.SelCount() != 1) {
        show_message("Select Only 1");
        return;
    }
    enable_button(elboton3);
    hlspr::SpriteDirty = true;
    std::vector<std::int16_t>& order = hlspr::document().FrameOrder;
    check_subscript(position, order.size());
    check_subscript(other, order.size());
    std::swap(order[static_cast<std::size_t>(position)], order[static_cast<std::size_t>(other)]);
    List1.SetSelected(position, false);
    List1.SetListIndex(other);
    List1.SetSelected(other, true);
}

void Form1::enable_captions() {
    for (ellabel* caption : {&ellabel1, &ellabel2, &ellabel3, &ellabel4, &ellabel5}) {
        caption->SetForeColor(theme::light_text);
    }
}

void Form1::release_frames() {
    for (elboton* button : {&elboton3, &elboton5, &elboton6, &elboton7}) {
        enable_button(*button);
    }
    List1.SetEnabled(true);
    const std::int32_t last = List1.ListCount() - 1;
    current_has_frame_ = last < hlspr::document().SpriteHeader.FrameCount;
    List1.SetListIndex(last);
    current_has_frame_ = true;
    List1.SetSelected(last, true);
}

} // namespace varnoth
