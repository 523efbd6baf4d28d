// The key numbers of the text box, key by key, and its mouse events.
#include <utility>
#include <vector>

#include <QKeyEvent>
#include <QWindow>

#include "desktop/controls/eltexto.h"
#include "desktop/controls/shown.h"

namespace varnoth {
namespace {

using test::Shown;

/// A text box and the key numbers that it reported.
struct Keys : Shown<eltexto> {
    std::vector<int> numbers;

    Keys() : Shown(100) {
        QObject::connect(&control, &eltexto::KeyDown, &control,
                         [this](std::int16_t number, std::int16_t) { numbers.push_back(number); });
    }

    int number_of(int key, Qt::KeyboardModifiers modifiers = {}) {
        numbers.clear();
        QKeyEvent event(QEvent::KeyPress, key, modifiers);
        QCoreApplication::sendEvent(&control.Text1(), &event);
        return numbers.size() == 1 ? numbers.front() : -1;
    }
};

TEST(EltextoKeys, KeysWithoutACharacterHaveTheirOwnNumbers) {
    Keys keys;
    const std::vector<std::pair<Qt::Key, int>> expected{
        {Qt::Key_Backspace, 8}, {Qt::Key_Tab, 9},       {Qt::Key_Backtab, 9},   {Qt::Key_Return, 13},
        {Qt::Key_Enter, 13},    {Qt::Key_Shift, 16},    {Qt::Key_Control, 17},  {Qt::Key_Alt, 18},
        {Qt::Key_Pause, 19},    {Qt::Key_CapsLock, 20}, {Qt::Key_Escape, 27},   {Qt::Key_Space, 32},
        {Qt::Key_PageUp, 33},   {Qt::Key_PageDown, 34}, {Qt::Key_End, 35},      {Qt::Key_Home, 36},
        {Qt::Key_Left, 37},     {Qt::Key_Up, 38},       {Qt::Key_Right, 39},    {Qt::Key_Down, 40},
        {Qt::Key_Insert, 45},   {Qt::Key_Delete, 46},   {Qt::Key_NumLock, 144}, {Qt::Key_ScrollLock, 145},
    };
    for (const auto& [key, number] : expected) {
        EXPECT_EQ(keys.number_of(key), number) << key;
    }
}

TEST(EltextoKeys, LettersDigitsAndFunctionKeysAreNumberedInOrder) {
    Keys keys;
    for (int i = 0; i < 26; ++i) {
        EXPECT_EQ(keys.number_of(Qt::Key_A + i), 'A' + i);
    }
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(keys.number_of(Qt::Key_0 + i), '0' + i);
        EXPECT_EQ(keys.number_of(Qt::Key_0 + i, Qt::KeypadModifier), 96 + i);
    }
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(keys.number_of(Qt::Key_F1 + i), 112 + i);
    }
}

TEST(EltextoKeys, UnlistedKeyHasNumber0) {
    Keys keys;
    EXPECT_EQ(keys.number_of(Qt::Key_MediaPlay), 0);
}

TEST(EltextoMouse, MoveWithoutButtonsIsForwarded) {
    Shown<eltexto> shown(100);
    int moves = 0;
    QObject::connect(&shown.control, &eltexto::MouseMove, &shown.control, [&] { ++moves; });
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&shown.window));
    QTest::mouseMove(shown.window.windowHandle(), {40, 30});
    QTest::mouseMove(shown.window.windowHandle(), {50, 30});
    EXPECT_GT(moves, 0);
}

} // namespace
} // namespace varnoth
