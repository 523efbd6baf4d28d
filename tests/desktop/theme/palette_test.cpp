// All roles of the palette of Qt's own widgets.
#include <utility>
#include <vector>

#include <QApplication>
#include <QStyle>
#include <QToolTip>

#include <gtest/gtest.h>

#include "desktop/theme/theme.h"

namespace varnoth {
namespace {

using Roles = std::vector<std::pair<QPalette::ColorRole, QColor>>;

const QColor ground(76, 88, 68);
const QColor field(62, 70, 55);
const QColor text(216, 222, 211);
const QColor grey(128, 128, 128);
const QColor light(160, 170, 149);
const QColor dark(40, 46, 34);
const QColor marked(196, 181, 80);
const QColor glyph(136, 145, 128);

Roles roles(bool enabled) {
    return {{QPalette::Window, ground},
            {QPalette::WindowText, enabled ? text : grey},
            {QPalette::Base, field},
            {QPalette::AlternateBase, field},
            {QPalette::Text, enabled ? text : grey},
            {QPalette::PlaceholderText, grey},
            {QPalette::Button, ground},
            {QPalette::ButtonText, enabled ? Qt::white : grey},
            {QPalette::BrightText, Qt::white},
            {QPalette::Light, light},
            {QPalette::Midlight, glyph},
            {QPalette::Mid, field},
            {QPalette::Dark, dark},
            {QPalette::Shadow, dark},
            {QPalette::Highlight, enabled ? marked : dark},
            {QPalette::HighlightedText, enabled ? QColor(Qt::black) : grey},
            {QPalette::Link, marked},
            {QPalette::LinkVisited, marked},
            {QPalette::ToolTipBase, field},
            {QPalette::ToolTipText, text}};
}

void expect_roles(const QPalette& palette, bool enabled) {
    for (const auto& [role, colour] : roles(enabled)) {
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            EXPECT_EQ(palette.color(group, role), colour) << role << " " << group;
        }
    }
}

TEST(ThemePalette, EveryRoleHasItsColour) {
    expect_roles(theme::palette(true), true);
    expect_roles(theme::palette(false), false);
}

TEST(ThemePalette, ApplicationAndToolTipsUseThePalette) {
    expect_roles(QApplication::palette(), true);
    expect_roles(QApplication::style()->standardPalette(), true);
    QPalette desktop_palette(Qt::red);
    QApplication::style()->polish(desktop_palette);
    EXPECT_EQ(desktop_palette, theme::palette());
    expect_roles(QToolTip::palette(), true);
    EXPECT_EQ(QToolTip::font(), theme::display_font(theme::design_font()));
}

} // namespace
} // namespace varnoth
