// Drives the user interface: sends real mouse and key events to real controls.
#pragma once

#include <QPoint>
#include <QString>
#include <Qt>

class QAbstractItemView;
class QWidget;

namespace varnoth {
class DropDownList;
class FolderListBox;
class eltexto;
} // namespace varnoth

namespace varnoth::ui_driver {

/// Clicks in the middle of a widget, or at a point of it. The events go to the widget's window, which passes
/// them to whatever is under the pointer; a widget that is hidden, covered or disabled gets no click.
void click(QWidget& widget, Qt::KeyboardModifiers keys = Qt::NoModifier);
void click_at(QWidget& widget, const QPoint& point, Qt::KeyboardModifiers keys = Qt::NoModifier);
void double_click(QWidget& widget);

/// Moves the pointer to a point of the widget without a button.
void point_at(QWidget& widget, const QPoint& point);

/// Clicks a line of a list, after scrolling to it if necessary.
void click_line(QAbstractItemView& list, int line, Qt::KeyboardModifiers keys = Qt::NoModifier);
void double_click_line(QAbstractItemView& list, int line);

/// Replaces the text of the field by typing.
void type_into(eltexto& field, const QString& text);

/// Opens the list and chooses a line with the keyboard.
void choose(DropDownList& list, int line);

/// Opens folder after folder with double clicks, from the root to the given one. Returns whether it succeeds.
bool walk_to(FolderListBox& folders, const QString& absolute_path);

/// Processes all pending events, deferred deletions included.
void settle();

} // namespace varnoth::ui_driver
