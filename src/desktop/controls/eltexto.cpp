#include "desktop/controls/eltexto.h"

#include <algorithm>
#include <array>
#include <limits>
#include <span>
#include <utility>

#include <QKeyEvent>
#include <QMouseEvent>

#include "core/base/RunTimeFailure.h"
#include "core/base/numbers.h"
#include "desktop/services/exception_barrier.h"
#include "desktop/theme/theme.h"

namespace varnoth {

namespace {

constexpr double height_in_twips = 300;
constexpr int text_left = 4;
constexpr int text_top = 3;
constexpr int text_line_height = 16;
constexpr int no_limit = 32767; // of QLineEdit
constexpr int own_margin = 2;   // of QLineEdit at both sides of the text

const std::vector<ControlProperty>& persisted() {
    static const std::vector<ControlProperty> properties{
        {"MaxChars", sets<&eltexto::SetMaxChars>, QVariant::fromValue(std::int16_t{0})},
        {"BackColor", sets<&SkinnedControl::SetBackColor>, theme::field_background},
        {"ForeColor", sets<&SkinnedControl::SetForeColor>, theme::light_text},
        {"Enabled", sets<&SkinnedControl::SetEnabled>, true},
        {"Text", sets<&eltexto::SetText>, QStringLiteral("Text")},
        {"Color3DLight", sets<&SkinnedControl::SetColor3DLight>, theme::edge_light},
        {"Color3DDark", sets<&SkinnedControl::SetColor3DDark>, theme::window_text},
        {"Font", sets<&SkinnedControl::SetFont>},
        {"FontName", sets<&SkinnedControl::SetFontName>},
        {"FontSize", sets<&SkinnedControl::SetFontSize>},
        {"FontItalic", sets<&SkinnedControl::SetFontItalic>},
        {"FontUnderline", sets<&SkinnedControl::SetFontUnderline>},
    };
    return properties;
}

struct KeyNumber {
    int key;
    std::int16_t number;
};

// Keys that Qt names by their character, with or without Shift, as on a US keyboard.
constexpr std::array character_keys{
    KeyNumber{Qt::Key_ParenRight, '0'},   KeyNumber{Qt::Key_Exclam, '1'},
    KeyNumber{Qt::Key_At, '2'},           KeyNumber{Qt::Key_NumberSign, '3'},
    KeyNumber{Qt::Key_Dollar, '4'},       KeyNumber{Qt::Key_Percent, '5'},
    KeyNumber{Qt::Key_AsciiCircum, '6'},  KeyNumber{Qt::Key_Ampersand, '7'},
    KeyNumber{Qt::Key_Asterisk, '8'},     KeyNumber{Qt::Key_ParenLeft, '9'},
    KeyNumber{Qt::Key_Semicolon, 186},    KeyNumber{Qt::Key_Colon, 186},
    KeyNumber{Qt::Key_Equal, 187},        KeyNumber{Qt::Key_Plus, 187},
    KeyNumber{Qt::Key_Comma, 188},        KeyNumber{Qt::Key_Less, 188},
    KeyNumber{Qt::Key_Minus, 189},        KeyNumber{Qt::Key_Underscore, 189},
    KeyNumber{Qt::Key_Period, 190},       KeyNumber{Qt::Key_Greater, 190},
    KeyNumber{Qt::Key_Slash, 191},        KeyNumber{Qt::Key_Question, 191},
    KeyNumber{Qt::Key_QuoteLeft, 192},    KeyNumber{Qt::Key_AsciiTilde, 192},
    KeyNumber{Qt::Key_BracketLeft, 219},  KeyNumber{Qt::Key_BraceLeft, 219},
    KeyNumber{Qt::Key_Backslash, 220},    KeyNumber{Qt::Key_Bar, 220},
    KeyNumber{Qt::Key_BracketRight, 221}, KeyNumber{Qt::Key_BraceRight, 221},
    KeyNumber{Qt::Key_Apostrophe, 222},   KeyNumber{Qt::Key_QuoteDbl, 222},
};

// Keypad keys whose number differs from that of the main keyboard's key, except for the digits, which are
// consecutive.
constexpr std::array keypad_keys{
    KeyNumber{Qt::Key_Asterisk, 106}, KeyNumber{Qt::Key_Plus, 107},  KeyNumber{Qt::Key_Minus, 109},
    KeyNumber{Qt::Key_Period, 110},   KeyNumber{Qt::Key_Comma, 110}, KeyNumber{Qt::Key_Slash, 111},
};

constexpr std::array other_keys{
    KeyNumber{Qt::Key_Backspace, 8}, KeyNumber{Qt::Key_Tab, 9},       KeyNumber{Qt::Key_Backtab, 9},
    KeyNumber{Qt::Key_Clear, 12},    KeyNumber{Qt::Key_Return, 13},   KeyNumber{Qt::Key_Enter, 13},
    KeyNumber{Qt::Key_Shift, 16},    KeyNumber{Qt::Key_Control, 17},  KeyNumber{Qt::Key_Alt, 18},
    KeyNumber{Qt::Key_Pause, 19},    KeyNumber{Qt::Key_CapsLock, 20}, KeyNumber{Qt::Key_Escape, 27},
    KeyNumber{Qt::Key_PageUp, 33},   KeyNumber{Qt::Key_PageDown, 34}, KeyNumber{Qt::Key_End, 35},
    KeyNumber{Qt::Key_Home, 36},     KeyNumber{Qt::Key_Left, 37},     KeyNumber{Qt::Key_Up, 38},
    KeyNumber{Qt::Key_Right, 39},    KeyNumber{Qt::Key_Down, 40},     KeyNumber{Qt::Key_Insert, 45},
    KeyNumber{Qt::Key_Delete, 46},   KeyNumber{Qt::Key_NumLock, 144}, KeyNumber{Qt::Key_ScrollLock, 145},
};

constexpr std::int16_t first_function_key = 112;
constexpr std::int16_t keypad_zero = 96;

bool within(int key, int first, int last) {
    return key >= first && key <= last;
}

// Returns 0 for a key that is not listed.
std::int16_t number_in(std::span<const KeyNumber> keys, int key) {
    const auto found = std::ranges::find(keys, key, &KeyNumber::key);
    return found == keys.end() ? std::int16_t{0} : found->number;
}

// Returns 0 for a key without a number.
std::int16_t key_number(const QKeyEvent& event) {
    const int key = event.key();
    if (within(key, Qt::Key_F1, Qt::Key_F16)) {
        return narrow<std::int16_t>(first_function_key + (key - Qt::Key_F1));
    }
    const bool keypad = event.modifiers().testFlag(Qt::KeypadModifier);
    if (within(key, Qt::Key_0, Qt::Key_9)) {
        return narrow<std::int16_t>(keypad ? keypad_zero + (key - Qt::Key_0) : key);
    }
    if (within(key, Qt::Key_A, Qt::Key_Z) || key == Qt::Key_Space) {
        return narrow<std::int16_t>(key);
    }
    if (keypad) {
        if (const std::int16_t number = number_in(keypad_keys, key); number != 0) {
            return number;
        }
    }
    const std::int16_t number = number_in(character_keys, key);
    return number != 0 ? number : number_in(other_keys, key);
}

// Whether the key types a character. Delete does not, although Qt gives it a text.
bool has_character(const QKeyEvent& event) {
    return !event.text().isEmpty() && event.key() != Qt::Key_Delete;
}

// A character that does not fit becomes a question mark.
std::int16_t character_number(const QKeyEvent& event) {
    const char16_t character = event.text().front().unicode();
    constexpr char16_t greatest = std::numeric_limits<std::int16_t>::max();
    return narrow<std::int16_t>(static_cast<int>(character > greatest ? u'?' : character));
}

} // namespace

eltexto::eltexto(const QString& name, QWidget* parent)
    : ForwardingControl(name, parent, persisted()), text1_(this) {
    text1_.setObjectName("Text1");
    text1_.setFrame(false);
    text1_.setTextMargins(-own_margin, 0, -own_margin, 0);
    text1_.setGeometry(text_left, text_top, width() - 2 * text_left, text_line_height);
    text1_.setMouseTracking(true);
    text1_.installEventFilter(this);
    setFocusProxy(&text1_);
    add_part("lineA(0)", edges_.top);
    add_part("lineA(1)", edges_.left);
    add_part("lineB(0)", edges_.right);
    add_part("lineB(1)", edges_.bottom);
    set_background_edge(1);
    fix_height(height_in_twips);
    ReadProperties({});
}

void eltexto::SetMaxChars(std::int16_t count) {
    if (count < 0) {
        fail(Failure::InvalidPropertyValue);
    }
    max_chars_ = count;
    text1_.setMaxLength(count == 0 ? no_limit : count);
    changed("MaxChars");
}

void eltexto::SetText(const QString& text) {
    text1_.setText(text);
    changed("Text");
}

void eltexto::setAccessibleName(const QString& name) {
    text1_.setAccessibleName(name);
}

void eltexto::resized() {
    edges_.set_width(width_in_pixels());
    // The field moves up by one pixel at each resize: its initial position is one pixel too low.
    text1_.setGeometry(text_left, text1_.y() - 1, round_to_even<int>(ScaleWidth()) - 2 * text_left,
                       text_line_height);
}

void eltexto::show_back_colour() {
    QPalette palette = text1_.palette();
    palette.setColor(QPalette::Base, theme::to_qcolor(BackColor()));
    palette.setColor(QPalette::Window, theme::to_qcolor(BackColor()));
    text1_.setPalette(palette);
}

void eltexto::show_fore_colour() {
    QPalette palette = text1_.palette();
    palette.setColor(QPalette::Text, theme::to_qcolor(ForeColor()));
    text1_.setPalette(palette);
}

void eltexto::show_light() {
    edges_.colour_bottom_right(Color3DLight());
}

void eltexto::show_dark() {
    edges_.colour_top_left(Color3DDark());
}

void eltexto::show_font() {
    text1_.setFont(theme::display_font(Font()));
}

// Events of the edit field, which also handles them itself.

bool eltexto::eventFilter(QObject* /*watched*/, QEvent* event) {
    guard_event([&] { forward(*event); });
    return false;
}

void eltexto::forward(QEvent& event) {
    switch (event.type()) {
    case QEvent::KeyPress: {
        const auto& key = static_cast<const QKeyEvent&>(event);
        emit KeyDown(key_number(key), shift_number(key.modifiers()));
        if (has_character(key)) {
            emit KeyPress(character_number(key));
        }
        break;
    }
    case QEvent::KeyRelease: {
        const auto& key = static_cast<const QKeyEvent&>(event);
        if (!key.isAutoRepeat()) {
            emit KeyUp(key_number(key), shift_number(key.modifiers()));
        }
        break;
    }
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        forward_press(static_cast<const QMouseEvent&>(event));
        break;
    case QEvent::MouseMove: {
        const auto& mouse = static_cast<const QMouseEvent&>(event);
        const MouseArguments arguments =
            mouse_arguments(mouse.buttons(), mouse.modifiers(), mouse.position());
        emit MouseMove(arguments.Button, arguments.Shift, arguments.x, arguments.y);
        break;
    }
    case QEvent::MouseButtonRelease:
        forward_release(static_cast<const QMouseEvent&>(event));
        break;
    default:
        break;
    }
}

void eltexto::forward_press(const QMouseEvent& mouse) {
    if (!has_number(mouse.button())) {
        return;
    }
    const MouseArguments arguments = mouse_arguments(mouse.button(), mouse.modifiers(), mouse.position());
    emit MouseDown(arguments.Button, arguments.Shift, arguments.x, arguments.y);
    if (mouse.button() != Qt::LeftButton) {
        return;
    }
    click_due_ = mouse.type() == QEvent::MouseButtonPress;
    if (!click_due_) {
        emit DblClick();
    }
}

void eltexto::forward_release(const QMouseEvent& mouse) {
    if (!has_number(mouse.button())) {
        return;
    }
    const MouseArguments arguments = mouse_arguments(mouse.button(), mouse.modifiers(), mouse.position());
    const bool clicked = mouse.button() == Qt::LeftButton && std::exchange(click_due_, false) &&
                         is_on(mouse.position(), text1_.size());
    emit MouseUp(arguments.Button, arguments.Shift, arguments.x, arguments.y);
    if (clicked) {
        emit Click();
    }
}

} // namespace varnoth
