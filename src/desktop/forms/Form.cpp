#include "desktop/forms/Form.h"

#include <algorithm>

#include <QAccessibleWidget>
#include <QCloseEvent>
#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include "core/base/numbers.h"
#include "desktop/controls/elboton.h"
#include "desktop/controls/elpanel.h"
#include "desktop/services/exception_barrier.h"
#include "desktop/theme/theme.h"
#include "desktop/widgets/accessible.h"

namespace varnoth {

namespace {

constexpr double units_per_pixel = 15;

Qt::WindowFlags flags_of(Form::Kind kind) {
    return (kind == Form::Kind::Main ? Qt::Window : Qt::Dialog) | Qt::FramelessWindowHint;
}

/// Describes the form to screen readers as a window or as a modal dialog.
class AccessibleForm : public QAccessibleWidget {
  public:
    explicit AccessibleForm(Form* form)
        : QAccessibleWidget(form, is_dialog(*form) ? QAccessible::Dialog : QAccessible::Window) {}

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.active = widget()->isActiveWindow();
        state.modal = role() == QAccessible::Dialog;
        return state;
    }

  private:
    static bool is_dialog(const Form& form) { return form.windowType() == Qt::Dialog; }
};

} // namespace

Form::Form(const QString& name, const QString& title, Kind kind, int width, int height)
    : QWidget(nullptr, flags_of(kind)) {
    install_accessible<Form, AccessibleForm>();
    setObjectName(name);
    setWindowTitle(title);
    setAccessibleName(title);
    setFixedSize(width, height);
    setPalette(theme::palette());
}

void Form::show_over(QWidget& owner) {
    create(); // only an existing window can have an owner
    windowHandle()->setTransientParent(owner.windowHandle());
    const QRect around = owner.frameGeometry();
    move(place_on_screen(around.center() - rect().center(), size(), owner.screen()->availableGeometry()));
    show();
    activateWindow();
}

void Form::show_first() {
    const QRect available = screen()->availableGeometry();
    move(place_on_screen(available.center() - rect().center(), size(), available));
    show();
}

void Form::set_panel(elpanel& panel, const QString& title) {
    panel.setGeometry(rect());
    panel.SetColor3DDark(theme::edge_dark);
    panel.SetTitle(title);
    panel.SetDropShadow(true);
    on_event(&panel, &elpanel::TitleMouseDown, this,
             [this](std::int16_t, std::int16_t, float x, float y) { begin_drag(x, y); });
    on_event(&panel, &elpanel::TitleMouseMove, this,
             [this](std::int16_t Button, std::int16_t, float, float) { drag(Button); });
    on_event(&panel, &elpanel::TitleMouseUp, this, [this] { dragging_ = 0; });
}

void Form::begin_drag(float x, float y) {
    dragging_ = 1;
    grab_x_ = x;
    grab_y_ = y;
}

void Form::drag(std::int16_t Button) {
    if (Button == 0) {
        dragging_ = 0; // the release was lost, for example because the form was disabled
    }
    if (dragging_ != 1) {
        return;
    }
    if (clients_place_windows()) {
        move(dragged_place(QCursor::pos(), grab_x_, grab_y_));
        return;
    }
    // Under Wayland only the compositor moves windows, and it keeps the remaining events of the drag,
    // including the release.
    dragging_ = 0;
    windowHandle()->startSystemMove();
}

bool Form::event(QEvent* event) {
    if (event->type() == QEvent::WindowActivate) {
        guard_event([this] { correct_window_place(); });
    }
    return QWidget::event(event);
}

// Under X11, Qt may query the window's position before the window manager has placed it, and then assumes the
// corner of the screen. Drop-down lists would open there, and QCursor::setPos would move the pointer there.
// The widget has the correct position. A difference of a pixel or two is rounding.
void Form::correct_window_place() {
    QWindow& handle = *windowHandle();
    if (clients_place_windows() && (handle.position() - pos()).manhattanLength() > 4) {
        handle.setPosition(pos());
    }
}

void Form::closeEvent(QCloseEvent* event) {
    event->ignore();
    guard_event([this] {
        if (isEnabled()) {
            emit closeRequested();
        }
    });
}

bool clients_place_windows() {
    return !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

QPoint place_on_screen(const QPoint& wanted, const QSize& size, const QRect& screen) {
    const int right = std::max(screen.left(), screen.left() + screen.width() - size.width());
    const int bottom = std::max(screen.top(), screen.top() + screen.height() - size.height());
    return {std::clamp(wanted.x(), screen.left(), right), std::clamp(wanted.y(), screen.top(), bottom)};
}

QPoint dragged_place(const QPoint& pointer, float grab_x, float grab_y) {
    const double left = pointer.x() * units_per_pixel - double{grab_x};
    const double top = pointer.y() * units_per_pixel - double{grab_y};
    return {round_to_even<int>(left / units_per_pixel), round_to_even<int>(top / units_per_pixel)};
}

void enable_button(elboton& button) {
    button.SetEnabled(true);
    button.SetForeColor(theme::white);
}

void disable_button(elboton& button) {
    button.SetEnabled(false);
    button.SetForeColor(theme::disabled_text);
}

} // namespace varnoth
