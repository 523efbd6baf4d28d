// A small widget of one colour that contains parts, for controls that contain a Qt widget: the control's own
// parts are always behind its child widgets.
#pragma once

#include <vector>

#include <QPainter>
#include <QWidget>

#include "desktop/controls/parts/Part.h"
#include "desktop/services/exception_barrier.h"
#include "desktop/theme/theme.h"

namespace varnoth {

class PartSurface : public QWidget {
  public:
    PartSurface(const QString& name, QWidget* parent) : QWidget(parent) {
        setObjectName(name);
        setAttribute(Qt::WA_OpaquePaintEvent);
    }

    Colour BackColor = 0;

    /// Back to front; not owned.
    std::vector<Part*> contents;

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        guard_paint([this] {
            QPainter painter(this);
            painter.fillRect(rect(), theme::to_qcolor(BackColor));
            for (const Part* part : contents) {
                part->paint(painter);
            }
        });
    }
};

} // namespace varnoth
