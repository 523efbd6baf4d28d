#include "desktop/forms/exit_picture/Form9_picture.h"

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QRadialGradient>

#include "desktop/theme/theme.h"

namespace varnoth {

namespace {

constexpr int frames = 4;
constexpr int frame_side = 128;
constexpr int frame_pitch = 144;
constexpr int frames_left = 18;
constexpr int frames_top = 34;

void draw_film(QPainter& painter) {
    painter.fillRect(0, 14, exit_picture_width, 168, theme::to_qcolor(theme::edge_dark));
    constexpr int hole_pitch = 18;
    for (int x = 5; x < exit_picture_width; x += hole_pitch) {
        for (const int y : {20, 168}) {
            painter.fillRect(x, y, 9, 8, theme::to_qcolor(theme::window_background));
        }
    }
}

void draw_explosion(QPainter& painter, int frame) {
    const QRect box(frames_left + frame * frame_pitch, frames_top, frame_side, frame_side);
    painter.fillRect(box, Qt::black);
    const double radius = 14 + 16.0 * frame;
    QRadialGradient fire(QRectF(box).center(), radius);
    fire.setColorAt(0, QColor(255, 255, 224));
    fire.setColorAt(0.35, theme::to_qcolor(theme::highlight));
    fire.setColorAt(0.7, QColor(168, 72, 24));
    fire.setColorAt(1, Qt::transparent);
    painter.fillRect(box, fire);
}

void draw_title(QPainter& painter) {
    QFont font = theme::display_font(theme::design_font());
    font.setPixelSize(34);
    painter.setFont(font);
    const QRect line(0, 188, exit_picture_width - frames_left, 60);
    painter.setPen(Qt::black);
    painter.drawText(line.translated(2, 2), Qt::AlignRight | Qt::AlignVCenter, application_title);
    painter.setPen(theme::to_qcolor(theme::light_text));
    painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter, application_title);
}

} // namespace

void draw_exit_picture(PictureSurface& surface) {
    QImage image(exit_picture_width, exit_picture_height, QImage::Format_RGB32);
    image.fill(theme::to_qcolor(theme::window_background));
    QPainter painter(&image);
    draw_film(painter);
    for (int frame = 0; frame < frames; ++frame) {
        draw_explosion(painter, frame);
    }
    draw_title(painter);
    painter.end();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor colour = image.pixelColor(x, y);
            surface.PSet(x, y,
                         make_colour(static_cast<std::uint8_t>(colour.red()),
                                     static_cast<std::uint8_t>(colour.green()),
                                     static_cast<std::uint8_t>(colour.blue())));
        }
    }
    surface.Refresh();
}

} // namespace varnoth
