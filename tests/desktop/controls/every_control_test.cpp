// What the ten controls have in common: sizes, edges, captions, imitated transparency, and that a disabled
// control looks like an enabled one.
#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include "desktop/controls/elboton.h"
#include "desktop/controls/elcheck.h"
#include "desktop/controls/elcombo.h"
#include "desktop/controls/elframe.h"
#include "desktop/controls/ellabel.h"
#include "desktop/controls/elline3d.h"
#include "desktop/controls/elpanel.h"
#include "desktop/controls/elprogress.h"
#include "desktop/controls/elradio.h"
#include "desktop/controls/eltexto.h"
#include "desktop/controls/shown.h"
#include "desktop/theme/theme.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

enum class Edges { None, Raised, Sunken };

/// A control with its fixed height and its minimum width in twips, 0 if it has none, its edges, the width of
/// the edge that an obtained background leaves out, and its lines at the top, left, right and bottom.
struct Kind {
    const char* name;
    std::function<std::unique_ptr<SkinnedControl>(QWidget*)> make;
    int height;
    int minimum_width;
    Edges edges = Edges::None;
    int background_edge = 0;
    std::array<const char*, 4> lines{};
};

constexpr std::array small_lines{"lineA(0)", "lineA(1)", "lineB(0)", "lineB(1)"};
constexpr std::array capital_lines{"LineA(0)", "LineA(1)", "LineB(0)", "LineB(1)"};
constexpr std::array numbered_lines{"Line1(0)", "Line1(3)", "Line1(2)", "Line1(1)"};

// GoogleTest would print the bytes of a Kind.
void PrintTo(const Kind& kind, std::ostream* stream) {
    *stream << kind.name;
}

const std::vector<Kind>& kinds() {
    static const std::vector<Kind> all{
        {"elboton", make_control<elboton>, 360, 500, Edges::Raised, 1, small_lines},
        {"elcheck", make_control<elcheck>, 270, 500},
        {"elcombo", make_control<elcombo>, 300, 1425, Edges::Sunken, 0, small_lines},
        {"elframe", make_control<elframe>, 0, 0, Edges::Sunken, 1, capital_lines},
        {"ellabel", make_control<ellabel>, 300, 0},
        {"elline3d", make_control<elline3d>, 30, 30},
        {"elpanel", make_control<elpanel>, 0, 0, Edges::Raised, 1, capital_lines},
        {"elprogress", make_control<elprogress>, 360, 360, Edges::Sunken, 1, numbered_lines},
        {"elradio", make_control<elradio>, 285, 500},
        {"eltexto", make_control<eltexto>, 300, 0, Edges::Sunken, 1, small_lines},
    };
    return all;
}

class EveryControl : public testing::TestWithParam<Kind> {};

// With one twip per pixel nothing is rounded.
TEST_P(EveryControl, HasItsFixedHeightAndMinimumWidth) {
    const OtherScreen fine(1);
    const std::unique_ptr<SkinnedControl> control = GetParam().make(nullptr);
    EXPECT_EQ(control->minimumWidth(), GetParam().minimum_width);
    EXPECT_EQ(control->minimumHeight(), GetParam().height);
    if (GetParam().height > 0) {
        EXPECT_EQ(control->maximumHeight(), GetParam().height);
    }
}

TEST_P(EveryControl, WidthSetBelowTheMinimumBecomesTheMinimum) {
    const std::unique_ptr<SkinnedControl> control = GetParam().make(nullptr);
    control->SetWidth(15);
    EXPECT_EQ(control->Width(), std::max(GetParam().minimum_width, 15));
    control->SetHeight(1500);
    EXPECT_EQ(control->Height(), GetParam().height > 0 ? GetParam().height : 1500);
}

TEST_P(EveryControl, LooksTheSameWhenDisabled) {
    QWidget window;
    const std::unique_ptr<SkinnedControl> control = GetParam().make(&window);
    window.show();
    const QImage before = picture_of(*control);
    window.setEnabled(false);
    EXPECT_TRUE(control->Enabled());
    EXPECT_EQ(picture_of(*control), before);
    control->SetEnabled(false);
    EXPECT_FALSE(control->Enabled());
    EXPECT_EQ(picture_of(*control), before);
}

INSTANTIATE_TEST_SUITE_P(All, EveryControl, testing::ValuesIn(kinds()),
                         [](const auto& each) { return std::string(each.param.name); });

std::vector<Kind> kinds_with(const std::function<bool(const Kind&)>& condition) {
    std::vector<Kind> found;
    std::copy_if(kinds().begin(), kinds().end(), std::back_inserter(found), condition);
    return found;
}

class ControlEdges : public testing::TestWithParam<Kind> {};

TEST_P(ControlEdges, AreOnePixelThickAndFollowTheSize) {
    constexpr Colour lit = 0x0000FF;
    constexpr Colour shaded = 0x00FF00;
    const bool is_raised = GetParam().edges == Edges::Raised;
    const Colour top_left = is_raised ? lit : shaded;
    const Colour bottom_right = is_raised ? shaded : lit;
    const std::unique_ptr<SkinnedControl> control = GetParam().make(nullptr);
    control->SetColor3DLight(lit);
    control->SetColor3DDark(shaded);
    for (std::size_t i = 0; i < 4; ++i) {
        const auto& line = control->part<LinePart>(GetParam().lines[i]);
        EXPECT_EQ(line.BorderColor, i < 2 ? top_left : bottom_right) << GetParam().lines[i];
    }
    for (const QSize size : {QSize(100, 50), QSize(120, 60)}) {
        control->resize(size);
        for (const int scale : {1, 2}) {
            const QImage picture = picture_of(*control, scale);
            expect_edges(picture, picture.rect(), scale, top_left, bottom_right);
            const QRect inside = picture.rect().adjusted(scale, scale, -scale, -scale);
            const QRect left(inside.topLeft(), QSize(1, inside.height()));
            const QRect bottom(inside.bottomLeft(), QPoint(inside.right() - 20 * scale, inside.bottom()));
            EXPECT_EQ(count_of(picture, control->BackColor(), left), left.height()) << scale;
            EXPECT_EQ(count_of(picture, control->BackColor(), bottom), bottom.width()) << scale;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Of, ControlEdges, testing::ValuesIn(kinds_with([](const Kind& kind) {
                             return kind.edges != Edges::None;
                         })),
                         [](const auto& each) { return std::string(each.param.name); });

class ObtainedBackground : public testing::TestWithParam<Kind> {};

TEST_P(ObtainedBackground, CoversTheControlExceptItsEdge) {
    const int edge = GetParam().background_edge;
    const std::unique_ptr<SkinnedControl> control = GetParam().make(nullptr);
    control->resize(100, 24);
    TestSurface behind(200, 100, 32, 0, 0xFFFFFF);
    behind.PSet(10 + edge, 20 + edge, 0x0000FF);
    control->obtener_imagen_fondo(behind.hDC(), 10 + edge, 20 + edge, 255);
    const Bitmap& pixels = *control->get_the_hdc().bitmap();
    const int last_column = control->width() - 1 - edge;
    const int last_row = control->height() - 1 - edge;
    EXPECT_EQ(pixels.pixel(edge, edge), 0x0000FF);
    EXPECT_EQ(pixels.pixel(edge + 1, edge), 0xFFFFFF);
    EXPECT_EQ(pixels.pixel(last_column, last_row), 0xFFFFFF);
    if (edge > 0) {
        EXPECT_EQ(pixels.pixel(0, 1), control->BackColor());
        EXPECT_EQ(pixels.pixel(1, 0), control->BackColor());
        EXPECT_EQ(pixels.pixel(last_column + 1, last_row), control->BackColor());
        EXPECT_EQ(pixels.pixel(last_column, last_row + 1), control->BackColor());
    }
}

// The line has no background.
INSTANTIATE_TEST_SUITE_P(Of, ObtainedBackground, testing::ValuesIn(kinds_with([](const Kind& kind) {
                             return std::string(kind.name) != "elline3d";
                         })),
                         [](const auto& each) { return std::string(each.param.name); });

// Captions.

template <typename Control>
struct Caption {
    static constexpr const char* part = "Label2";
};

template <>
struct Caption<elboton> {
    static constexpr const char* part = "label";
};

template <>
struct Caption<elradio> {
    static constexpr const char* part = "Label1";
};

template <typename Control>
class Captions : public testing::Test {
  protected:
    Captions() { shown_->SetCaption("Words"); }

    const TextPart& caption() { return shown_.text(Caption<Control>::part); }

    const TextPart& shadow() { return shown_.text("shadow1"); }

    void expect_laid_out() {
        EXPECT_EQ(caption().Font(), shown_->Font());
        EXPECT_EQ(shadow().Font(), shown_->Font());
        EXPECT_EQ(caption().Top, std::trunc(shown_->ScaleHeight() / 2 - caption().Height / 2));
        EXPECT_EQ(shadow().Left, caption().Left + 1);
        EXPECT_EQ(shadow().Top, caption().Top + 1);
    }

    Shown<Control> shown_{120};
};

using ControlsWithCaption = testing::Types<elboton, elcheck, ellabel, elradio>;
TYPED_TEST_SUITE(Captions, ControlsWithCaption);

TYPED_TEST(Captions, EveryFontPropertyCentresCaptionAndShadow) {
    auto& control = this->shown_.control;
    const std::vector<std::function<void()>> setters{[] {},
                                                     [&] { control.SetFont(QFont("Courier", 8)); },
                                                     [&] { control.SetFontSize(6.25); },
                                                     [&] { control.SetFontName("DejaVu Sans Mono"); },
                                                     [&] { control.SetFontItalic(true); },
                                                     [&] { control.SetFontUnderline(true); }};
    for (const auto& set : setters) {
        control.SetFont(theme::design_font());
        set();
        this->expect_laid_out();
    }
}

TYPED_TEST(Captions, DropShadowShowsABlackCopyBehindTheCaption) {
    constexpr Colour red = 0x0000FF;
    auto& control = this->shown_.control;
    control.SetColor3DDark(dark); // the default is black
    control.SetFontSize(24);      // strokes wider than a pixel in any font
    if constexpr (std::is_base_of_v<CheckableControl, TypeParam>) {
        control.SetUncheckedColor(red);
    } else {
        control.SetForeColor(red);
    }
    const QImage plain = picture_of(control);
    EXPECT_GT(count_of(plain, red), 0);
    EXPECT_EQ(count_of(plain, theme::black), 0);
    EXPECT_FALSE(this->shadow().Visible);
    control.SetDropShadow(true);
    EXPECT_TRUE(this->shadow().Visible);
    EXPECT_TRUE(this->shadow().Enabled);
    EXPECT_EQ(this->shadow().Caption(), "Words");
    EXPECT_EQ(this->shadow().ForeColor, theme::black);
    EXPECT_GT(count_of(picture_of(control), theme::black), 0);
    EXPECT_EQ(count_of(picture_of(control), red), count_of(plain, red)) << "the shadow covers the caption";
    control.SetDropShadow(false);
    EXPECT_FALSE(this->shadow().Enabled);
    EXPECT_EQ(picture_of(control), plain);
}

} // namespace
} // namespace varnoth::test
