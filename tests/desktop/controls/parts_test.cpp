// The parts of controls, tested separately.
#include <vector>

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include "desktop/controls/parts/Part.h"

namespace varnoth {
namespace {

std::vector<double> ends_of(const LinePart& line) {
    return {line.X1, line.Y1, line.X2, line.Y2};
}

TEST(Parts, LineHasTheEndsThatWereSet) {
    LinePart line;
    EXPECT_EQ(ends_of(line), (std::vector<double>{0, 0, 0, 0}));
    EXPECT_EQ(line.BorderColor, 0);
    line.set_ends(1, 2, 3, 4);
    EXPECT_EQ(ends_of(line), (std::vector<double>{1, 2, 3, 4}));
}

TEST(Parts, HiddenLineIsNotPainted) {
    LinePart line;
    line.set_ends(1, 1, 5, 1);
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::white);
    const QImage blank = image;
    {
        QPainter painter(&image);
        line.Visible = false;
        line.paint(painter);
        EXPECT_EQ(image, blank);
        line.Visible = true;
        line.paint(painter);
    }
    EXPECT_NE(image, blank);
}

TEST(Parts, NewPartIsVisibleAndEnabledAndHasNoSize) {
    BoxPart box;
    EXPECT_EQ(box.place(), QRectF(0, 0, 0, 0));
    EXPECT_TRUE(box.Visible);
    EXPECT_TRUE(box.Enabled);
    EXPECT_FALSE(box.passes_mouse);
    EXPECT_EQ(box.BackColor, 0);
    EXPECT_EQ(box.bits_per_pixel, 32);
}

TEST(Parts, PartWithoutSizeReceivesNoMouseEvents) {
    BoxPart box;
    QPointF within;
    EXPECT_EQ(box.at({0, 0}, within), nullptr);
    box.Width = box.Height = 1;
    EXPECT_EQ(box.at({0, 0}, within), &box);
    EXPECT_EQ(box.at({1, 0}, within), nullptr);
    EXPECT_EQ(box.at({0, 1}, within), nullptr);
}

} // namespace
} // namespace varnoth
