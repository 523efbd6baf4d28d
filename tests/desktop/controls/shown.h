// Helpers for tests of controls: show them in a window, record their events, read their pixels.
#pragma once

#include <memory>

#include <QImage>
#include <QPainter>
#include <QStringList>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

#include "core/image/Colour.h"
#include "core/image/PictureSurface.h"
#include "desktop/controls/parts/SkinnedControl.h"
#include "desktop/services/exception_barrier.h"

namespace varnoth::test {

/// A control in a visible window; widths and heights are in pixels.
template <typename Control>
struct Shown {
    QWidget window;
    Control control;

    explicit Shown(int width, int height = 24) : control("control", &window) {
        window.resize(600, 300);
        control.setGeometry(20, 20, width, height);
        window.show();
    }

    Control* operator->() { return &control; }
};

inline Colour colour_of(const QColor& colour) {
    return make_colour(static_cast<std::uint8_t>(colour.red()), static_cast<std::uint8_t>(colour.green()),
                       static_cast<std::uint8_t>(colour.blue()));
}

/// Renders a control at a device pixel ratio.
inline QImage picture_of(QWidget& control, double scale = 1) {
    QImage image(control.size() * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::magenta);
    control.render(&image);
    return image;
}

/// The colour of a pixel.
inline Colour colour_at(const QImage& image, int x, int y) {
    return colour_of(image.pixelColor(x, y));
}

inline Colour colour_at(QWidget& control, int x, int y) {
    return colour_at(picture_of(control), x, y);
}

/// The number of pixels in a rectangle that have exactly this colour.
inline int count_of(const QImage& image, Colour colour, const QRect& within) {
    int count = 0;
    for (int y = within.top(); y <= within.bottom(); ++y) {
        for (int x = within.left(); x <= within.right(); ++x) {
            count += colour_at(image, x, y) == colour ? 1 : 0;
        }
    }
    return count;
}

inline int count_of(const QImage& image, Colour colour) {
    return count_of(image, colour, image.rect());
}

/// Records every event of a control with its arguments, such as "MouseDown 1 0 3,4".
template <typename Control>
QStringList& record(Control& control, QStringList& log) {
    const auto plain = [&](auto signal, const char* name) {
        on_event(&control, signal, &control, [&log, name] { log.append(QLatin1String(name)); });
    };
    const auto mouse = [&](auto signal, const char* name) {
        QObject::connect(&control, signal, &control,
                         [&log, name](std::int16_t button, std::int16_t shift, float x, float y) {
                             log.append(QString("%1 %2 %3 %4,%5")
                                            .arg(QLatin1String(name))
                                            .arg(button)
                                            .arg(shift)
                                            .arg(static_cast<double>(x))
                                            .arg(static_cast<double>(y)));
                         });
    };
    plain(&Control::Click, "Click");
    if constexpr (requires { &Control::DblClick; }) {
        plain(&Control::DblClick, "DblClick");
    }
    if constexpr (requires { &Control::CloseClick; }) {
        plain(&Control::CloseClick, "CloseClick");
        mouse(&Control::TitleMouseDown, "TitleMouseDown");
        mouse(&Control::TitleMouseMove, "TitleMouseMove");
        mouse(&Control::TitleMouseUp, "TitleMouseUp");
        mouse(&Control::IconMouseDown, "IconMouseDown");
        mouse(&Control::IconMouseMove, "IconMouseMove");
        mouse(&Control::IconMouseUp, "IconMouseUp");
    }
    if constexpr (requires { &Control::MouseDown; }) {
        mouse(&Control::MouseDown, "MouseDown");
        mouse(&Control::MouseMove, "MouseMove");
        mouse(&Control::MouseUp, "MouseUp");
    }
    return log;
}

/// Moves the pointer over a widget while these buttons are held.
inline void move(QWidget& widget, const QPoint& point, Qt::MouseButtons buttons = Qt::NoButton) {
    QMouseEvent event(QEvent::MouseMove, point, widget.mapToGlobal(point), Qt::NoButton, buttons, {});
    QCoreApplication::sendEvent(&widget, &event);
}

/// A double click with the left button.
inline void double_click(QWidget& widget, const QPoint& point) {
    QTest::mouseClick(&widget, Qt::LeftButton, {}, point);
    QMouseEvent second(QEvent::MouseButtonDblClick, point, widget.mapToGlobal(point), Qt::LeftButton,
                       Qt::LeftButton, {});
    QCoreApplication::sendEvent(&widget, &second);
    QMouseEvent release(QEvent::MouseButtonRelease, point, widget.mapToGlobal(point), Qt::LeftButton,
                        Qt::NoButton, {});
    QCoreApplication::sendEvent(&widget, &release);
}

/// Changes the screen's twips per pixel and restores them in the destructor.
class OtherScreen {
  public:
    explicit OtherScreen(double twips_per_pixel) : OtherScreen(twips_per_pixel, twips_per_pixel) {}

    OtherScreen(double twips_across, double twips_down) : before_(screen()) {
        screen() = {twips_across, twips_down};
    }

    ~OtherScreen() { screen() = before_; }

    OtherScreen(const OtherScreen&) = delete;
    OtherScreen& operator=(const OtherScreen&) = delete;

  private:
    Screen before_;
};

} // namespace varnoth::test
