#include "desktop/widgets/DropDownList.h"

#include <QAbstractItemView>
#include <QMouseEvent>
#include <QPainter>
#include <QSignalBlocker>
#include <QWheelEvent>
#include <QWindow>

#include "core/base/RunTimeFailure.h"
#include "desktop/services/exception_barrier.h"
#include "desktop/theme/edges.h"
#include "desktop/theme/symbols.h"
#include "desktop/theme/theme.h"
#include "desktop/widgets/accessible.h"

namespace varnoth {

namespace {

constexpr int text_inset = 4;
constexpr int arrow_width = 18;

/// The accessible interface. Qt's bridge passes no value for a combo box, so Qt uses the selected line as its
/// name, and screen readers never speak the list's own name. This interface returns both as the name.
class AccessibleDropDownList : public AccessibleWithKey {
  public:
    explicit AccessibleDropDownList(DropDownList* list)
        : AccessibleWithKey(list, QAccessible::ComboBox), list_(list) {}

    int childCount() const override { return 1; }

    QAccessibleInterface* child(int index) const override {
        return index == 0 ? QAccessible::queryAccessibleInterface(list_->view()) : nullptr;
    }

    int indexOfChild(const QAccessibleInterface* child) const override {
        return child != nullptr && child->object() == list_->view() ? 0 : -1;
    }

    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Value) {
            return list_->currentText();
        }
        const QString given = AccessibleWithKey::text(kind);
        const bool is_name = kind == QAccessible::Name && list_->currentIndex() >= 0;
        return is_name ? given + ": " + list_->currentText() : given;
    }

    QAccessible::State state() const override {
        QAccessible::State state = AccessibleWithKey::state();
        state.hasPopup = true;
        state.expandable = true;
        state.expanded = list_->view()->isVisible();
        return state;
    }

    QStringList actionNames() const override {
        return list_->isEnabled() ? QStringList{pressAction()} : QStringList{};
    }

    void doAction(const QString& action) override {
        guard_event([&] {
            if (!actionNames().contains(action)) {
                return;
            }
            if (list_->view()->isVisible()) {
                list_->hidePopup();
            } else {
                list_->showPopup();
            }
        });
    }

  private:
    DropDownList* list_;
};

} // namespace

DropDownList::DropDownList(const QString& name, QWidget* parent) : QComboBox(parent) {
    install_accessible<DropDownList, AccessibleDropDownList>();
    setObjectName(name);
    setFont(theme::display_font(theme::design_font()));
    // The wheel must not give the list the keyboard focus.
    setFocusPolicy(Qt::StrongFocus);
    view()->setTextElideMode(Qt::ElideNone);
    SetColours(theme::field_background, theme::light_text);
    connect(this, &QComboBox::activated, this, &DropDownList::Click);
    connect(this, &QComboBox::currentIndexChanged, this, [this] { notify_name_changed(*this); });
}

QString DropDownList::List(std::int32_t line) const {
    check_subscript(line, count());
    return itemText(line);
}

void DropDownList::SetList(std::int32_t line, const QString& text) {
    check_subscript(line, count());
    setItemText(line, text);
}

void DropDownList::AddItem(const QString& text) {
    const int chosen = currentIndex();
    const QSignalBlocker quiet(this);
    addItem(text);
    setCurrentIndex(chosen); // Qt selects the first line that is added
}

void DropDownList::SetListIndex(std::int32_t line) {
    if (line < -1 || line >= count()) {
        fail(Failure::InvalidPropertyValue);
    }
    setCurrentIndex(line);
    emit Click();
}

void DropDownList::SetColours(Colour background, Colour text) {
    background_ = background;
    text_ = text;
    QPalette colours = theme::palette();
    colours.setColor(QPalette::All, QPalette::Base, theme::to_qcolor(background));
    colours.setColor(QPalette::All, QPalette::Text, theme::to_qcolor(text));
    view()->setPalette(colours);
    update();
}

void DropDownList::perform_click() {
    setFocus(Qt::ShortcutFocusReason);
    showPopup();
}

void DropDownList::showPopup() {
    view()->setAccessibleName(accessibleName());
    QComboBox::showPopup();
}

void DropDownList::paintEvent(QPaintEvent* /*event*/) {
    guard_paint([&] {
        QPainter painter(this);
        painter.fillRect(rect(), theme::to_qcolor(background_));
        const bool grey = testAttribute(Qt::WA_ForceDisabled);
        const QColor text = theme::to_qcolor(grey ? theme::disabled_text : text_);
        const QRect arrow(width() - arrow_width, 0, arrow_width - 1, height());
        painter.setFont(theme::display_font(font()));
        painter.setPen(text);
        painter.drawText(rect().adjusted(text_inset, 0, -arrow_width, 0),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, currentText());
        draw_symbol(painter, u'6', arrow, theme::to_qcolor(grey ? theme::disabled_text : theme::edge_light));
        draw_edges(painter, rect(), theme::edge_dark, theme::edge_light);
    });
}

// With a busy window manager Qt can miss the window's position, assume the corner of the screen and open the
// list there. The mouse event has the pointer's position both on the screen and in the field, which gives the
// real position of the window. Differences of up to 4 pixels are rounding.
void DropDownList::mousePressEvent(QMouseEvent* event) {
    guard_event([&] {
        const QPoint in_window = mapTo(window(), event->position().toPoint());
        const QPoint place = event->globalPosition().toPoint() - in_window;
        QWindow* handle = window()->windowHandle();
        if (handle != nullptr && (handle->position() - place).manhattanLength() > 4) {
            handle->setPosition(place);
        }
        QComboBox::mousePressEvent(event);
    });
}

void DropDownList::wheelEvent(QWheelEvent* event) {
    guard_event([&] {
        if (hasFocus()) {
            QComboBox::wheelEvent(event);
        } else {
            event->ignore();
        }
    });
}

} // namespace varnoth
