// List boxes and drop-down lists, with real mouse and keyboard events.
#include <string>
#include <vector>

#include <QAbstractItemView>
#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QMouseEvent>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>

#include <gtest/gtest.h>

#include "desktop/mouse_events.h"
#include "desktop/pixels.h"
#include "desktop/services/exception_barrier.h"
#include "desktop/theme/theme.h"
#include "desktop/widgets/DropDownList.h"
#include "desktop/widgets/FolderListBox.h"
#include "desktop/widgets/ListBox.h"
#include "support/expect_failure.h"

namespace varnoth::test {
namespace {

void fill(ListBox& list, int lines) {
    for (int i = 0; i < lines; ++i) {
        list.AddItem("Frame " + QString::number(i));
    }
}

std::vector<int> selected_lines(const ListBox& list) {
    std::vector<int> lines;
    for (int i = 0; i < list.ListCount(); ++i) {
        if (list.Selected(i)) {
            lines.push_back(i);
        }
    }
    EXPECT_EQ(static_cast<std::size_t>(list.SelCount()), lines.size());
    return lines;
}

using Lines = std::vector<int>;

/// A visible list of five lines. Records the selected lines at each Click and counts the double clicks.
class ListBoxTest : public testing::Test {
  protected:
    ListBoxTest() {
        list_.resize(150, 200);
        fill(list_, 5);
        on_event(&list_, &ListBox::Click, &list_, [this] { clicks_.push_back(selected_lines(list_)); });
        on_event(&list_, &ListBox::DblClick, &list_, [this] { ++double_clicks_; });
        list_.show();
        QCoreApplication::processEvents();
    }

    ListBox list_{"List1", nullptr};
    std::vector<Lines> clicks_;
    int double_clicks_ = 0;
};

TEST_F(ListBoxTest, NoLineIsCurrentAtFirst) {
    EXPECT_EQ(list_.ListIndex(), -1);
    list_.Clear();
    EXPECT_EQ(list_.ListCount(), 0);
    fill(list_, 3);
    EXPECT_EQ(list_.ListIndex(), -1);
    EXPECT_TRUE(clicks_.empty());
}

TEST_F(ListBoxTest, FocusMakesNoLineCurrent) {
    for (const Qt::FocusReason reason : {Qt::TabFocusReason, Qt::MouseFocusReason, Qt::OtherFocusReason}) {
        list_.clearFocus();
        list_.setFocus(reason);
        QCoreApplication::processEvents();
        ASSERT_TRUE(list_.hasFocus());
        EXPECT_EQ(list_.ListIndex(), -1) << reason;
    }
    EXPECT_TRUE(clicks_.empty());
}

TEST_F(ListBoxTest, FocusKeepsTheCurrentLine) {
    list_.SetListIndex(3);
    list_.clearFocus();
    list_.setFocus(Qt::TabFocusReason);
    EXPECT_EQ(list_.ListIndex(), 3);
    EXPECT_EQ(clicks_.size(), 1U);
}

TEST_F(ListBoxTest, ClearResetsLineAndSelectionWithoutClick) {
    list_.SetListIndex(2);
    list_.SetSelected(2, true);
    clicks_.clear();
    list_.Clear();
    EXPECT_EQ(list_.ListIndex(), -1);
    EXPECT_EQ(list_.SelCount(), 0);
    EXPECT_TRUE(clicks_.empty());
}

TEST_F(ListBoxTest, SetListIndexRaisesClickEvenForTheCurrentLine) {
    list_.SetListIndex(1);
    list_.SetListIndex(1);
    EXPECT_EQ(clicks_.size(), 2U);
    EXPECT_EQ(list_.ListIndex(), 1);
}

TEST_F(ListBoxTest, SetListIndexKeepsTheSelection) {
    list_.SetSelected(0, true);
    list_.SetSelected(4, true);
    EXPECT_TRUE(clicks_.empty());
    list_.SetListIndex(2);
    EXPECT_EQ(clicks_, (std::vector<Lines>{{0, 4}}));
    EXPECT_EQ(selected_lines(list_), (Lines{0, 4}));
}

TEST_F(ListBoxTest, SetListIndexScrollsToTheLine) {
    fill(list_, 500);
    list_.SetListIndex(400);
    EXPECT_TRUE(list_.viewport()->rect().contains(list_.visualItemRect(list_.item(400))));
}

TEST_F(ListBoxTest, MissingLineRaisesAFailure) {
    EXPECT_FAILURE(list_.SetListIndex(5), InvalidPropertyValue);
    EXPECT_FAILURE(list_.SetListIndex(-1), InvalidPropertyValue);
    EXPECT_FAILURE(list_.List(5), SubscriptOutOfRange);
    EXPECT_FAILURE(list_.List(-1), SubscriptOutOfRange);
    EXPECT_FAILURE(list_.Selected(5), SubscriptOutOfRange);
    EXPECT_FAILURE(list_.SetSelected(-1, true), SubscriptOutOfRange);
    EXPECT_EQ(list_.List(4), "Frame 4");
    EXPECT_TRUE(clicks_.empty());
}

TEST_F(ListBoxTest, PressSelectsALineThenRaisesClickOnce) {
    click(list_, 1);
    EXPECT_EQ(clicks_, (std::vector<Lines>{{1}}));
    EXPECT_EQ(list_.ListIndex(), 1);
    list_.SetListIndex(3);
    click(list_, 3);
    EXPECT_EQ(clicks_, (std::vector<Lines>{{1}, {1}, {3}}));
}

TEST_F(ListBoxTest, ControlAndShiftSelectSeveralLines) {
    click(list_, 0);
    click(list_, 2, Qt::ControlModifier);
    click(list_, 4, Qt::ShiftModifier);
    EXPECT_EQ(clicks_, (std::vector<Lines>{{0}, {0, 2}, {2, 3, 4}}));
    click(list_, 3, Qt::ControlModifier);
    EXPECT_EQ(clicks_.back(), (Lines{2, 4}));
    EXPECT_EQ(list_.ListIndex(), 3);
}

TEST_F(ListBoxTest, PressOnASelectedLineDeselectsOthersFirst) {
    click(list_, 0);
    click(list_, 3, Qt::ShiftModifier);
    clicks_.clear();
    click(list_, 1);
    EXPECT_EQ(clicks_, (std::vector<Lines>{{1}}));
}

TEST_F(ListBoxTest, LineThatClickDeselectsStaysSoOnRelease) {
    on_event(&list_, &ListBox::Click, &list_, [this] { list_.SetSelected(2, false); });
    click(list_, 2);
    EXPECT_EQ(selected_lines(list_), Lines{});
    EXPECT_EQ(list_.ListIndex(), 2);
}

TEST_F(ListBoxTest, LineThatClickSelectsStaysSoOnRelease) {
    on_event(&list_, &ListBox::Click, &list_, [this] { list_.SetSelected(4, true); });
    click(list_, 2);
    EXPECT_EQ(selected_lines(list_), (Lines{2, 4}));
}

TEST_F(ListBoxTest, PressOutsideTheLinesChangesNothing) {
    click(list_, 1);
    clicks_.clear();
    const QPoint empty(20, middle_of(list_, 4).y() + 40);
    ASSERT_EQ(list_.itemAt(empty), nullptr);
    QTest::mousePress(list_.viewport(), Qt::LeftButton, {}, empty);
    QTest::mouseMove(list_.viewport(), middle_of(list_, 3));
    QTest::mouseRelease(list_.viewport(), Qt::LeftButton, {}, middle_of(list_, 3));
    fast_pair(list_.viewport(), Qt::LeftButton, {}, empty);
    EXPECT_TRUE(clicks_.empty());
    EXPECT_EQ(double_clicks_, 0);
    EXPECT_EQ(list_.ListIndex(), 1);
    EXPECT_EQ(selected_lines(list_), Lines{1});
}

TEST_F(ListBoxTest, ReleaseOutsideTheLinesKeepsTheSelection) {
    QTest::mousePress(list_.viewport(), Qt::LeftButton, {}, middle_of(list_, 2));
    QTest::mouseRelease(list_.viewport(), Qt::LeftButton, {}, {20, middle_of(list_, 4).y() + 40});
    EXPECT_EQ(selected_lines(list_), Lines{2});
}

TEST_F(ListBoxTest, OtherButtonsChangeNothing) {
    click(list_, 1);
    clicks_.clear();
    QTest::mouseClick(list_.viewport(), Qt::RightButton, {}, middle_of(list_, 3));
    EXPECT_TRUE(clicks_.empty());
    EXPECT_EQ(list_.ListIndex(), 1);
    EXPECT_EQ(selected_lines(list_), Lines{1});
}

TEST_F(ListBoxTest, DoubleClickRaisesOneClickAndOneDblClick) {
    fast_pair(list_.viewport(), Qt::LeftButton, {}, middle_of(list_, 2));
    EXPECT_EQ(clicks_, (std::vector<Lines>{{2}}));
    EXPECT_EQ(double_clicks_, 1);
}

TEST_F(ListBoxTest, DoubleClickWithControlSelectsAndDeselects) {
    fast_pair(list_.viewport(), Qt::LeftButton, Qt::ControlModifier, middle_of(list_, 2));
    EXPECT_EQ(clicks_, (std::vector<Lines>{{2}, {}}));
}

TEST_F(ListBoxTest, KeyboardSelectsALineThenRaisesClick) {
    list_.SetListIndex(0);
    clicks_.clear();
    QTest::keyClick(&list_, Qt::Key_Down);
    QTest::keyClick(&list_, Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(clicks_, (std::vector<Lines>{{1}, {1, 2}}));
    EXPECT_EQ(list_.ListIndex(), 2);
    QTest::keyClick(&list_, Qt::Key_End);
    EXPECT_EQ(clicks_.back(), Lines{4});
    QTest::keyClick(&list_, Qt::Key_Down);
    EXPECT_EQ(clicks_.size(), 3U) << "already at the last line";
}

TEST_F(ListBoxTest, KeyboardRaisesClickAfterTheProgramSetALine) {
    list_.SetListIndex(0);
    clicks_.clear();
    QTest::keyClick(&list_, Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(list_.ListIndex(), 1);
    EXPECT_EQ(clicks_, std::vector<Lines>{Lines{}});
}

TEST_F(ListBoxTest, KeyboardRaisesClickWithoutASelectionAfterClear) {
    list_.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&list_));
    list_.setFocus();
    list_.Clear();
    fill(list_, 2);
    QTest::keyClick(&list_, Qt::Key_Down, Qt::ControlModifier);
    QTest::keyClick(&list_, Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(list_.ListIndex(), 1);
    EXPECT_EQ(list_.SelCount(), 0);
    EXPECT_EQ(clicks_.size(), 2U);
}

TEST_F(ListBoxTest, SelectAllRaisesClick) {
    click(list_, 0);
    clicks_.clear();
    QTest::keyClick(&list_, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(clicks_, (std::vector<Lines>{{0, 1, 2, 3, 4}}));
}

TEST_F(ListBoxTest, SelectAllWithoutACurrentLineMakesTheFirstCurrent) {
    list_.setFocus();
    std::vector<int> current;
    on_event(&list_, &ListBox::Click, &list_, [&] { current.push_back(list_.ListIndex()); });
    QTest::keyClick(&list_, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(current, std::vector<int>{0});
    EXPECT_EQ(clicks_, (std::vector<Lines>{{0, 1, 2, 3, 4}}));
}

TEST_F(ListBoxTest, DraggingSelectsLinesAndRaisesClickAtEach) {
    QTest::mousePress(list_.viewport(), Qt::LeftButton, {}, middle_of(list_, 0));
    // QTest::mouseMove sends moves without a button.
    for (const int line : {1, 2}) {
        const QPointF place = middle_of(list_, line);
        QMouseEvent move(QEvent::MouseMove, place, list_.viewport()->mapToGlobal(place), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(list_.viewport(), &move);
    }
    QTest::mouseRelease(list_.viewport(), Qt::LeftButton, {}, middle_of(list_, 2));
    EXPECT_EQ(clicks_, (std::vector<Lines>{{0}, {0, 1}, {0, 1, 2}}));
    EXPECT_EQ(list_.ListIndex(), 2);
}

TEST_F(ListBoxTest, DisabledListIgnoresPresses) {
    list_.SetEnabled(false);
    EXPECT_FALSE(list_.isEnabled());
    click(list_, 1);
    EXPECT_EQ(list_.ListIndex(), -1);
    EXPECT_TRUE(clicks_.empty());
    list_.SetEnabled(true);
    click(list_, 1);
    EXPECT_EQ(list_.ListIndex(), 1);
}

TEST_F(ListBoxTest, FailureInAClickHandlerIsFatal) {
    std::vector<std::string> errors;
    const FatalErrorHandlerInstallation installation(
        [&](std::string_view name, std::string_view) { errors.emplace_back(name); });
    on_event(&list_, &ListBox::Click, &list_, [] { fail(Failure::Overflow); });
    click(list_, 1);
    QTest::keyClick(&list_, Qt::Key_Down);
    EXPECT_EQ(errors, (std::vector<std::string>{"Overflow", "Overflow"}));
}

TEST(ListBox, HoldsTheMaximumNumberOfLines) {
    constexpr int most = 32767;
    ListBox list("List1", nullptr);
    fill(list, most);
    list.show();
    list.SetListIndex(most - 1);
    list.selectAll();
    EXPECT_EQ(list.SelCount(), most);
    EXPECT_TRUE(list.Selected(most - 1));
    EXPECT_EQ(list.List(most - 1), "Frame 32766");
}

// Drop-down lists.

class DropDownListTest : public testing::Test {
  protected:
    DropDownListTest() {
        for (const char* pattern : {"*.bmp", "*.jpg", "*.tga"}) {
            list_.AddItem(pattern);
        }
        list_.resize(100, 24);
        list_.move(20, 20);
        window_.resize(200, 200);
        window_.show();
        on_event(&list_, &DropDownList::Click, &list_, [this] { clicks_.push_back(list_.ListIndex()); });
        QCoreApplication::processEvents();
    }

    void choose(int line) {
        QTest::mouseClick(&list_, Qt::LeftButton);
        QAbstractItemView& lines = *list_.view();
        ASSERT_TRUE(lines.isVisible());
        QTest::keyClick(&lines, Qt::Key_Home);
        for (int i = 0; i < line; ++i) {
            QTest::keyClick(&lines, Qt::Key_Down);
        }
        QTest::keyClick(&lines, Qt::Key_Return);
    }

    bool turn_wheel() {
        const QPointF place = list_.rect().center();
        QWheelEvent wheel(place, list_.mapToGlobal(place), {}, {0, -120}, {}, {}, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&list_, &wheel);
        return wheel.isAccepted();
    }

    QWidget window_;
    DropDownList list_{"Combo1", &window_};
    std::vector<int> clicks_;
};

TEST_F(DropDownListTest, AddedLinesAreNotSelected) {
    EXPECT_EQ(list_.ListCount(), 3);
    EXPECT_EQ(list_.ListIndex(), -1);
    list_.SetListIndex(1);
    list_.AddItem("*.pcx");
    EXPECT_EQ(list_.ListIndex(), 1);
    EXPECT_EQ(clicks_, std::vector<int>{1});
}

TEST_F(DropDownListTest, SetListIndexRaisesClickEvenForTheSameLine) {
    list_.SetListIndex(2);
    list_.SetListIndex(2);
    list_.SetListIndex(-1);
    EXPECT_EQ(clicks_, (std::vector<int>{2, 2, -1}));
    EXPECT_FAILURE(list_.SetListIndex(3), InvalidPropertyValue);
    EXPECT_FAILURE(list_.SetListIndex(-2), InvalidPropertyValue);
    EXPECT_EQ(clicks_.size(), 3U);
}

TEST_F(DropDownListTest, TextsAreReadAndReplaced) {
    list_.SetList(1, "*.png");
    EXPECT_EQ(list_.List(1), "*.png");
    EXPECT_FAILURE(list_.List(3), SubscriptOutOfRange);
    EXPECT_FAILURE(list_.List(-1), SubscriptOutOfRange);
    EXPECT_FAILURE(list_.SetList(3, ""), SubscriptOutOfRange);
}

TEST_F(DropDownListTest, UserChoiceRaisesClickEvenForTheSameLine) {
    choose(1);
    choose(1);
    EXPECT_EQ(clicks_, (std::vector<int>{1, 1}));
}

TEST_F(DropDownListTest, OpensBelowItsField) {
    list_.SetListIndex(2);
    QTest::mouseClick(&list_, Qt::LeftButton);
    const QRect popup = list_.view()->window()->geometry();
    EXPECT_GE(popup.top(), list_.mapToGlobal(QPoint(0, list_.height() - 1)).y() - 1);
    list_.hidePopup();
}

TEST_F(DropDownListTest, WheelChangesTheLineOnlyWithTheFocus) {
    QWidget other(&window_);
    other.setFocusPolicy(Qt::StrongFocus);
    other.show();
    other.setFocus();
    list_.SetListIndex(0);
    clicks_.clear();
    EXPECT_FALSE(turn_wheel());
    EXPECT_EQ(list_.ListIndex(), 0);
    list_.setFocus();
    EXPECT_TRUE(turn_wheel());
    EXPECT_EQ(clicks_, std::vector<int>{1});
}

TEST_F(DropDownListTest, IsDrawnFlatWithASunkenEdge) {
    const QImage image = list_.grab().toImage();
    EXPECT_EQ(image.pixelColor(50, 0), theme::to_qcolor(theme::edge_dark));
    EXPECT_EQ(image.pixelColor(0, 12), theme::to_qcolor(theme::edge_dark));
    EXPECT_EQ(image.pixelColor(50, 23), theme::to_qcolor(theme::edge_light));
    EXPECT_EQ(image.pixelColor(99, 12), theme::to_qcolor(theme::edge_light));
    EXPECT_EQ(image.pixelColor(50, 12), theme::to_qcolor(theme::field_background));
}

TEST_F(DropDownListTest, LongTextEndsAtTheArrow) {
    const auto differs_from_ground = [&](int column) {
        const QImage image = list_.grab().toImage();
        const QRect inside(column, 1, 1, image.height() - 2);
        return count_of(image, theme::field_background, inside) < inside.height();
    };
    list_.SetList(0, "________________");
    list_.SetListIndex(0);
    EXPECT_TRUE(differs_from_ground(81));
    EXPECT_FALSE(differs_from_ground(82));
}

TEST_F(DropDownListTest, OpenListHasTheColoursOfTheField) {
    list_.SetColours(0x112233, 0x445566);
    EXPECT_EQ(list_.view()->palette().color(QPalette::Base), theme::to_qcolor(0x112233));
    EXPECT_EQ(list_.view()->palette().color(QPalette::Text), theme::to_qcolor(0x445566));
}

TEST(DropDownList, DisabledListHasNoPressAction) {
    DropDownList list("Combo1", nullptr);
    list.AddItem("*.bmp");
    list.show();
    QAccessibleInterface& shown = *QAccessible::queryAccessibleInterface(&list);
    EXPECT_TRUE(shown.state().hasPopup);
    QAccessibleActionInterface& actions = *shown.actionInterface();
    actions.doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_FALSE(list.view()->isVisible()) << "another action";
    list.setEnabled(false);
    EXPECT_EQ(actions.actionNames(), QStringList());
    actions.doAction(QAccessibleActionInterface::pressAction());
    EXPECT_FALSE(list.view()->isVisible());
}

TEST(DropDownList, TextIsFourPixelsFromTheLeftAndCentred) {
    DropDownList list("Combo1", nullptr);
    list.resize(120, 20);
    list.AddItem("HHH");
    list.SetListIndex(0);
    const QImage expected =
        painted(list.size(), theme::to_qcolor(theme::field_background), [](QPainter& painter) {
            painter.setFont(theme::display_font(theme::design_font()));
            painter.setPen(theme::to_qcolor(theme::light_text));
            painter.drawText(QRect(4, 0, 100, 20), Qt::AlignLeft | Qt::AlignVCenter, "HHH");
        });
    constexpr int arrow_width = 18;
    const QRect inside = list.rect().adjusted(1, 1, -arrow_width, -1);
    EXPECT_EQ(list.grab().toImage().convertToFormat(QImage::Format_RGB32).copy(inside),
              expected.copy(inside));
}

/// How far a press on the list moves its window when the pointer's global position is off by `offset`.
QPoint moved_by_press(const QPoint& offset) {
    QWidget window;
    window.resize(200, 100);
    DropDownList list("Combo1", &window);
    list.AddItem("one");
    window.move(100, 100);
    window.show();
    QCoreApplication::processEvents();
    const QPoint before = window.windowHandle()->position();
    const QPointF place(5, 5);
    QMouseEvent event(QEvent::MouseButtonPress, place, place, QPointF(before + offset) + place,
                      Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&list, &event);
    list.hidePopup();
    return window.windowHandle()->position() - before;
}

TEST(DropDownList, PressCorrectsTheWindowPosition) {
    EXPECT_EQ(moved_by_press({3, 2}), QPoint(3, 2));
    EXPECT_EQ(moved_by_press({-3, -2}), QPoint(-3, -2));
    EXPECT_EQ(moved_by_press({50, 0}), QPoint(50, 0));
}

TEST(DropDownList, PressIgnoresRoundingDifferences) {
    EXPECT_EQ(moved_by_press({2, 2}), QPoint(0, 0));
    EXPECT_EQ(moved_by_press({-4, 0}), QPoint(0, 0));
}

// Lines that are too long are clipped at the edge, without an ellipsis.
TEST(Lists, LongLinesAreNotElided) {
    EXPECT_EQ(ListBox("List1", nullptr).textElideMode(), Qt::ElideNone);
    EXPECT_EQ(FolderListBox("Dir1", nullptr).textElideMode(), Qt::ElideNone);
    EXPECT_EQ(DropDownList("Combo1", nullptr).view()->textElideMode(), Qt::ElideNone);
}

} // namespace
} // namespace varnoth::test
