#include "desktop/widgets/FolderListBox.h"

#include <memory>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QSignalBlocker>
#include <QStyledItemDelegate>

#include "core/base/RunTimeFailure.h"
#include "core/base/files.h"
#include "core/services/folders.h"
#include "desktop/services/exception_barrier.h"
#include "desktop/theme/theme.h"
#include "qt/path_text.h"

namespace varnoth {

namespace {

constexpr int path_role = Qt::UserRole;
constexpr int depth_role = Qt::UserRole + 1;
constexpr int open_role = Qt::UserRole + 2;

constexpr int indent = 10;
constexpr int glyph_width = 13;
constexpr int glyph_height = 10;

/// Draws an indented line with a folder icon before the name.
class FolderDelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        guard_paint([&] {
            QStyledItemDelegate::paint(painter, option, index);
            const bool open = index.data(open_role).toBool();
            const int left = option.rect.left() + 3 + index.data(depth_role).toInt() * indent;
            const int top = option.rect.top() + (option.rect.height() - glyph_height) / 2;
            draw_folder(*painter, {left, top, glyph_width, glyph_height},
                        theme::to_qcolor(open ? theme::highlight : theme::close_glyph));
        });
    }

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        // An empty icon reserves the space that draw_folder paints on.
        option->features |= QStyleOptionViewItem::HasDecoration;
        option->decorationSize = {index.data(depth_role).toInt() * indent + glyph_width, glyph_height};
    }

  private:
    static void draw_folder(QPainter& painter, const QRect& box, const QColor& colour) {
        constexpr int tab_height = 2;
        const QColor dark = theme::to_qcolor(theme::edge_dark);
        painter.fillRect(box.left(), box.top(), box.width() / 2, tab_height + 1, dark);
        painter.fillRect(box.adjusted(0, tab_height, 0, 0), dark);
        painter.fillRect(box.left() + 1, box.top() + 1, box.width() / 2 - 2, tab_height, colour);
        painter.fillRect(box.adjusted(1, tab_height + 1, -1, -1), colour);
    }
};

} // namespace

FolderListBox::FolderListBox(const QString& name, QWidget* parent) : QListWidget(parent) {
    setObjectName(name);
    setFont(theme::display_font(theme::design_font()));
    theme::apply_palette(*this, true);
    setFrameStyle(QFrame::Panel | QFrame::Sunken);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTextElideMode(Qt::ElideNone);
    setItemDelegate(std::make_unique<FolderDelegate>(this).release());
    path_ = current_folder();
    list_again();
}

void FolderListBox::SetPath(const std::string& path) {
    if (path.empty()) {
        return;
    }
    const std::string folder = plain_folder(path);
    if (!folder_exists(folder)) {
        fail(Failure::PathNotFound);
    }
    const bool another = folder != path_;
    path_ = folder;
    list_again();
    if (another) {
        emit Change();
    }
}

void FolderListBox::list_again() {
    const QSignalBlocker quiet(this);
    clear();
    const std::vector<std::string> open_folders = folders_down_to(path_);
    int depth = 0;
    const auto add = [&](const std::string& folder, bool open) {
        const QString path = text_of_path(folder);
        auto line = std::make_unique<QListWidgetItem>(text_of_path(folder_name(folder)));
        line->setData(path_role, QByteArray::fromStdString(folder));
        line->setData(depth_role, depth);
        line->setData(open_role, open);
        line->setToolTip(path);
        line->setData(Qt::AccessibleDescriptionRole, path);
        addItem(line.release());
    };
    for (const std::string& folder : open_folders) {
        add(folder, true);
        ++depth;
    }
    const int open_line = count() - 1;
    for (const std::string& folder : folders_in(path_)) {
        add(folder, false);
    }
    setCurrentRow(open_line);
    scrollToItem(item(open_line));
}

void FolderListBox::open_current() {
    const QListWidgetItem* line = currentItem();
    if (line == nullptr) {
        return;
    }
    const std::string folder = line->data(path_role).toByteArray().toStdString();
    if (folder_exists(folder)) {
        SetPath(folder);
    } else {
        list_again(); // it was deleted since it was listed
    }
}

void FolderListBox::mouseDoubleClickEvent(QMouseEvent* event) {
    guard_event([&] {
        QListWidgetItem* line = itemAt(event->position().toPoint());
        if (event->button() == Qt::LeftButton && line != nullptr) {
            setCurrentItem(line);
            open_current();
        }
    });
}

void FolderListBox::keyPressEvent(QKeyEvent* event) {
    guard_event([&] {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
            open_current();
        } else {
            QListWidget::keyPressEvent(event);
        }
    });
}

} // namespace varnoth
