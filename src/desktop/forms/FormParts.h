// How the forms lay out and dress their controls: one margin, one rhythm, one pair of edge colours.
#pragma once

#include <QRect>
#include <QString>

#include "core/image/Colour.h"
#include "desktop/theme/theme.h"

namespace varnoth::design {

// In pixels.
inline constexpr int margin = 7; ///< between a window's edge and what stands in it
inline constexpr int below_title = 35;
inline constexpr int gap = 4;  ///< between neighbours
inline constexpr int row = 21; ///< from a line of text to the next
inline constexpr int text_height = 20;
inline constexpr int button_width = 56;
inline constexpr int button_height = 24;

/// Places a control and raises it, so that a screen reader walks the controls in the order in which they are
/// placed: as they are read.
template <typename Control>
void place_next(Control& control, const QRect& place) {
    control.setGeometry(place);
    control.raise();
}

/// Places a control that has edges, and gives it the dark edge that all forms have.
template <typename Control>
void place_edged(Control& control, const QRect& place) {
    control.SetColor3DDark(theme::edge_dark);
    place_next(control, place);
}

/// A button of the one size, its caption in the middle.
template <typename Button>
void place_button(Button& button, int left, int top, const QString& caption) {
    place_edged(button, {left, top, button_width, button_height});
    button.SetCenterCaption(true);
    button.SetCaption(caption);
}

/// A label that hides what lies behind it under its own background.
template <typename Label>
void place_label(Label& label, const QRect& place, const QString& caption, Colour background) {
    label.SetBackColor(background);
    place_next(label, place);
    label.SetCaption(caption);
}

/// A radio button or check box; `question` is what it answers, for a screen reader.
template <typename Mark>
void place_checkable(Mark& mark, const QRect& place, const QString& caption, Colour background,
                     const QString& question = {}) {
    mark.SetBackColor(background);
    place_edged(mark, place);
    mark.SetCaption(caption);
    mark.setAccessibleDescription(question);
}

/// A text box; `spoken` is what a screen reader calls it.
template <typename Field>
void place_field(Field& field, const QRect& place, const QString& text, const QString& spoken) {
    place_edged(field, place);
    field.SetText(text);
    field.setAccessibleName(spoken);
}

} // namespace varnoth::design
