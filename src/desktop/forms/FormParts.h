// Common layout and appearance of the forms' controls.
#pragma once

#include <QRect>
#include <QString>

#include "core/image/Colour.h"
#include "desktop/theme/theme.h"

namespace varnoth::design {

// In pixels.
inline constexpr int margin = 7; ///< between a window's edge and its controls
inline constexpr int below_title = 35;
inline constexpr int gap = 4;  ///< between adjacent controls
inline constexpr int row = 21; ///< from one line of text to the next
inline constexpr int text_height = 20;
inline constexpr int button_width = 56;
inline constexpr int button_height = 24;

/// Places a control and raises it: screen readers visit the controls in stacking order, which is then the
/// reading order in which they are placed.
template <typename Control>
void place_next(Control& control, const QRect& place) {
    control.setGeometry(place);
    control.raise();
}

/// Places a control with edges and sets the dark edge colour that all forms use.
template <typename Control>
void place_edged(Control& control, const QRect& place) {
    control.SetColor3DDark(theme::edge_dark);
    place_next(control, place);
}

/// Places a button of the common size with a centred caption.
template <typename Button>
void place_button(Button& button, int left, int top, const QString& caption) {
    place_edged(button, {left, top, button_width, button_height});
    button.SetCenterCaption(true);
    button.SetCaption(caption);
}

/// Places a label with an opaque background.
template <typename Label>
void place_label(Label& label, const QRect& place, const QString& caption, Colour background) {
    label.SetBackColor(background);
    place_next(label, place);
    label.SetCaption(caption);
}

/// Places a radio button or check box. `question` describes to screen readers what it answers.
template <typename Mark>
void place_checkable(Mark& mark, const QRect& place, const QString& caption, Colour background,
                     const QString& question = {}) {
    mark.SetBackColor(background);
    place_edged(mark, place);
    mark.SetCaption(caption);
    mark.setAccessibleDescription(question);
}

/// Places a text box. `spoken` is its name for screen readers.
template <typename Field>
void place_field(Field& field, const QRect& place, const QString& text, const QString& spoken) {
    place_edged(field, place);
    field.SetText(text);
    field.setAccessibleName(spoken);
}

} // namespace varnoth::design
