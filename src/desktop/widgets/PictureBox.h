// A picture area on the screen: shows a PictureSurface pixel by pixel and takes its size.
#pragma once

#include <QWidget>

#include "core/image/PictureSurface.h"
#include "desktop/widgets/mouse.h"

namespace varnoth {

class PictureBox : public QWidget {
    Q_OBJECT

  public:
    /// The design's sizes are in pixels; its parent is set to a container of pixels.
    PictureBox(const QString& name, QWidget* parent, PictureSurface::Design design);

    PictureSurface& surface() { return surface_; }

    const PictureSurface& surface() const { return surface_; }

    /// The background colour; clears the picture and shows it at once.
    void SetBackColor(Colour colour);

    /// Erases and shows it.
    void Cls();

    /// What the picture's user does with it, if anything: somebody waits for its clicks or double clicks.
    bool hears_clicks() const;
    bool hears_double_clicks() const;

    /// Raises what its user waits for, Click or else DblClick, as the mouse does.
    void act_as_clicked();

    /// Moves to, or clicks, a place of the surface, as the mouse does.
    void act_as_moved_to(const QPoint& place);
    void act_as_clicked_at(const QPoint& place);

  signals:
    void Click();
    void DblClick();

    /// Of the left, right and middle button, with places in the surface's pixels.
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
    bool click_due_ = false; ///< a release completes a click
};

} // namespace varnoth
