// Reads the pixels of pictures.
#pragma once

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include "core/image/Colour.h"
#include "desktop/theme/theme.h"

namespace varnoth::test {

/// The colour of a pixel.
inline Colour colour_at(const QImage& image, int x, int y) {
    const QColor colour = image.pixelColor(x, y);
    return make_colour(static_cast<std::uint8_t>(colour.red()), static_cast<std::uint8_t>(colour.green()),
                       static_cast<std::uint8_t>(colour.blue()));
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

/// A picture of one colour, and what `paint` has drawn on it with a painter.
template <typename Paint>
QImage painted(const QSize& size, const QColor& ground, Paint&& paint) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(ground);
    QPainter painter(&image);
    paint(painter);
    return image;
}

} // namespace varnoth::test
