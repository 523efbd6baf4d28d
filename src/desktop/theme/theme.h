// The theme of the program: its colours, its font and the style of Qt's own widgets.
#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>
#include <QString>

#include "core/image/Colour.h"

class QApplication;
class QWidget;

namespace varnoth {

/// The title of the main window and of every message box.
inline constexpr const char* application_title = "Varnoth 1.0";

namespace theme {

// Colours are 0x00BBGGRR.
inline constexpr Colour window_background = 0x44584C;
inline constexpr Colour field_background = 0x37463E;
inline constexpr Colour light_text = 0xD3DED8;
inline constexpr Colour white = 0xFFFFFF;
inline constexpr Colour black = 0;
inline constexpr Colour disabled_text = 0x808080;
inline constexpr Colour edge_light = 0x95AAA0;
inline constexpr Colour edge_dark = 0x222E28;
inline constexpr Colour highlight = 0x50B5C4; ///< checked, armed, playing
inline constexpr Colour over = 0xFF0000;
inline constexpr Colour close_glyph = 0x809188;
inline constexpr Colour window_text = static_cast<Colour>(0x80000008U); ///< a system-colour reference

/// Converts a colour or a system-colour reference.
QColor to_qcolor(Colour colour);

/// Tahoma, 9.75 points, weight 400.
QFont design_font();

/// The font to draw with. Its size is in pixels, 15 twips each, whatever resolution the screen reports. When
/// the family is not installed, the nearest sans-serif family replaces it, narrowed until the program's
/// captions are no wider than in Tahoma.
QFont display_font(const QFont& font);

/// The colours of Qt's own widgets. Disabled ones have grey text.
QPalette palette(bool enabled = true);

/// Sets a widget's palette for its own enabled state. Call it whenever that state is set. A widget that is
/// disabled only with its window keeps its colours.
void apply_palette(QWidget& widget, bool enabled);

/// Sets the style, palette and font of all of Qt's own widgets, and the name and icon of all windows.
void apply(QApplication& application);

} // namespace theme

} // namespace varnoth
