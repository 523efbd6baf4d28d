// The keys of a form, tested on a window with one clickable control and several focusable ones.
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QTest>
#include <QWindow>
#include <qpa/qwindowsysteminterface.h>

#include "core/base/RunTimeFailure.h"
#include "desktop/forms/FormKeys.h"
#include "desktop/services/exception_barrier.h"
#include "desktop/widgets/DropDownList.h"
#include "desktop/widgets/Label.h"
#include "desktop/widgets/ListBox.h"
#include "ui_driver/UiDriver.h"

namespace varnoth {
namespace {

class FormKeysTest : public testing::Test {
  protected:
    FormKeysTest() {
        window_.resize(200, 200);
        control_.setGeometry(0, 0, 20, 20);
        field_.setGeometry(0, 30, 100, 20);
        list_.setGeometry(0, 60, 100, 60);
        choice_.setGeometry(0, 130, 100, 20);
        for (const char* line : {"one", "two", "three"}) {
            list_.AddItem(line);
            choice_.AddItem(line);
        }
        QObject::connect(&control_, &Label::Click, [this] { ++clicks_; });
        window_.show();
        window_.activateWindow();
        ui_driver::settle();
    }

    void focus(QWidget& widget) {
        widget.setFocus();
        ASSERT_EQ(QApplication::focusWidget(), &widget);
    }

    /// Sends a key press as the window system does.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(window_.windowHandle(), key, modifiers);
    }

    void press(char key) { QTest::keyClick(window_.windowHandle(), key); }

    /// Sends an auto-repeated key press.
    void hold(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QWidget* const focused = QApplication::focusWidget();
        QKeyEvent repeated(QEvent::KeyPress, key, modifiers, QString(), true);
        QApplication::sendEvent(focused == nullptr ? &window_ : focused, &repeated);
    }

    QWidget window_;
    Label control_{"control", &window_, Label::Kind::Symbol, "4", "Play"};
    QLineEdit field_{&window_};
    ListBox list_{"list", &window_};
    DropDownList choice_{"choice", &window_};
    FormKeys keys_{window_};
    int clicks_ = 0;
    std::vector<std::string> failures_;
    FatalErrorHandlerInstallation fatal_end_{
        [this](std::string_view name, std::string_view /*words*/) { failures_.emplace_back(name); }};
};

TEST_F(FormKeysTest, ShortcutWithOtherModifiersIsAnotherKey) {
    keys_.add({shortcut(Qt::CTRL | Qt::Key_N, control_)});
    for (const Qt::KeyboardModifiers modifiers :
         {Qt::KeyboardModifiers(Qt::NoModifier), Qt::ControlModifier | Qt::ShiftModifier,
          Qt::ControlModifier | Qt::AltModifier}) {
        press(Qt::Key_N, modifiers);
    }
    EXPECT_EQ(clicks_, 0);
}

TEST_F(FormKeysTest, KeypadEnterActsAsReturn) {
    keys_.add({plain_key(Qt::Key_Return, control_)});
    press(Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(clicks_, 1);
}

TEST_F(FormKeysTest, NothingIsClickedBehindAnOpenDropDownList) {
    keys_.add({shortcut(Qt::CTRL | Qt::Key_N, control_)});
    choice_.showPopup();
    QTest::keyClick(&window_, Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(clicks_, 0);
    choice_.hidePopup();
}

TEST_F(FormKeysTest, OpenDropDownListKeepsItsKeys) {
    keys_.add({plain_key(Qt::Key_Return, control_), plain_key(Qt::Key_Escape, control_)});
    choice_.SetListIndex(0);
    ui_driver::choose(choice_, 2);
    EXPECT_EQ(choice_.ListIndex(), 2);
    EXPECT_EQ(clicks_, 0);
}

// Sends repeats as the window system does.
TEST_F(FormKeysTest, HeldShortcutActsOnce) {
    keys_.add({shortcut(Qt::CTRL | Qt::Key_N, control_)});
    focus(field_);
    for (const bool repeated : {false, true, true}) {
        QWindowSystemInterface::handleKeyEvent<QWindowSystemInterface::SynchronousDelivery>(
            window_.windowHandle(), QEvent::KeyPress, Qt::Key_N, Qt::ControlModifier, "n", repeated);
    }
    EXPECT_EQ(clicks_, 1);
    EXPECT_EQ(field_.text(), "");
}

TEST_F(FormKeysTest, RepeatingKeyActsAgainWhileHeld) {
    FormKey key = shortcut(Qt::CTRL | Qt::Key_N, control_);
    key.repeats = true;
    keys_.add({key});
    press(Qt::Key_N, Qt::ControlModifier);
    hold(Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(clicks_, 2);
}

TEST_F(FormKeysTest, ShortcutComesBeforeTheFocusedControl) {
    keys_.add({shortcut(Qt::ALT | Qt::Key_Down, control_)});
    list_.SetListIndex(0);
    focus(list_);
    press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(clicks_, 1);
    EXPECT_EQ(list_.ListIndex(), 0);
}

TEST_F(FormKeysTest, ShortcutOfADisabledControlTypesNoText) {
    keys_.add({shortcut(Qt::ALT | Qt::Key_C, control_)});
    control_.setEnabled(false);
    focus(field_);
    QTest::sendKeyEvent(QTest::Click, &field_, Qt::Key_C, QStringLiteral("c"), Qt::AltModifier);
    EXPECT_EQ(field_.text(), "");
    EXPECT_EQ(clicks_, 0);
}

TEST_F(FormKeysTest, PlainKeyComesAfterTheFocusedControl) {
    keys_.add({plain_key(Qt::Key_Left, control_)});
    focus(field_);
    field_.setText("ab");
    press(Qt::Key_Left);
    EXPECT_EQ(field_.cursorPosition(), 1);
    EXPECT_EQ(clicks_, 0);
}

TEST_F(FormKeysTest, IgnoredPlainKeyReachesTheForm) {
    keys_.add({plain_key(Qt::Key_Return, control_), plain_key(Qt::Key_Escape, control_)});
    int expected = 0;
    for (QWidget* widget :
         {static_cast<QWidget*>(&field_), static_cast<QWidget*>(&list_), static_cast<QWidget*>(&choice_)}) {
        focus(*widget);
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
            press(key);
            EXPECT_EQ(clicks_, ++expected) << widget->metaObject()->className() << " " << key;
        }
    }
}

TEST_F(FormKeysTest, PlainKeyReachesTheFormWithoutAFocus) {
    keys_.add({plain_key(Qt::Key_Space, control_)});
    ASSERT_EQ(QApplication::focusWidget() == nullptr ? nullptr : window_.focusWidget(),
              QApplication::focusWidget());
    if (QWidget* const focused = QApplication::focusWidget()) {
        focused->clearFocus();
    }
    press(Qt::Key_Space);
    EXPECT_EQ(clicks_, 1);
}

TEST_F(FormKeysTest, OtherKeysReachTheFocusedControl) {
    keys_.add({shortcut(Qt::CTRL | Qt::Key_N, control_), plain_key(Qt::Key_Return, control_)});
    focus(field_);
    press('n');
    EXPECT_EQ(field_.text(), "n");
    EXPECT_EQ(clicks_, 0);
}

TEST_F(FormKeysTest, KeyWithFalseConditionReachesTheControl) {
    bool armed = false;
    FormKey key = shortcut(Qt::Key_Down, control_);
    key.when = [&] { return armed; };
    keys_.add({key});
    list_.SetListIndex(0);
    focus(list_);
    press(Qt::Key_Down);
    EXPECT_EQ(list_.ListIndex(), 1);
    armed = true;
    press(Qt::Key_Down);
    EXPECT_EQ(list_.ListIndex(), 1);
    EXPECT_EQ(clicks_, 1);
}

TEST_F(FormKeysTest, FirstOfTwoEqualKeysWithATrueConditionActs) {
    std::string acted;
    bool armed = false;
    keys_.add(
        {{Qt::Key_Space, &control_, [&] { acted += "first "; }, FormKey::First::Form, [&] { return armed; }},
         {Qt::Key_Space, &control_, [&] { acted += "second "; }}});
    press(Qt::Key_Space);
    armed = true;
    press(Qt::Key_Space);
    EXPECT_EQ(acted, "second first ");
}

TEST_F(FormKeysTest, FailureOfAKeyDoesNotPassThroughQt) {
    keys_.add({{Qt::CTRL | Qt::Key_N, &control_, [] { fail(Failure::DivisionByZero); }}});
    press(Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(failures_, std::vector<std::string>{"DivisionByZero"});
}

TEST_F(FormKeysTest, FirstKeyIsReportedToAssistiveTechnology) {
    keys_.add({shortcut(Qt::CTRL | Qt::Key_N, control_), shortcut(Qt::ALT | Qt::Key_N, control_)});
    QAccessibleInterface& described = *QAccessible::queryAccessibleInterface(&control_);
    EXPECT_EQ(described.text(QAccessible::Accelerator), "Ctrl+N");
    QAccessibleActionInterface& actions = *described.actionInterface();
    EXPECT_EQ(actions.keyBindingsForAction(QAccessibleActionInterface::pressAction()), QStringList{"Ctrl+N"});
    EXPECT_EQ(actions.keyBindingsForAction(QAccessibleActionInterface::toggleAction()), QStringList{});
}

TEST_F(FormKeysTest, ConditionalKeyIsNotReported) {
    keys_.add({plain_key(Qt::Key_Space, control_, [] { return true; })});
    QAccessibleInterface& described = *QAccessible::queryAccessibleInterface(&control_);
    EXPECT_EQ(described.text(QAccessible::Accelerator), "");
    EXPECT_EQ(described.actionInterface()->keyBindingsForAction(QAccessibleActionInterface::pressAction()),
              QStringList{});
}

} // namespace
} // namespace varnoth
