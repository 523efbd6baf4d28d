// The look of the whole program: its colours, its font and what Qt's own widgets take of them.
#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>
#include <QString>

#include "core/image/Colour.h"

class QApplication;
class QWidget;

namespace varnoth {

/// The name that the user sees, in the title of the main window and of every message box.
inline constexpr const char* application_title = "Varnoth 1.0";

namespace theme {

// 0x00BBGGRR.
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

/// A colour or system-colour reference as Qt has it.
QColor to_qcolor(Colour colour);

/// Tahoma, 9.75 points, weight 400.
QFont design_font();

/// The font that really draws: in pixels, at 15 units a pixel whatever the screen calls its resolution. Where
/// Tahoma is not there, the nearest sans stands in, narrowed until its captions are as wide as Tahoma's.
QFont display_font(const QFont& font);

/// Colours for Qt's own widgets. A widget that is not enabled of its own account has grey text; one whose
/// whole window is disabled looks as before.
QPalette palette(bool enabled = true);

/// Gives a widget the palette that belongs to its own enabled state. To be called when that state is set.
void apply_palette(QWidget& widget, bool enabled);

/// Style, palette and font for everything that Qt draws by itself, and the icon of all windows.
void apply(QApplication& application);

} // namespace theme

} // namespace varnoth
