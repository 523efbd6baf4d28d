// Text box, combo box and label.
#include <utility>
#include <vector>

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QWindow>

#include "desktop/controls/elcombo.h"
#include "desktop/controls/ellabel.h"
#include "desktop/controls/eltexto.h"
#include "desktop/controls/shown.h"
#include "desktop/mouse_events.h"
#include "desktop/theme/theme.h"
#include "support/expect_failure.h"

namespace varnoth::test {
namespace {

// The text box.

struct TextBox : Recorded<eltexto> {
    TextBox() : Recorded(100) {
        const auto key = [this](const char* name) {
            return [this, name](std::int16_t number, std::int16_t shift) {
                log.append(QString("%1 %2 %3").arg(QLatin1String(name)).arg(number).arg(shift));
            };
        };
        QObject::connect(&control, &eltexto::KeyDown, &control, key("KeyDown"));
        QObject::connect(&control, &eltexto::KeyUp, &control, key("KeyUp"));
        QObject::connect(&control, &eltexto::KeyPress, &control, [this](std::int16_t character) {
            log.append(QString("KeyPress %1 '%2'").arg(character).arg(control.Text()));
        });
        control.SetText("");
    }

    QLineEdit& field() { return control.Text1(); }

    /// The key number that KeyDown and KeyUp report; -1 if they differ.
    int key_number(int key, Qt::KeyboardModifiers modifiers = {}) {
        log.clear();
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, modifiers);
            QCoreApplication::sendEvent(&field(), &event);
        }
        const QString down = log.value(0).section(' ', 1, 1);
        return log.size() == 2 && down == log.value(1).section(' ', 1, 1) ? down.toInt() : -1;
    }
};

class Eltexto : public testing::Test, protected TextBox {};

TEST_F(Eltexto, FieldMovesUpOnePixelAtEachResize) {
    eltexto text("t", nullptr);
    EXPECT_EQ(text.Text1().pos(), QPoint(4, 3));
    text.resize(100, 20);
    EXPECT_EQ(text.Text1().pos(), QPoint(4, 2));
    EXPECT_EQ(text.Text1().width(), 92);
    text.resize(120, 20);
    EXPECT_EQ(text.Text1().pos(), QPoint(4, 1));
    EXPECT_EQ(text.Text1().width(), 112);
}

TEST_F(Eltexto, FieldDoesNotMoveWithoutANewSize) {
    eltexto text("t", nullptr);
    text.setGeometry(10, 10, 100, 20);
    text.setGeometry(30, 10, 100, 20);
    text.resize(100, 20);
    picture_of(text); // Qt delivers the delayed resize event
    EXPECT_EQ(text.Text1().pos(), QPoint(4, 2));
}

TEST_F(Eltexto, FieldHasMovedUpOnceWhenFirstShown) {
    EXPECT_EQ(field().y(), 2);
}

TEST_F(Eltexto, ColoursApplyToTheField) {
    control.SetText("MMMM");
    control.SetBackColor(0x102030);
    control.SetForeColor(0x00FFFF);
    const QImage picture = picture_of(control);
    EXPECT_EQ(colour_at(picture, 2, 10), 0x102030);
    EXPECT_EQ(colour_at(picture, 90, 10), 0x102030);
    EXPECT_GT(count_of(picture, 0x00FFFF), 0);
}

TEST_F(Eltexto, KeyEventsAreRaisedBeforeTheFieldHandlesTheKey) {
    QTest::sendKeyEvent(QTest::Press, &field(), Qt::Key_A, QString("A"), Qt::ShiftModifier);
    EXPECT_EQ(log, (QStringList{"KeyDown 16 1", "KeyDown 65 1", "KeyPress 65 ''"}));
    EXPECT_EQ(control.Text(), "A");
    QTest::keyRelease(&field(), Qt::Key_A);
    EXPECT_EQ(log.last(), "KeyUp 65 0");
}

TEST_F(Eltexto, KeysWithoutACharacterRaiseNoKeyPress) {
    QTest::keyClick(&field(), Qt::Key_Left, Qt::ControlModifier);
    QTest::keyClick(&field(), Qt::Key_Delete);
    EXPECT_EQ(log, (QStringList{"KeyDown 17 2", "KeyDown 37 2", "KeyUp 37 2", "KeyUp 17 0", "KeyDown 46 0",
                                "KeyUp 46 0"}));
}

TEST_F(Eltexto, ControlKeysWithACharacterRaiseKeyPress) {
    QTest::keyPress(&field(), Qt::Key_Return);
    QTest::keyPress(&field(), Qt::Key_Backspace);
    EXPECT_EQ(log, (QStringList{"KeyDown 13 0", "KeyPress 13 ''", "KeyDown 8 0", "KeyPress 8 ''"}));
}

TEST_F(Eltexto, LettersDigitsAndFunctionKeysAreNumberedInOrder) {
    for (int i = 0; i < 26; ++i) {
        EXPECT_EQ(key_number(Qt::Key_A + i), 'A' + i);
        EXPECT_EQ(key_number(Qt::Key_A + i, Qt::ShiftModifier), 'A' + i);
    }
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(key_number(Qt::Key_0 + i), '0' + i);
        EXPECT_EQ(key_number(Qt::Key_0 + i, Qt::KeypadModifier), 96 + i);
    }
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(key_number(Qt::Key_F1 + i), 112 + i);
    }
}

TEST_F(Eltexto, OtherKeysHaveTheirOwnNumbers) {
    const std::vector<std::pair<Qt::Key, int>> expected{
        {Qt::Key_Backspace, 8}, {Qt::Key_Tab, 9},       {Qt::Key_Backtab, 9},   {Qt::Key_Return, 13},
        {Qt::Key_Enter, 13},    {Qt::Key_Shift, 16},    {Qt::Key_Control, 17},  {Qt::Key_Alt, 18},
        {Qt::Key_Pause, 19},    {Qt::Key_CapsLock, 20}, {Qt::Key_Escape, 27},   {Qt::Key_Space, 32},
        {Qt::Key_PageUp, 33},   {Qt::Key_PageDown, 34}, {Qt::Key_End, 35},      {Qt::Key_Home, 36},
        {Qt::Key_Left, 37},     {Qt::Key_Up, 38},       {Qt::Key_Right, 39},    {Qt::Key_Down, 40},
        {Qt::Key_Insert, 45},   {Qt::Key_Delete, 46},   {Qt::Key_NumLock, 144}, {Qt::Key_ScrollLock, 145},
        {Qt::Key_MediaPlay, 0},
    };
    for (const auto& [key, number] : expected) {
        EXPECT_EQ(key_number(key), number) << key;
    }
}

TEST_F(Eltexto, ShiftDoesNotChangeTheNumberOfADigitOrSignKey) {
    struct SignKey {
        int plain;
        Qt::Key shifted;
        int number;
    };

    const std::vector<SignKey> keys{
        {Qt::Key_0, Qt::Key_ParenRight, '0'},
        {Qt::Key_1, Qt::Key_Exclam, '1'},
        {Qt::Key_2, Qt::Key_At, '2'},
        {Qt::Key_3, Qt::Key_NumberSign, '3'},
        {Qt::Key_4, Qt::Key_Dollar, '4'},
        {Qt::Key_5, Qt::Key_Percent, '5'},
        {Qt::Key_6, Qt::Key_AsciiCircum, '6'},
        {Qt::Key_7, Qt::Key_Ampersand, '7'},
        {Qt::Key_8, Qt::Key_Asterisk, '8'},
        {Qt::Key_9, Qt::Key_ParenLeft, '9'},
        {Qt::Key_Semicolon, Qt::Key_Colon, 186},
        {Qt::Key_Equal, Qt::Key_Plus, 187},
        {Qt::Key_Comma, Qt::Key_Less, 188},
        {Qt::Key_Minus, Qt::Key_Underscore, 189},
        {Qt::Key_Period, Qt::Key_Greater, 190},
        {Qt::Key_Slash, Qt::Key_Question, 191},
        {Qt::Key_QuoteLeft, Qt::Key_AsciiTilde, 192},
        {Qt::Key_BracketLeft, Qt::Key_BraceLeft, 219},
        {Qt::Key_Backslash, Qt::Key_Bar, 220},
        {Qt::Key_BracketRight, Qt::Key_BraceRight, 221},
        {Qt::Key_Apostrophe, Qt::Key_QuoteDbl, 222},
    };
    TextBox text;
    for (const SignKey& key : keys) {
        EXPECT_EQ(text.key_number(key.plain), key.number);
        EXPECT_EQ(text.key_number(key.shifted, Qt::ShiftModifier), key.number);
    }
}

// Without Num Lock, the keys of the keypad have the numbers of the cursor keys.
TEST_F(Eltexto, KeypadKeysHaveTheirOwnNumbers) {
    const std::vector<std::pair<Qt::Key, int>> expected{
        {Qt::Key_Asterisk, 106}, {Qt::Key_Plus, 107},  {Qt::Key_Minus, 109},
        {Qt::Key_Period, 110},   {Qt::Key_Slash, 111}, {Qt::Key_Enter, 13},
        {Qt::Key_Home, 36},      {Qt::Key_Clear, 12},  {Qt::Key_Delete, 46},
    };
    for (const auto& [key, number] : expected) {
        EXPECT_EQ(key_number(key, Qt::KeypadModifier), number) << key;
    }
}

TEST_F(Eltexto, CharacterBeyond16BitsBecomesAQuestionMark) {
    QKeyEvent event(QEvent::KeyPress, 0, Qt::NoModifier, QString(QChar(0x9999)));
    QCoreApplication::sendEvent(&field(), &event);
    EXPECT_EQ(log, (QStringList{"KeyDown 0 0", "KeyPress 63 ''"}));
    EXPECT_EQ(control.Text(), QString(QChar(0x9999)));
}

TEST_F(Eltexto, MouseEventsOfTheFieldAreForwarded) {
    move(field(), QPoint(5, 6));
    QTest::mouseClick(&field(), Qt::LeftButton, Qt::AltModifier, QPoint(7, 8));
    EXPECT_EQ(log, (QStringList{"MouseMove 0 0 5,6", "MouseDown 1 4 7,8", "MouseUp 1 4 7,8", "Click"}));
    log.clear();
    double_click(field(), QPoint(9, 9));
    EXPECT_EQ(log, (QStringList{"MouseDown 1 0 9,9", "MouseUp 1 0 9,9", "Click", "MouseDown 1 0 9,9",
                                "DblClick", "MouseUp 1 0 9,9"}));
}

TEST_F(Eltexto, ReleaseOutsideTheFieldIsNoClick) {
    for (const QPoint outside : {QPoint(7, 80), QPoint(field().width(), 8)}) {
        QTest::mousePress(&field(), Qt::LeftButton, {}, QPoint(7, 8));
        QTest::mouseRelease(&field(), Qt::LeftButton, {}, outside);
        EXPECT_EQ(log.last(), QString("MouseUp 1 0 %1,%2").arg(outside.x()).arg(outside.y()));
    }
}

TEST_F(Eltexto, FirstReleaseWithoutAPressIsNoClick) {
    QTest::mousePress(&field(), Qt::RightButton, {}, QPoint(7, 8));
    QTest::mouseRelease(&field(), Qt::LeftButton, {}, QPoint(7, 8));
    QTest::mouseRelease(&field(), Qt::RightButton, {}, QPoint(7, 8));
    EXPECT_FALSE(log.contains("Click"));
}

TEST_F(Eltexto, MoveWithoutButtonsIsForwarded) {
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    QTest::mouseMove(window.windowHandle(), {40, 30});
    QTest::mouseMove(window.windowHandle(), {50, 30});
    EXPECT_TRUE(log.value(0).startsWith("MouseMove"));
}

TEST_F(Eltexto, FourthAndFifthMouseButtonsRaiseNoEvents) {
    for (const Qt::MouseButton other : {Qt::BackButton, Qt::ForwardButton}) {
        fast_pair(&field(), other, {}, {7, 8});
    }
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(Eltexto, MouseEventsBesideTheFieldAreNotForwarded) {
    click(QPoint(1, 10));
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(Eltexto, TextStartsFourPixelsFromTheLeft) {
    const auto first_column = [](const QImage& image, Colour ground) {
        const int middle = image.height() / 2;
        int column = 1;
        while (column < image.width() && colour_at(image, column, middle) == ground) {
            ++column;
        }
        return column;
    };
    TextBox text;
    text->SetText("H");
    const Colour ground = text->BackColor();
    const QImage expected = painted({100, 20}, theme::to_qcolor(ground), [&](QPainter& painter) {
        painter.setFont(text.field().font());
        painter.setPen(theme::to_qcolor(text->ForeColor()));
        painter.drawText(QRect(4, 0, 90, 20), Qt::AlignLeft | Qt::AlignVCenter, "H");
    });
    EXPECT_EQ(first_column(picture_of(text.control), ground), first_column(expected, ground));
}

TEST_F(Eltexto, MaxCharsLimitsTheInput) {
    control.SetMaxChars(3);
    EXPECT_EQ(control.MaxChars(), 3);
    QTest::keyClicks(&field(), "12345");
    EXPECT_EQ(control.Text(), "123");
    control.SetMaxChars(0);
    QTest::keyClicks(&field(), "45");
    EXPECT_EQ(control.Text(), "12345");
    EXPECT_FAILURE(control.SetMaxChars(-1), InvalidPropertyValue);
}

// The combo box.

struct Combo : Recorded<elcombo> {
    explicit Combo(const QString& items = "one\ntwo\nthree") : Recorded(120) { control.SetList(items); }

    const QWidget* child(const char* name) { return control.findChild<QWidget*>(name); }
};

class Elcombo : public testing::Test, protected Combo {};

TEST_F(Elcombo, PartsAreAtTheirDesignedPositions) {
    EXPECT_EQ(child("Picture2")->geometry(), QRect(1, 1, 118, 18));
    EXPECT_EQ(child("Combo1")->pos(), QPoint(-1, -3));
    EXPECT_EQ(child("Combo1")->width(), 120);
    EXPECT_EQ(child("Combo1")->parentWidget(), child("Picture2"));
    // (1800 twips - 280) / 15 - 2, rounded to the nearest pixel
    EXPECT_EQ(child("Picture1")->geometry(), QRect(99, 0, 20, 18));
}

// With one twip per pixel nothing is rounded.
TEST_F(Elcombo, ArrowKeepsItsDistanceFromTheRight) {
    const OtherScreen fine(1);
    Shown<elcombo> combo(2000);
    EXPECT_EQ(combo->findChild<QWidget*>("Picture1")->x(), 2000 - 280 - 2);
}

TEST_F(Elcombo, NewComboHasItsListAtTheCornerOfTheClip) {
    elcombo combo("c", nullptr);
    EXPECT_EQ(combo.Combo1().pos(), QPoint(-1, -1));
}

TEST_F(Elcombo, BackColorFillsTheListAndTheArrowButton) {
    control.SetBackColor(0x1000A0);
    control.SetSymbolColor(0x1000A0); // hides the arrow
    EXPECT_EQ(count_of(picture_of(control), 0x1000A0, QRect(1, 1, 118, 18)), 118 * 18);
}

TEST_F(Elcombo, ArrowIsDrawnInSymbolColorOnTheBackground) {
    control.SetSymbolColor(0x0000FF);
    for (const int scale : {1, 2}) {
        const QImage picture = picture_of(control, scale);
        const QRect arrow(100 * scale, scale, 19 * scale, 18 * scale);
        EXPECT_GT(count_of(picture, 0x0000FF, arrow), 4 * scale * scale);
        EXPECT_GT(count_of(picture, theme::field_background, arrow), 200 * scale * scale);
        EXPECT_EQ(count_of(picture, 0x0000FF), count_of(picture, 0x0000FF, arrow));
    }
    EXPECT_EQ(text("Label2").Caption(), "6");
}

TEST_F(Elcombo, IsPaintedWhileAFailureIsShown) {
    const QImage before = picture_of(control);
    QImage during;
    const FatalErrorHandlerInstallation end(
        [&](std::string_view, std::string_view) { during = picture_of(control); });
    guard_event([] { fail(Failure::Overflow); });
    EXPECT_EQ(during, before);
}

TEST_F(Elcombo, ArrowPassesMouseEventsToTheList) {
    const QPoint arrow(110, 10);
    EXPECT_EQ(window.childAt(control.mapTo(&window, arrow)), child("Combo1"));
    QTest::mousePress(&control.Combo1(), Qt::LeftButton, {},
                      control.Combo1().mapFrom(&window, control.mapTo(&window, arrow)));
    EXPECT_TRUE(control.Combo1().view()->isVisible());
    control.Combo1().hidePopup();
}

TEST_F(Elcombo, HoverStateChangesTheArrowColour) {
    control.SetSymbolOverColor(0x00FF00);
    EXPECT_EQ(text("Label2").ForeColor, light);
    control.set_over_state();
    EXPECT_EQ(text("Label2").ForeColor, 0x00FF00);
    EXPECT_GT(count_of(picture_of(control), 0x00FF00), 4);
    control.set_normal_state();
    EXPECT_EQ(text("Label2").ForeColor, light);
}

TEST_F(Elcombo, ItemsAreAddedReplacedReadAndCleared) {
    Combo combo("");
    EXPECT_EQ(combo->ListCount(), 0);
    combo->AddItem("first");
    combo->AddItem("second");
    EXPECT_EQ(combo->ListCount(), 2);
    EXPECT_EQ(combo->GetListIndex(), -1);
    combo->SetList(1, "other");
    EXPECT_EQ(combo->GetList(0), "first");
    EXPECT_EQ(combo->GetList(1), "other");
    EXPECT_EQ(combo->List(), "first\nother");
    combo->Clear();
    EXPECT_EQ(combo->ListCount(), 0);
    EXPECT_EQ(combo->GetListIndex(), -1);
}

TEST_F(Elcombo, IndexOutOfRangeIsSubscriptOutOfRange) {
    for (const std::int16_t index : {std::int16_t{-1}, std::int16_t{3}}) {
        EXPECT_FAILURE(control.GetList(index), SubscriptOutOfRange);
        EXPECT_FAILURE(control.SetList(index, "x"), SubscriptOutOfRange);
    }
    EXPECT_EQ(control.ListCount(), 3);
}

TEST_F(Elcombo, SelectingAnItemRaisesClick) {
    control.SetListIndex(2);
    EXPECT_EQ(control.GetListIndex(), 2);
    EXPECT_EQ(log, QStringList{"Click"});
}

TEST_F(Elcombo, SelectingAnIndexOutOfRangeDoesNothing) {
    control.SetListIndex(1);
    log.clear();
    control.SetListIndex(-1);
    control.SetListIndex(3);
    EXPECT_EQ(control.GetListIndex(), 1);
    control.Clear();
    for (const std::int16_t line : {std::int16_t{-1}, std::int16_t{0}}) {
        control.SetListIndex(line);
        EXPECT_EQ(control.GetListIndex(), -1);
    }
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(Elcombo, RemovingAnIndexOutOfRangeDoesNothing) {
    control.RemoveItem(-1);
    control.RemoveItem(3);
    EXPECT_EQ(control.List(), "one\ntwo\nthree");
    control.RemoveItem(1);
    EXPECT_EQ(control.List(), "one\nthree");
    control.Clear();
    control.RemoveItem(0);
    EXPECT_EQ(control.ListCount(), 0);
}

TEST_F(Elcombo, RemovingTheSelectedItemSelectsNoOther) {
    control.SetListIndex(1);
    control.RemoveItem(1);
    EXPECT_EQ(control.GetListIndex(), -1);
    control.SetListIndex(1);
    control.RemoveItem(0);
    EXPECT_EQ(control.GetListIndex(), 0);
}

TEST_F(Elcombo, PropertiesWithoutEffectOnlyNotifyTheHost) {
    const ChangedProperties changed(control);
    const QImage before = picture_of(control);
    control.SetDropShadow(true);
    control.SetListBackColor(0x0000FF);
    control.SetListForeColor(0x00FF00);
    EXPECT_FALSE(control.DropShadow());
    EXPECT_EQ(picture_of(control), before);
    EXPECT_EQ(changed.names, (QStringList{"DropShadow", "ListBackColor", "ListForeColor"}));
}

// The label.

TEST(Ellabel, CaptionBeginsAtTheLeftEdge) {
    Recorded<ellabel> label(100);
    EXPECT_EQ(label.text("Label2").Left, 0);
}

TEST(Ellabel, OnlyTheCaptionRaisesMouseEvents) {
    Recorded<ellabel> label(100);
    const QPoint inside = label.text("Label2").place().topLeft().toPoint() + QPoint(3, 4);
    move(label.control, inside);
    double_click(label.control, inside);
    EXPECT_EQ(label.log, (QStringList{"MouseMove 0 0 3,4", "MouseDown 1 0 3,4", "MouseUp 1 0 3,4", "Click",
                                      "MouseDown 1 0 3,4", "DblClick", "MouseUp 1 0 3,4"}));
    label.log.clear();
    label.click(QPoint(97, 10));
    EXPECT_TRUE(label.log.isEmpty());
}

} // namespace
} // namespace varnoth::test
