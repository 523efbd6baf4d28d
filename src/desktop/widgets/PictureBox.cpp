#include "desktop/widgets/PictureBox.h"

#include <algorithm>
#include <utility>

#include <QAccessibleWidget>
#include <QCoreApplication>
#include <QImage>
#include <QMetaMethod>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

#include "core/base/numbers.h"
#include "desktop/services/exception_barrier.h"
#include "desktop/theme/theme.h"
#include "desktop/widgets/accessible.h"

namespace varnoth {

namespace {

PictureSurface::Design with_parent(PictureSurface::Design design, SurfaceContainer& container) {
    design.parent = &container;
    return design;
}

/// An image of the visible part of a bitmap that shares the bitmap's pixels. Qt draws no image with more than
/// 32767 pixels a side; the visible part is never that large.
QImage shared_part(const Bitmap& bitmap, const QRect& part) {
    const std::uint8_t* first = bitmap.row(part.top()) + std::ptrdiff_t{4} * part.left();
    return {first, part.width(), part.height(), bitmap.row_bytes(), QImage::Format_RGB32};
}

QImage converted_part(const Bitmap& bitmap, const QRect& part) {
    QImage image(part.size(), QImage::Format_RGB32);
    for (int y = 0; y < part.height(); ++y) {
        auto* row = reinterpret_cast<RGBQUAD*>(image.scanLine(y));
        read_pixels(bitmap, part.left(), part.top() + y, {row, static_cast<std::size_t>(part.width())});
    }
    return image;
}

// For more rows Qt uses several threads, which take longer to start than the fill takes.
constexpr int rows_of_a_fill = 64;

/// Qt copies the fourth byte of each pixel, which may have any value, into the alpha channel. Filling black
/// underneath makes the picture opaque without changing its colours.
void make_opaque(QPainter& painter, const QRect& picture) {
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOver);
    for (int y = 0; y < picture.height(); y += rows_of_a_fill) {
        const int rows = std::min(rows_of_a_fill, picture.height() - y);
        painter.fillRect(picture.x(), picture.y() + y, picture.width(), rows, Qt::black);
    }
}

/// The accessible interface: a picture with its size, and a press action if it has a click handler.
class AccessiblePicture : public QAccessibleWidget, public QAccessibleImageInterface {
  public:
    explicit AccessiblePicture(PictureBox* picture)
        : QAccessibleWidget(picture, QAccessible::Graphic), picture_(picture) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ImageInterface ? static_cast<QAccessibleImageInterface*>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text kind) const override {
        const QString given = QAccessibleWidget::text(kind);
        if (kind != QAccessible::Description || !given.isEmpty()) {
            return given;
        }
        const QSize size = imageSize();
        return QStringLiteral("%1 x %2 pixels").arg(size.width()).arg(size.height());
    }

    QString imageDescription() const override { return text(QAccessible::Description); }

    QSize imageSize() const override {
        const Bitmap& bitmap = picture_->surface().bitmap();
        return {bitmap.width(), bitmap.height()};
    }

    QPoint imagePosition() const override { return picture_->mapToGlobal(QPoint(0, 0)); }

    QStringList actionNames() const override {
        const bool is_used = picture_->handles_clicks() || picture_->handles_double_clicks();
        return is_used && picture_->isEnabled() ? QStringList{pressAction()} : QStringList{};
    }

    void doAction(const QString& action) override {
        guard_event([&] {
            if (actionNames().contains(action)) {
                picture_->perform_click();
            }
        });
    }

  private:
    PictureBox* picture_;
};

/// Qt 6.8 delivers no mouse event to a widget that is one pixel wide or high: its parent receives them. This
/// filter of the parent passes them on to the picture.
class MouseOfThinPicture : public QObject {
  public:
    explicit MouseOfThinPicture(PictureBox* picture) : QObject(picture), picture_(picture) {}

    bool eventFilter(QObject* /*parent*/, QEvent* event) override {
        const QEvent::Type type = event->type();
        const bool pressed = type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick;
        if (!pressed && type != QEvent::MouseMove && type != QEvent::MouseButtonRelease) {
            return false;
        }
        const auto& mouse = static_cast<const QMouseEvent&>(*event);
        const QPointF place = picture_->mapFromParent(mouse.position());
        // While a button is held, all events belong to the widget in which it was pressed.
        if (pressed ? mouse.buttons() == mouse.button()
                    : type == QEvent::MouseMove && mouse.buttons() == Qt::NoButton) {
            on_picture_ = picture_->isVisible() && place.x() >= 0 && place.x() < picture_->width() &&
                          place.y() >= 0 && place.y() < picture_->height();
        }
        if (!on_picture_) {
            return false;
        }
        QMouseEvent own(type, place, mouse.scenePosition(), mouse.globalPosition(), mouse.button(),
                        mouse.buttons(), mouse.modifiers(), mouse.pointingDevice());
        QCoreApplication::sendEvent(picture_, &own);
        return true;
    }

  private:
    PictureBox* picture_;
    bool on_picture_ = false;
};

} // namespace

PictureBox::PictureBox(const QString& name, QWidget* parent, PictureSurface::Design design)
    : QWidget(parent), border_(design.border), surface_(with_parent(design, container_)) {
    install_accessible<PictureBox, AccessiblePicture>();
    setObjectName(name);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoMousePropagation);
    setMouseTracking(true);
    if (parent != nullptr) {
        parent->installEventFilter(new MouseOfThinPicture(this));
        parent->setMouseTracking(true);
    }
    surface_.on_change = [this] { follow_surface(); };
    follow_surface();
}

void PictureBox::SetBackColor(Colour colour) {
    surface_.SetBackColor(colour);
    update();
}

void PictureBox::Cls() {
    surface_.Cls();
    update();
}

bool PictureBox::handles_clicks() const {
    return isSignalConnected(QMetaMethod::fromSignal(&PictureBox::Click));
}

bool PictureBox::handles_double_clicks() const {
    return isSignalConnected(QMetaMethod::fromSignal(&PictureBox::DblClick));
}

void PictureBox::perform_click() {
    if (handles_clicks()) {
        emit Click();
    } else {
        emit DblClick();
    }
}

void PictureBox::perform_move(const QPoint& place) {
    emit MouseMove(mouse_arguments(Qt::NoButton, Qt::NoModifier, place));
}

void PictureBox::perform_click_at(const QPoint& place) {
    const MouseArguments mouse = mouse_arguments(Qt::LeftButton, Qt::NoModifier, place);
    emit MouseDown(mouse);
    emit MouseUp(mouse);
    emit Click();
}

void PictureBox::follow_surface() {
    const QSize before = size();
    resize(round_to_even<int>(surface_.Width()), round_to_even<int>(surface_.Height()));
    if (size() != before) {
        QAccessibleEvent event(this, QAccessible::DescriptionChanged); // it states the size
        QAccessible::updateAccessibility(&event);
    }
    update();
}

void PictureBox::paintEvent(QPaintEvent* event) {
    guard_paint([&] {
        const Bitmap& bitmap = surface_.bitmap();
        const QRect inner(border_, border_, bitmap.width(), bitmap.height());
        QPainter painter(this);
        if (!inner.contains(event->rect())) {
            painter.fillRect(event->rect(), theme::to_qcolor(theme::edge_dark));
        }
        const QRect seen = inner & event->rect();
        if (seen.isEmpty()) {
            return;
        }
        const QRect part = seen.translated(-inner.topLeft());
        painter.drawImage(seen.topLeft(), bitmap.bits_per_pixel() == 32 ? shared_part(bitmap, part)
                                                                        : converted_part(bitmap, part));
        make_opaque(painter, seen);
    });
}

void PictureBox::press(const QMouseEvent& event) {
    if (!has_number(event.button())) {
        return;
    }
    click_due_ = event.button() == Qt::LeftButton;
    emit MouseDown(mouse_arguments(event.button(), event.modifiers(), inside(event)));
}

QPointF PictureBox::inside(const QMouseEvent& event) const {
    return event.position() - QPointF(border_, border_);
}

void PictureBox::mousePressEvent(QMouseEvent* event) {
    guard_event([&] { press(*event); });
}

void PictureBox::mouseMoveEvent(QMouseEvent* event) {
    guard_event(
        [&] { emit MouseMove(mouse_arguments(event->buttons(), event->modifiers(), inside(*event))); });
}

void PictureBox::mouseReleaseEvent(QMouseEvent* event) {
    guard_event([&] {
        if (!has_number(event->button())) {
            return;
        }
        const bool clicked = event->button() == Qt::LeftButton && std::exchange(click_due_, false);
        const bool on_box = rect().contains(event->position().toPoint());
        emit MouseUp(mouse_arguments(event->button(), event->modifiers(), inside(*event)));
        if (clicked && on_box) {
            emit Click();
        }
    });
}

void PictureBox::mouseDoubleClickEvent(QMouseEvent* event) {
    guard_event([&] {
        press(*event);
        if (event->button() == Qt::LeftButton && std::exchange(click_due_, false)) {
            emit DblClick();
        }
    });
}

} // namespace varnoth
