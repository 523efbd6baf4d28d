#include "desktop/theme/theme.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <vector>

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QImage>
#include <QLineEdit>
#include <QPainter>
#include <QProxyStyle>
#include <QPushButton>
#include <QStyle>
#include <QStyleFactory>
#include <QStyleOption>
#include <QWidget>

#include <gtest/gtest.h>

#include "core/image/PictureSurface.h"
#include "desktop/pixels.h"
#include "desktop/widgets/DropDownList.h"
#include "desktop/widgets/FolderListBox.h"
#include "desktop/widgets/ListBox.h"

namespace varnoth::test {
namespace {

QImage shown(QWidget& widget) {
    QCoreApplication::processEvents();
    return widget.grab().toImage();
}

/// Draws like its base style and records the cache keys and groups of the palettes that it is given.
class PaletteWitness : public QProxyStyle {
  public:
    PaletteWitness() : QProxyStyle(QStyleFactory::create("Fusion")) {}

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override {
        keys.push_back(option->palette.cacheKey());
        groups.push_back(option->palette.currentColorGroup());
        QProxyStyle::drawComplexControl(control, option, painter, widget);
    }

    mutable std::vector<qint64> keys;
    mutable std::vector<QPalette::ColorGroup> groups;
};

TEST(Theme, EqualPalettesShareOneCacheKey) {
    auto* style = qobject_cast<QProxyStyle*>(QApplication::style());
    ASSERT_NE(style, nullptr);
    auto* witness = std::make_unique<PaletteWitness>().release();
    style->setBaseStyle(witness); // takes ownership
    QImage image(100, 30, QImage::Format_ARGB32);
    QPainter painter(&image);
    QStyleOptionComboBox option;
    option.rect = image.rect();
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        option.palette = theme::palette(); // has a new cache key each time
        option.palette.setCurrentColorGroup(group);
        const qint64 own = option.palette.cacheKey();
        style->drawComplexControl(QStyle::CC_ComboBox, &option, &painter);
        EXPECT_EQ(option.palette.cacheKey(), own); // restored
    }
    option.palette = theme::palette(false);
    style->drawComplexControl(QStyle::CC_ComboBox, &option, &painter);
    ASSERT_EQ(witness->keys.size(), 3U);
    EXPECT_EQ(witness->keys[0], witness->keys[1]);
    EXPECT_NE(witness->keys[0], witness->keys[2]);
    EXPECT_EQ(witness->groups[1], QPalette::Inactive);
    style->setBaseStyle(QStyleFactory::create("Fusion"));
}

TEST(Theme, HeaderIsPaintedWithoutItsIcon) {
    const auto painted_with = [](const QIcon& icon) {
        return painted({100, 20}, Qt::black, [&](QPainter& painter) {
            QStyleOptionHeader option;
            option.rect = QRect(0, 0, 100, 20);
            option.text = "Name";
            option.icon = icon;
            QApplication::style()->drawControl(QStyle::CE_HeaderLabel, &option, &painter);
            EXPECT_EQ(option.icon.cacheKey(), icon.cacheKey()); // restored
        });
    };
    EXPECT_EQ(painted_with(QApplication::style()->standardIcon(QStyle::SP_DirIcon)), painted_with(QIcon()));
}

TEST(Theme, StandardIconIsTheSameEveryTime) {
    const QStyle& style = *QApplication::style();
    EXPECT_FALSE(style.standardIcon(QStyle::SP_DialogOkButton).isNull());
    EXPECT_EQ(style.standardIcon(QStyle::SP_DialogOkButton).cacheKey(),
              style.standardIcon(QStyle::SP_DialogOkButton).cacheKey());
    EXPECT_NE(style.standardIcon(QStyle::SP_DialogOkButton).cacheKey(),
              style.standardIcon(QStyle::SP_DirIcon).cacheKey());
}

TEST(Theme, ColoursHaveRedInTheLowByteOrAreSystemColours) {
    EXPECT_EQ(theme::to_qcolor(0x123456), QColor(0x56, 0x34, 0x12));
    EXPECT_EQ(theme::to_qcolor(theme::window_text), QColor(0, 0, 0));
    EXPECT_EQ(theme::to_qcolor(static_cast<Colour>(0x80000005U)), QColor(255, 255, 255));
}

// Fonts.

constexpr std::array captions{"Set Sprite To 256x256",
                              "Resize Pictures To 256x256",
                              "Transparent Color:",
                              "If File Exists Then:",
                              "Animation Preview",
                              "Overwrite",
                              "Export",
                              "Remove",
                              "Sizes Dont Match:"};

// Their widths in Tahoma, as multiples of the font size.
constexpr std::array<double, captions.size()> tahoma_widths{9.71, 11.96, 8.16, 8.22, 8.15,
                                                            4.28, 2.85,  3.52, 7.94};

TEST(ThemeFont, DesignFontIsTahoma) {
    const QFont font = theme::design_font();
    EXPECT_EQ(font.family(), "Tahoma");
    EXPECT_EQ(font.pointSizeF(), 9.75);
    EXPECT_EQ(font.weight(), QFont::Normal);
}

TEST(ThemeFont, DesignFontIsNormalInABoldParent) {
    QWidget parent;
    QFont bold = parent.font();
    bold.setBold(true);
    parent.setFont(bold);
    QWidget child(&parent);
    child.setFont(theme::design_font());
    EXPECT_EQ(child.font().weight(), QFont::Normal);
}

TEST(ThemeFont, PixelSizeFollowsTwipsPerPixel) {
    screen().TwipsPerPixelY = 7.5;
    EXPECT_EQ(theme::display_font(theme::design_font()).pixelSize(), 26);
    screen().TwipsPerPixelY = 15;
    EXPECT_EQ(theme::display_font(theme::design_font()).pixelSize(), 13);
}

TEST(ThemeFont, PixelSizesAndDisplayFontsAreKept) {
    QFont font = theme::design_font();
    font.setPixelSize(20);
    EXPECT_EQ(theme::display_font(font).pixelSize(), 20);
    const QFont display = theme::display_font(theme::design_font());
    EXPECT_EQ(theme::display_font(display), display);
}

TEST(ThemeFont, InstalledFamilyIsUsedUnchanged) {
    for (const QString& family : QFontDatabase::families()) {
        QFont font(family);
        font.setPointSizeF(9.75);
        const QFont display = theme::display_font(font);
        EXPECT_EQ(display.family(), family);
        EXPECT_EQ(display.stretch(), font.stretch());
        EXPECT_EQ(display.pixelSize(), 13);
    }
}

TEST(ThemeFont, StylesAreKept) {
    QFont font = theme::design_font();
    font.setItalic(true);
    font.setUnderline(true);
    EXPECT_TRUE(theme::display_font(font).italic());
    EXPECT_TRUE(theme::display_font(font).underline());
    EXPECT_FALSE(theme::display_font(theme::design_font()).italic());
}

TEST(ThemeFont, CaptionsAreNoWiderThanInTahoma) {
    const QFont font = theme::display_font(theme::design_font());
    const QFontMetricsF metrics(font);
    double together = 0;
    double tahoma_together = 0;
    for (std::size_t i = 0; i < captions.size(); ++i) {
        const double width = metrics.horizontalAdvance(QLatin1String(captions[i]));
        const double tahoma_width = tahoma_widths[i] * font.pixelSize();
        together += width;
        tahoma_together += tahoma_width;
        // Letter proportions differ between families; every control has two pixels to spare.
        EXPECT_LE(width, tahoma_width + 2) << captions[i];
    }
    EXPECT_LE(together, tahoma_together * 1.01);
    // Capitals are relatively wide in some families, so only the wider of the two must come near to Tahoma.
    const double capitals = metrics.horizontalAdvance("VP_PARALLEL_ORIENTED") / (11.39 * font.pixelSize());
    EXPECT_LE(capitals, 1);
    EXPECT_GE(std::max(together / tahoma_together, capitals), 0.9) << "narrower than necessary";
}

TEST(Theme, ApplicationHasItsNameAndFont) {
    EXPECT_EQ(QApplication::applicationDisplayName(), application_title);
    EXPECT_EQ(std::string(application_title), "Varnoth 1.0");
    EXPECT_EQ(QApplication::font(), theme::display_font(theme::design_font()));
}

// Widgets.

/// A window with one widget of each kind that Qt draws.
class ThemeWindow : public testing::Test {
  protected:
    ThemeWindow() {
        window_.resize(400, 300);
        list_.setGeometry(10, 10, 120, 100);
        for (int i = 0; i < 30; ++i) {
            list_.AddItem("Frame with a long name " + QString::number(i));
        }
        list_.SetSelected(1, true);
        drop_down_.setGeometry(140, 10, 100, 24);
        drop_down_.AddItem("*.bmp");
        drop_down_.SetListIndex(0);
        field_.setGeometry(140, 40, 100, 20);
        field_.setText("Text");
        button_.setGeometry(140, 70, 80, 24);
        folders_.setGeometry(10, 120, 120, 100);
        for (QWidget* widget : window_.findChildren<QWidget*>()) {
            widget->setFocusPolicy(Qt::NoFocus); // a disabled window loses the focus, which is visible
        }
        window_.show();
    }

    QWidget window_;
    ListBox list_{"List1", &window_};
    DropDownList drop_down_{"Combo1", &window_};
    QLineEdit field_{&window_};
    QPushButton button_{"&Yes", &window_};
    FolderListBox folders_{"Dir1", &window_};
};

TEST_F(ThemeWindow, DisabledWindowLooksLikeAnEnabledOne) {
    const QImage before = shown(window_);
    window_.setEnabled(false);
    EXPECT_EQ(shown(window_), before);
    window_.setEnabled(true);
    EXPECT_EQ(shown(window_), before);
}

TEST_F(ThemeWindow, DisabledListHasGreyTextInAnyWindow) {
    EXPECT_GT(count_of(shown(list_), theme::light_text), 0);
    list_.SetEnabled(false);
    const QImage disabled = shown(list_);
    EXPECT_EQ(count_of(disabled, theme::light_text), 0);
    EXPECT_GT(count_of(disabled, theme::disabled_text), 0);
    window_.setEnabled(false);
    EXPECT_EQ(shown(list_), disabled);
    window_.setEnabled(true);
    EXPECT_EQ(shown(list_), disabled);
    list_.SetEnabled(true);
    EXPECT_GT(count_of(shown(list_), theme::light_text), 0);
}

TEST_F(ThemeWindow, DisabledFieldAndButtonLookDisabled) {
    for (QWidget* widget : std::array<QWidget*, 2>{&field_, &button_}) {
        const QImage enabled = shown(*widget);
        widget->setEnabled(false);
        theme::apply_palette(*widget, false);
        EXPECT_NE(shown(*widget), enabled);
        widget->setEnabled(true);
        theme::apply_palette(*widget, true);
        EXPECT_EQ(shown(*widget), enabled);
    }
}

TEST_F(ThemeWindow, InactiveWindowLooksLikeAnActiveOne) {
    const QImage before = shown(window_);
    QWidget other;
    other.show();
    other.activateWindow();
    QCoreApplication::processEvents();
    EXPECT_EQ(shown(window_), before);
}

} // namespace
} // namespace varnoth::test
