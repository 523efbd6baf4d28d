#include "platform/qt/DropDownList.h"

#include <QAbstractItemView>
#include <QMouseEvent>
#include <QPainter>
#include <QSignalBlocker>
#include <QWheelEvent>
#include <QWindow>

#include "base/RunTimeFailure.h"
#include "platform/qt/edges.h"
#include "platform/qt/event_edge.h"
#include "platform/qt/look.h"
#include "platform/qt/symbols.h"

namespace varnoth {

namespace {

constexpr int text_inset = 4;
constexpr int arrow_width = 18;

} // namespace

DropDownList::DropDownList(const QString& name, QWidget* parent) : QComboBox(parent) {
    setObjectName(name);
    setFont(look::display_font(look::design_font()));
    // The wheel over the list does not give it the keyboard.
    setFocusPolicy(Qt::StrongFocus);
    view()->setTextElideMode(Qt::ElideNone);
    SetColours(look::field_background, look::light_text);
    connect(this, &QComboBox::activated, this, &DropDownList::Click);
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
    setCurrentIndex(chosen); // Qt chooses the first line that there is
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
    QPalette colours = look::palette();
    colours.setColor(QPalette::All, QPalette::Base, look::to_qcolor(background));
    colours.setColor(QPalette::All, QPalette::Text, look::to_qcolor(text));
    view()->setPalette(colours);
    update();
}

void DropDownList::set_bare(bool bare) {
    bare_ = bare;
    update();
}

void DropDownList::paintEvent(QPaintEvent* /*event*/) {
    at_paint_edge([&] {
        QPainter painter(this);
        painter.fillRect(rect(), look::to_qcolor(background_));
        const bool grey = testAttribute(Qt::WA_ForceDisabled);
        const QColor text = look::to_qcolor(grey ? look::disabled_text : text_);
        const QRect arrow(width() - arrow_width, 0, bare_ ? 0 : arrow_width - 1, height());
        painter.setFont(look::display_font(font()));
        painter.setPen(text);
        painter.drawText(rect().adjusted(text_inset, 0, bare_ ? 0 : -arrow_width, 0),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, currentText());
        if (!bare_) {
            draw_symbol(painter, u'6', arrow, look::to_qcolor(grey ? look::disabled_text : look::edge_light));
            draw_edges(painter, rect(), look::edge_dark, look::edge_light);
        }
    });
}

// Qt may miss where a busy window manager put the window and believe it at the screen's corner; the list
// would open there. The pointer knows better: its places on the screen and in the field come in one message.
// A pixel or two of difference are rounding.
void DropDownList::mousePressEvent(QMouseEvent* event) {
    at_event_edge([&] {
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
    at_event_edge([&] {
        if (hasFocus()) {
            QComboBox::wheelEvent(event);
        } else {
            event->ignore();
        }
    });
}

} // namespace varnoth
