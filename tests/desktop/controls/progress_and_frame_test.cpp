// Progress bar, frame and 3-D line.
#include <limits>

#include "desktop/controls/elframe.h"
#include "desktop/controls/elline3d.h"
#include "desktop/controls/elprogress.h"
#include "desktop/controls/shown.h"
#include "desktop/theme/theme.h"
#include "support/expect_failure.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

constexpr Colour block = 0x50B5C4;

struct Progress : Recorded<elprogress> {
    Progress() : Recorded(120) {}
};

// Counts the blocks along their middle row. The right edge covers the last pixel of a block that reaches it.
int blocks_of(elprogress& progress) {
    const QImage picture = picture_of(progress);
    const int pixels = count_of(picture, block, QRect(0, 12, picture.width(), 1));
    EXPECT_TRUE(pixels % 8 == 0 || pixels % 8 == 7);
    return (pixels + 1) / 8;
}

class Elprogress : public testing::Test, protected Progress {};

TEST_F(Elprogress, BlocksAreTheShareOfTheTenCellsRoundedDown) {
    struct Case {
        int least;
        int most;
        int value;
        int kept;
        int blocks;
    };

    for (const Case& one : {Case{0, 10, 5, 5, 5}, Case{0, 10, 11, 10, 10}, Case{0, 7, 4, 4, 5},
                            Case{0, 1000, 99, 99, 0}, Case{0, 0, 0, 0, 0},
                            // The lower bound limits the value but does not affect the number of blocks.
                            Case{3, 10, 2, 3, 3}, Case{5, 10, 5, 5, 5}, Case{-10, 10, -10, -10, 0}}) {
        Progress progress;
        progress->SetMin(one.least);
        progress->SetMax(one.most);
        progress->SetValue(one.value);
        EXPECT_EQ(progress->Value(), one.kept) << one.value << " of " << one.most;
        EXPECT_EQ(blocks_of(progress.control), one.blocks) << one.value << " of " << one.most;
    }
}

TEST_F(Elprogress, BarNarrowerThan12PixelsHasNoCells) {
    const OtherScreen coarse(60); // the minimum width of 360 twips is six pixels
    elprogress progress("p", nullptr);
    progress.resize(11, 24);
    progress.SetValue(10);
    ASSERT_EQ(progress.ScaleWidth(), 11);
    EXPECT_EQ(count_of(picture_of(progress), block), 0);
    progress.resize(12, 24);
    EXPECT_GT(count_of(picture_of(progress), block), 0);
}

TEST_F(Elprogress, ProductBeyond32BitsIsAnOverflow) {
    control.SetMax(std::numeric_limits<std::int32_t>::max());
    control.SetValue(std::numeric_limits<std::int32_t>::max() / 10);
    EXPECT_EQ(blocks_of(control), 0);
    EXPECT_FAILURE(control.SetValue(std::numeric_limits<std::int32_t>::max() / 10 + 1), Overflow);
}

TEST_F(Elprogress, FailingValueChangesNothing) {
    control.SetMax(std::numeric_limits<std::int32_t>::max());
    control.SetValue(7);
    EXPECT_FAILURE(control.SetValue(std::numeric_limits<std::int32_t>::max()), Overflow);
    EXPECT_EQ(control.Value(), 7);
    control.resize(132, 24);
    EXPECT_EQ(blocks_of(control), 0);
}

TEST_F(Elprogress, OverflowDuringAResizeIsAFatalError) {
    control.SetMax(std::numeric_limits<std::int32_t>::max());
    control.SetValue(std::numeric_limits<std::int32_t>::max() / 10);
    std::vector<std::string> ends;
    const FatalErrorHandlerInstallation recording(
        [&](std::string_view name, std::string_view) { ends.emplace_back(name); });
    control.resize(132, 24);
    EXPECT_EQ(ends, std::vector<std::string>{"Overflow"});
}

TEST_F(Elprogress, BlockIs8By16PixelsInACellOf12) {
    control.SetValue(2);
    for (const int scale : {1, 2}) {
        const QImage picture = picture_of(control, scale);
        for (const int left : {4, 16}) {
            const QRect place(left * scale, 4 * scale, 8 * scale, 16 * scale);
            EXPECT_EQ(count_of(picture, block, place), 128 * scale * scale) << scale << ' ' << left;
        }
        EXPECT_EQ(count_of(picture, block), 256 * scale * scale) << scale;
    }
}

TEST_F(Elprogress, NewSizeRedrawsTheBlocks) {
    control.SetValue(5);
    control.resize(240, 24);
    EXPECT_EQ(blocks_of(control), 10);
    control.resize(100, 24); // eight cells
    EXPECT_EQ(blocks_of(control), 4);
}

TEST_F(Elprogress, NewBoundOrColourShowsAtTheNextValue) {
    control.SetValue(5);
    control.SetMax(5);
    EXPECT_EQ(blocks_of(control), 5);
    control.SetForeColor(0x0000FF);
    EXPECT_EQ(blocks_of(control), 5);
    control.SetValue(5);
    EXPECT_EQ(count_of(picture_of(control), 0x0000FF),
              10 * 128 - 16); // the right edge covers one column
}

TEST_F(Elprogress, ValueAboveANewMaxFillsTheBarAtTheNextResize) {
    control.SetMax(10'000'000);
    control.SetValue(10'000'000);
    control.SetMax(1);
    control.resize(132, 24);
    EXPECT_EQ(blocks_of(control), 11);
}

TEST_F(Elprogress, ObtainedBackgroundIsBlendedAtEveryRedraw) {
    TestSurface behind(300, 100, 32, 0, 0xFFFFFF);
    control.SetValue(1);
    control.obtener_imagen_fondo(behind.hDC(), 3, 4, 255);
    EXPECT_EQ(colour_at(control, 100, 12), 0xFFFFFF);
    behind.PSet(3, 4, 0x0000FF);
    control.SetValue(2);
    EXPECT_EQ(control.get_the_hdc().bitmap()->pixel(1, 1), 0x0000FF);
    EXPECT_EQ(control.get_the_hdc().bitmap()->pixel(118, 22), 0xFFFFFF);
    EXPECT_EQ(control.get_the_hdc().bitmap()->pixel(0, 0), theme::field_background);
    EXPECT_EQ(blocks_of(control), 2);
}

// All three forward mouse events.

template <typename Control>
class Forwarding : public testing::Test {};

using Forwarders = testing::Types<elprogress, elframe, elline3d>;
TYPED_TEST_SUITE(Forwarding, Forwarders);

TYPED_TEST(Forwarding, SurfaceRaisesTheFiveMouseEvents) {
    Recorded<TypeParam> shown(100);
    move(shown.control, QPoint(50, 1));
    shown.click(QPoint(50, 1));
    EXPECT_EQ(shown.log,
              (QStringList{"MouseMove 0 0 50,1", "MouseDown 1 0 50,1", "MouseUp 1 0 50,1", "Click"}));
    shown.log.clear();
    double_click(shown.control, QPoint(60, 1));
    EXPECT_EQ(shown.log, (QStringList{"MouseDown 1 0 60,1", "MouseUp 1 0 60,1", "Click", "MouseDown 1 0 60,1",
                                      "DblClick", "MouseUp 1 0 60,1"}));
}

TEST(Elframe, SizeUsesTheTwipsOfEachDirection) {
    const OtherScreen flat(20, 12);
    Shown<elframe> frame(10, 10);
    frame->SetWidth(600);
    frame->SetHeight(600);
    EXPECT_EQ(frame->size(), QSize(30, 50));
    EXPECT_EQ(frame->Width(), 600);
    EXPECT_EQ(frame->Height(), 600);
    EXPECT_EQ(frame->part<LinePart>("LineB(0)").X1, 29);
    EXPECT_EQ(frame->part<LinePart>("LineB(1)").Y1, 49);
}

TEST(Elline3d, IsTwoPixelsHighDarkAboveLight) {
    Shown<elline3d> line(100, 30);
    EXPECT_EQ(line->height(), 2);
    for (const int scale : {1, 2}) {
        const QImage picture = picture_of(line.control, scale);
        EXPECT_EQ(count_of(picture, dark, QRect(0, 0, 100 * scale, scale)), 100 * scale * scale);
        EXPECT_EQ(count_of(picture, light, QRect(0, scale, 100 * scale, scale)), 100 * scale * scale);
    }
}

TEST(Elline3d, LinesEndAtTheWidthInTwips) {
    Shown<elline3d> line(100);
    EXPECT_EQ(line->part<LinePart>("Line1").X2, 1500);
    EXPECT_EQ(line->part<LinePart>("Line2").X2, 1500);
}

template <typename Control>
concept HasDrawingContext = requires(Control& control) {
    control.get_the_hdc();
};

template <typename Control>
concept TakesBackground = requires(Control& control, const DrawingContext& context) {
    control.obtener_imagen_fondo(context, 0, 0, std::int16_t{0});
};

TEST(Elline3d, HasNoDrawingContextAndTakesNoBackground) {
    static_assert(!HasDrawingContext<elline3d> && !TakesBackground<elline3d>);
    static_assert(HasDrawingContext<elframe> && TakesBackground<elframe>);
    static_assert(HasDrawingContext<elprogress> && TakesBackground<elprogress>);
}

} // namespace
} // namespace varnoth::test
