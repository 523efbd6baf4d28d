// Helpers for tests of controls: show them in a window, record their events, read their pixels.
#pragma once

#include <memory>

#include <QStringList>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

#include "core/image/PictureSurface.h"
#include "desktop/controls/parts/SkinnedControl.h"
#include "desktop/pixels.h"
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

    const TextPart& text(const char* name) const { return control.template part<TextPart>(name); }

    const LinePart& line(const char* name) const { return control.template part<LinePart>(name); }

    void press(const QPoint& point, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers keys = {}) {
        QTest::mousePress(&control, button, keys, point);
    }

    void release(const QPoint& point, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseRelease(&control, button, {}, point);
    }

    void click(const QPoint& point, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(&control, button, {}, point);
    }
};

// The colours of the edges of a control in the tests.
inline constexpr Colour light = 0x95AAA0;
inline constexpr Colour dark = 0x222E28;

/// Renders a control at a device pixel ratio.
inline QImage picture_of(QWidget& control, double scale = 1) {
    QImage image(control.size() * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::magenta);
    control.render(&image);
    return image;
}

inline Colour colour_at(QWidget& control, int x, int y) {
    return colour_at(picture_of(control), x, y);
}

/// Checks edges that are one pixel thick at a scale. The line on the right covers the one at the top; the one
/// at the bottom begins behind the left one.
inline void expect_edges(const QImage& image, const QRect& place, int scale, Colour top_left,
                         Colour bottom_right) {
    const QRect within = place.adjusted(scale, scale, -scale, -scale);
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x) {
            const bool is_right = x > within.right();
            const bool is_bottom = y > within.bottom() && x >= within.left();
            if (!within.contains(x, y)) {
                ASSERT_EQ(colour_at(image, x, y), is_right || is_bottom ? bottom_right : top_left)
                    << x << ", " << y << " at scale " << scale;
            }
        }
    }
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

/// A visible control with dark edges whose events are recorded.
template <typename Control>
struct Recorded : Shown<Control> {
    QStringList log;

    explicit Recorded(int width, int height = 24) : Shown<Control>(width, height) {
        this->control.SetColor3DDark(dark);
        record(this->control, log);
    }
};

/// The names of the properties whose change a control has reported to its host.
class ChangedProperties {
  public:
    explicit ChangedProperties(SkinnedControl& control) {
        on_event(&control, &SkinnedControl::property_changed, &context_,
                 [this](const QString& name) { names.append(name); });
    }

    QStringList names;

  private:
    QObject context_;
};

template <typename Control>
std::unique_ptr<SkinnedControl> make_control(QWidget* parent) {
    return std::make_unique<Control>("control", parent);
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
