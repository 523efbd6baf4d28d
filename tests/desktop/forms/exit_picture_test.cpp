// The exit picture, pixel by pixel where it does not depend on fonts.
#include <algorithm>
#include <array>
#include <cmath>

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QPoint>
#include <QRect>

#include <gtest/gtest.h>

#include "desktop/forms/exit_picture/Form9.h"
#include "desktop/forms/exit_picture/Form9_picture.h"
#include "desktop/theme/theme.h"

namespace varnoth {
namespace {

constexpr int width = 597;
constexpr int height = 255;
constexpr int title_top = 188;

QImage drawn_picture() {
    PictureSurface surface({.width = width, .height = height, .bits_per_pixel = 24});
    draw_exit_picture(surface);
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            image.setPixelColor(x, y, theme::to_qcolor(surface.Point(x, y)));
        }
    }
    return image;
}

QRect frame_box(int frame) {
    return {18 + 144 * frame, 34, 128, 128};
}

/// The colour of the film strip and its holes, ignoring the contents of the frames.
QColor film_colour(int x, int y) {
    const bool on_film = y >= 14 && y < 182;
    const bool in_hole_row = (y >= 20 && y < 28) || (y >= 168 && y < 176);
    const bool in_hole = in_hole_row && x >= 5 && (x - 5) % 18 < 9;
    return theme::to_qcolor(on_film && !in_hole ? theme::edge_dark : theme::window_background);
}

struct Stop {
    double place;
    std::array<double, 3> colour;
};

/// The colour of an explosion at a distance from its centre, as a fraction of its radius.
std::array<double, 3> fire_at(double distance) {
    constexpr std::array stops{Stop{0, {255, 255, 224}}, Stop{0.35, {196, 181, 80}}, Stop{0.7, {168, 72, 24}},
                               Stop{1, {0, 0, 0}}};
    const double place = std::min(distance, 1.0);
    std::size_t next = 1;
    while (place > stops[next].place) {
        ++next;
    }
    const Stop& from = stops[next - 1];
    const Stop& to = stops[next];
    const double share = (place - from.place) / (to.place - from.place);
    std::array<double, 3> colour{};
    for (std::size_t i = 0; i < colour.size(); ++i) {
        colour[i] = from.colour[i] + share * (to.colour[i] - from.colour[i]);
    }
    return colour;
}

TEST(ExitPicture, ShowsAStripOfFilmWithTwoRowsOfHoles) {
    const QImage image = drawn_picture();
    for (int y = 0; y < title_top; ++y) {
        for (int x = 0; x < width; ++x) {
            bool in_frame = false;
            for (int frame = 0; frame < 4; ++frame) {
                in_frame = in_frame || frame_box(frame).contains(x, y);
            }
            if (!in_frame) {
                ASSERT_EQ(image.pixelColor(x, y), film_colour(x, y)) << x << ", " << y;
            }
        }
    }
}

TEST(ExitPicture, ExplosionGrowsFromFrameToFrame) {
    // Qt draws gradients from a table of 1024 colours, which deviate from the exact colour by up to this
    // much.
    constexpr double most_difference = 1.5;
    const QImage image = drawn_picture();
    for (int frame = 0; frame < 4; ++frame) {
        const QRect box = frame_box(frame);
        const double radius = 14 + 16 * frame;
        for (int y = 0; y < box.height(); ++y) {
            for (int x = 0; x < box.width(); ++x) {
                const QColor found = image.pixelColor(box.left() + x, box.top() + y);
                const auto fire = fire_at(std::hypot(x + 0.5 - 64, y + 0.5 - 64) / radius);
                ASSERT_NEAR(found.red(), fire[0], most_difference) << frame << ": " << x << ", " << y;
                ASSERT_NEAR(found.green(), fire[1], most_difference) << frame << ": " << x << ", " << y;
                ASSERT_NEAR(found.blue(), fire[2], most_difference) << frame << ": " << x << ", " << y;
            }
        }
    }
}

/// The bounding rectangle of the pixels of exactly this colour below the film.
QRect extent_of(const QImage& image, const QColor& colour) {
    QRect extent;
    for (int y = title_top; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if (image.pixelColor(x, y) == colour) {
                extent |= QRect(x, y, 1, 1);
            }
        }
    }
    return extent;
}

TEST(ExitPicture, TitleIsBelowTheFilmAndEndsWithTheLastFrame) {
    // A title 34 pixels high, centred in the area below the film.
    QImage alone(width, height, QImage::Format_RGB32);
    alone.fill(Qt::black);
    QPainter painter(&alone);
    QFont font = theme::display_font(theme::design_font());
    font.setPixelSize(34);
    painter.setFont(font);
    painter.setPen(theme::to_qcolor(theme::light_text));
    painter.drawText(QRect(0, title_top, frame_box(3).right() + 2, 60), Qt::AlignRight | Qt::AlignVCenter,
                     "Varnoth 1.0");
    painter.end();
    const QColor light = theme::to_qcolor(theme::light_text);
    EXPECT_EQ(extent_of(drawn_picture(), light), extent_of(alone, light));
}

TEST(ExitPicture, TitleHasAShadowTwoPixelsToTheLowerRight) {
    const QImage image = drawn_picture();
    const QColor light = theme::to_qcolor(theme::light_text);
    const QRect letters = extent_of(image, light);
    const QRect shadow = extent_of(image, Qt::black);
    EXPECT_EQ(shadow.bottomRight(), letters.bottomRight() + QPoint(2, 2));
    for (int y = letters.top(); y <= letters.bottom(); ++y) {
        for (int x = letters.left(); x <= letters.right(); ++x) {
            if (image.pixelColor(x, y) == light) {
                ASSERT_NE(image.pixelColor(x + 2, y + 2), theme::to_qcolor(theme::window_background))
                    << x << ", " << y;
            }
        }
    }
}

TEST(ExitPicture, FormShowsTheDrawingUnchanged) {
    Form9 form;
    EXPECT_EQ(form.size(), QSize(width, height));
    EXPECT_EQ(form.grab().toImage().convertToFormat(QImage::Format_RGB32), drawn_picture());
}

} // namespace
} // namespace varnoth
