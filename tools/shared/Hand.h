// A user's hand: real mouse and key events on the real controls.
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

namespace varnoth::hand {

/// Clicks in the middle of a widget, or at a point of it. The events go to the widget's window, which finds
/// what is under the pointer by itself; so a widget that is hidden, covered or disabled is not clicked.
void click(QWidget& widget, Qt::KeyboardModifiers keys = Qt::NoModifier);
void click_at(QWidget& widget, const QPoint& point, Qt::KeyboardModifiers keys = Qt::NoModifier);
void double_click(QWidget& widget);

/// Moves the pointer to a point of the widget without a button.
void point_at(QWidget& widget, const QPoint& point);

/// Clicks a line of a list, scrolled to if need be.
void click_line(QAbstractItemView& list, int line, Qt::KeyboardModifiers keys = Qt::NoModifier);
void double_click_line(QAbstractItemView& list, int line);

/// Types a text over what the field holds.
void type_into(eltexto& field, const QString& text);

/// Opens the list and chooses a line by the keyboard.
void choose(DropDownList& list, int line);

/// Walks the folders by double clicks, from the root down. Whether the folder was reached.
bool walk_to(FolderListBox& folders, const QString& absolute_path);

/// Lets what has been posted happen.
void settle();

} // namespace varnoth::hand
