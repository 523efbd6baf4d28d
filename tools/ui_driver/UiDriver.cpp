#include "ui_driver/UiDriver.h"

#include <QAbstractItemView>
#include <QCoreApplication>
#include <QEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>
#include <QWindow>

#include "core/services/folders.h"
#include "desktop/controls/eltexto.h"
#include "desktop/widgets/DropDownList.h"
#include "desktop/widgets/FolderListBox.h"
#include "desktop/widgets/ListBox.h"
#include "qt/path_text.h"

namespace varnoth::ui_driver {

namespace {

QWindow* window_of(const QWidget& widget) {
    return widget.window()->windowHandle();
}

QPoint in_window(const QWidget& widget, const QPoint& point) {
    return widget.mapTo(widget.window(), point);
}

QPoint middle_of_line(QAbstractItemView& list, int line) {
    const QModelIndex index = list.model()->index(line, 0);
    list.scrollTo(index);
    return list.visualRect(index).center();
}

void press_key(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers keys = Qt::NoModifier) {
    QTest::keyClick(&widget, key, keys);
}

} // namespace

void click_at(QWidget& widget, const QPoint& point, Qt::KeyboardModifiers keys) {
    QTest::mouseClick(window_of(widget), Qt::LeftButton, keys, in_window(widget, point));
}

void click(QWidget& widget, Qt::KeyboardModifiers keys) {
    click_at(widget, widget.rect().center(), keys);
}

void double_click(QWidget& widget) {
    QTest::mouseDClick(window_of(widget), Qt::LeftButton, Qt::NoModifier,
                       in_window(widget, widget.rect().center()));
}

void point_at(QWidget& widget, const QPoint& point) {
    QTest::mouseMove(window_of(widget), in_window(widget, point));
}

void click_line(QAbstractItemView& list, int line, Qt::KeyboardModifiers keys) {
    click_at(*list.viewport(), middle_of_line(list, line), keys);
}

void double_click_line(QAbstractItemView& list, int line) {
    const QPoint point = middle_of_line(list, line);
    QTest::mouseDClick(window_of(list), Qt::LeftButton, Qt::NoModifier, in_window(*list.viewport(), point));
}

void type_into(eltexto& field, const QString& text) {
    QLineEdit& line = *field.findChild<QLineEdit*>("Text1");
    click(line);
    press_key(line, Qt::Key_A, Qt::ControlModifier);
    press_key(line, Qt::Key_Delete);
    for (const QChar character : text) {
        QTest::sendKeyEvent(QTest::Click, &line, Qt::Key_unknown, QString(character), Qt::NoModifier);
    }
}

void choose(DropDownList& list, int line) {
    click_at(list, {8, list.height() / 2});
    QAbstractItemView& lines = *list.view();
    press_key(lines, Qt::Key_Home);
    for (int i = 0; i < line; ++i) {
        press_key(lines, Qt::Key_Down);
    }
    press_key(lines, Qt::Key_Return);
    settle();
}

bool walk_to(FolderListBox& folders, const QString& absolute_path) {
    const std::string target = plain_folder(path_of_text(absolute_path));
    double_click_line(folders, 0);
    for (const std::string& folder : folders_down_to(target)) {
        if (folder == folders.Path()) {
            continue; // the root
        }
        const QString name = text_of_path(folder_name(folder));
        const QList<QListWidgetItem*> found = folders.findItems(name, Qt::MatchExactly);
        if (found.isEmpty()) {
            return false;
        }
        double_click_line(folders, folders.row(found.back()));
    }
    return folders.Path() == target;
}

void settle() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace varnoth::ui_driver
