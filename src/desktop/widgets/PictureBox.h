// A picture area on the screen: a widget that shows a PictureSurface pixel by pixel and follows its size.
#pragma once

#include <QWidget>

#include "core/image/PictureSurface.h"
#include "desktop/widgets/mouse.h"

namespace varnoth {

class PictureBox : public QWidget {
    Q_OBJECT

  public:
    /// The sizes in `design` are in pixels; its parent is ignored.
    PictureBox(const QString& name, QWidget* parent, PictureSurface::Design design);

    PictureSurface& surface() { return surface_; }

    const PictureSurface& surface() const { return surface_; }

    /// Sets the background colour and clears the picture.
    void SetBackColor(Colour colour);

    /// Clears the picture.
    void Cls();

    /// Whether Click or DblClick is connected.
    bool handles_clicks() const;
    bool handles_double_clicks() const;

    /// Raises Click if it is connected, else DblClick, as the mouse does.
    void perform_click();

    /// Raises the events of a mouse move to, or a click at, a position of the surface.
    void perform_move(const QPoint& place);
    void perform_click_at(const QPoint& place);

  signals:
    void Click();
    void DblClick();

    /// Left, right and middle button; positions are in pixels of the surface.
    void MouseDown(varnoth::MouseArguments mouse);
    void MouseMove(varnoth::MouseArguments mouse);
    void MouseUp(varnoth::MouseArguments mouse);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

  private:
    void follow_surface();
    void press(const QMouseEvent& event);
    QPointF inside(const QMouseEvent& event) const;

    std::int32_t border_;
    SurfaceContainer container_;
    PictureSurface surface_;
    bool click_due_ = false; ///< the next release completes a click
};

} // namespace varnoth
