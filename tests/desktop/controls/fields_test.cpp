// Text box, combo box and label.
#include <array>
#include <cmath>
#include <vector>

#include <QAbstractItemView>

#include "desktop/controls/elcombo.h"
#include "desktop/controls/ellabel.h"
#include "desktop/controls/eltexto.h"
#include "desktop/controls/shown.h"
#include "desktop/theme/theme.h"
#include "desktop/widgets/fast_pair.h"
#include "support/expect_failure.h"
#include "support/pictures.h"

namespace varnoth {
namespace {

using test::colour_at;
using test::count_of;
using test::picture_of;
using test::record;
using test::Shown;

constexpr Colour light = 0x95AAA0;
constexpr Colour dark = 0x222E28;

// Dark at the top and left, light at the right and bottom; for a control 20 pixels high.
void expect_sunken_edges(SkinnedControl& control) {
    const int width = control.width();
    for (const int scale : {1, 2}) {
        const QImage picture = picture_of(control, scale);
        EXPECT_EQ(count_of(picture, dark, QRect(0, 0, (width - 1) * scale, scale)),
                  (width - 1) * scale * scale);
        EXPECT_EQ(count_of(picture, dark, QRect(0, 0, scale, 20 * scale)), 20 * scale * scale);
        EXPECT_EQ(count_of(picture, light, QRect((width - 1) * scale, 0, scale, 20 * scale)),
                  20 * scale * scale);
        EXPECT_EQ(count_of(picture, light, QRect(scale, 19 * scale, (width - 1) * scale, scale)),
                  (width - 1) * scale * scale);
    }
    EXPECT_EQ(control.part<LinePart>("lineA(0)").BorderColor, dark);
    EXPECT_EQ(control.part<LinePart>("lineA(1)").BorderColor, dark);
    EXPECT_EQ(control.part<LinePart>("lineB(0)").BorderColor, light);
    EXPECT_EQ(control.part<LinePart>("lineB(1)").BorderColor, light);
    EXPECT_EQ(control.part<LinePart>("lineB(0)").X2, width - 1);
    EXPECT_EQ(control.part<LinePart>("lineB(1)").X2, width);
}

// The text box.

struct TextBox : Shown<eltexto> {
    QStringList log;

    explicit TextBox(int width = 100) : Shown(width) {
        control.SetColor3DDark(dark);
        record(control, log);
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
    }
};

TEST(Eltexto, FieldMovesUpOnePixelAtEachResize) {
    eltexto text("t", nullptr);
    EXPECT_EQ(text.Text1().pos(), QPoint(4, 3));
    text.resize(100, 20);
    EXPECT_EQ(text.Text1().pos(), QPoint(4, 2));
    EXPECT_EQ(text.Text1().width(), 92);
    text.resize(120, 20);
    EXPECT_EQ(text.Text1().pos(), QPoint(4, 1));
    EXPECT_EQ(text.Text1().width(), 112);
}

TEST(Eltexto, FieldDoesNotMoveWithoutANewSize) {
    eltexto text("t", nullptr);
    text.setGeometry(10, 10, 100, 20);
    text.setGeometry(30, 10, 100, 20);
    text.resize(100, 20);
    picture_of(text); // Qt delivers the delayed resize event
    EXPECT_EQ(text.Text1().pos(), QPoint(4, 2));
}

TEST(Eltexto, FieldHasMovedUpOnceWhenFirstShown) {
    TextBox text;
    EXPECT_EQ(text->Text1().y(), 2);
    EXPECT_EQ(text->Height(), 300);
}

TEST(Eltexto, HasSunkenEdges) {
    TextBox text;
    expect_sunken_edges(text.control);
    EXPECT_EQ(colour_at(text.control, 2, 10), theme::field_background);
    EXPECT_EQ(colour_at(text.control, 50, 18), theme::field_background);
}

TEST(Eltexto, ColoursApplyToTheField) {
    TextBox text;
    text->SetText("MMMM");
    text->SetBackColor(0x102030);
    text->SetForeColor(0x00FFFF);
    const QImage picture = picture_of(text.control);
    EXPECT_EQ(colour_at(picture, 2, 10), 0x102030);
    EXPECT_EQ(colour_at(picture, 90, 10), 0x102030);
    EXPECT_GT(count_of(picture, 0x00FFFF), 0);
    text.window.setEnabled(false);
    EXPECT_EQ(picture_of(text.control), picture);
}

TEST(Eltexto, KeyEventsAreRaisedBeforeTheFieldHandlesTheKey) {
    TextBox text;
    text->SetText("");
    QTest::sendKeyEvent(QTest::Press, &text->Text1(), Qt::Key_A, QString("A"), Qt::ShiftModifier);
    EXPECT_EQ(text.log, (QStringList{"KeyDown 16 1", "KeyDown 65 1", "KeyPress 65 ''"}));
    EXPECT_EQ(text->Text(), "A");
    QTest::keyRelease(&text->Text1(), Qt::Key_A);
    EXPECT_EQ(text.log.last(), "KeyUp 65 0");
}

TEST(Eltexto, KeysWithoutACharacterRaiseNoKeyPress) {
    TextBox text;
    text->SetText("");
    QTest::keyClick(&text->Text1(), Qt::Key_Left, Qt::ControlModifier);
    QTest::keyClick(&text->Text1(), Qt::Key_Delete);
    QTest::keyClick(&text->Text1(), Qt::Key_F5);
    EXPECT_EQ(text.log, (QStringList{"KeyDown 17 2", "KeyDown 37 2", "KeyUp 37 2", "KeyUp 17 0",
                                     "KeyDown 46 0", "KeyUp 46 0", "KeyDown 116 0", "KeyUp 116 0"}));
}

TEST(Eltexto, ControlKeysWithACharacterRaiseKeyPress) {
    TextBox text;
    text->SetText("");
    QTest::keyPress(&text->Text1(), Qt::Key_Return);
    QTest::keyPress(&text->Text1(), Qt::Key_Backspace);
    EXPECT_EQ(text.log, (QStringList{"KeyDown 13 0", "KeyPress 13 ''", "KeyDown 8 0", "KeyPress 8 ''"}));
}

TEST(Eltexto, KeypadDigitsHaveTheirOwnNumbers) {
    TextBox text;
    text->SetText("");
    QTest::keyPress(&text->Text1(), Qt::Key_7);
    QTest::keyPress(&text->Text1(), Qt::Key_7, Qt::KeypadModifier);
    EXPECT_EQ(text.log.value(0), "KeyDown 55 0");
    EXPECT_EQ(text.log.value(2), "KeyDown 103 0");
}

// The key number that KeyDown and KeyUp report; 0 if they differ.
int key_code(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    eltexto text("t", nullptr);
    std::vector<int> codes;
    const auto note = [&codes](std::int16_t code, std::int16_t) { codes.push_back(code); };
    QObject::connect(&text, &eltexto::KeyDown, &text, note);
    QObject::connect(&text, &eltexto::KeyUp, &text, note);
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, modifiers);
        QCoreApplication::sendEvent(&text.Text1(), &event);
    }
    return codes.size() == 2 && codes[0] == codes[1] ? codes[0] : 0;
}

TEST(Eltexto, DigitKeyKeepsItsNumberWithShift) {
    const std::array shifted{Qt::Key_ParenRight, Qt::Key_Exclam,   Qt::Key_At,          Qt::Key_NumberSign,
                             Qt::Key_Dollar,     Qt::Key_Percent,  Qt::Key_AsciiCircum, Qt::Key_Ampersand,
                             Qt::Key_Asterisk,   Qt::Key_ParenLeft};
    for (int digit = 0; digit <= 9; ++digit) {
        EXPECT_EQ(key_code(static_cast<Qt::Key>(Qt::Key_0 + digit)), '0' + digit);
        EXPECT_EQ(key_code(shifted.at(static_cast<std::size_t>(digit)), Qt::ShiftModifier), '0' + digit);
    }
}

TEST(Eltexto, LetterKeyHasTheNumberOfItsCapital) {
    for (int letter = 'A'; letter <= 'Z'; ++letter) {
        EXPECT_EQ(key_code(static_cast<Qt::Key>(letter)), letter);
        EXPECT_EQ(key_code(static_cast<Qt::Key>(letter), Qt::ShiftModifier), letter);
    }
}

TEST(Eltexto, PunctuationKeyKeepsItsNumberWithShift) {
    struct Punctuation {
        Qt::Key plain;
        Qt::Key shifted;
        int code;
    };

    for (const Punctuation& key :
         {Punctuation{Qt::Key_Semicolon, Qt::Key_Colon, 186}, Punctuation{Qt::Key_Equal, Qt::Key_Plus, 187},
          Punctuation{Qt::Key_Comma, Qt::Key_Less, 188}, Punctuation{Qt::Key_Minus, Qt::Key_Underscore, 189},
          Punctuation{Qt::Key_Period, Qt::Key_Greater, 190},
          Punctuation{Qt::Key_Slash, Qt::Key_Question, 191},
          Punctuation{Qt::Key_QuoteLeft, Qt::Key_AsciiTilde, 192},
          Punctuation{Qt::Key_BracketLeft, Qt::Key_BraceLeft, 219},
          Punctuation{Qt::Key_Backslash, Qt::Key_Bar, 220},
          Punctuation{Qt::Key_BracketRight, Qt::Key_BraceRight, 221},
          Punctuation{Qt::Key_Apostrophe, Qt::Key_QuoteDbl, 222}}) {
        EXPECT_EQ(key_code(key.plain), key.code);
        EXPECT_EQ(key_code(key.shifted, Qt::ShiftModifier), key.code);
    }
}

TEST(Eltexto, KeypadSignsHaveTheirOwnNumbers) {
    for (int digit = 0; digit <= 9; ++digit) {
        EXPECT_EQ(key_code(static_cast<Qt::Key>(Qt::Key_0 + digit), Qt::KeypadModifier), 96 + digit);
    }
    EXPECT_EQ(key_code(Qt::Key_Asterisk, Qt::KeypadModifier), 106);
    EXPECT_EQ(key_code(Qt::Key_Plus, Qt::KeypadModifier), 107);
    EXPECT_EQ(key_code(Qt::Key_Minus, Qt::KeypadModifier), 109);
    EXPECT_EQ(key_code(Qt::Key_Period, Qt::KeypadModifier), 110);
    EXPECT_EQ(key_code(Qt::Key_Slash, Qt::KeypadModifier), 111);
    EXPECT_EQ(key_code(Qt::Key_Enter, Qt::KeypadModifier), 13);
}

TEST(Eltexto, KeypadWithoutNumLockHasTheNumbersOfCursorKeys) {
    EXPECT_EQ(key_code(Qt::Key_Home, Qt::KeypadModifier), 36);
    EXPECT_EQ(key_code(Qt::Key_Clear, Qt::KeypadModifier), 12);
    EXPECT_EQ(key_code(Qt::Key_Delete, Qt::KeypadModifier), 46);
}

TEST(Eltexto, CharacterBeyond16BitsBecomesAQuestionMark) {
    TextBox text;
    text->SetText("");
    QKeyEvent event(QEvent::KeyPress, 0, Qt::NoModifier, QString(QChar(0x9999)));
    QCoreApplication::sendEvent(&text->Text1(), &event);
    EXPECT_EQ(text.log, (QStringList{"KeyDown 0 0", "KeyPress 63 ''"}));
    EXPECT_EQ(text->Text(), QString(QChar(0x9999)));
}

TEST(Eltexto, MouseEventsOfTheFieldAreForwarded) {
    TextBox text;
    QLineEdit& field = text->Text1();
    test::move(field, QPoint(5, 6));
    QTest::mouseClick(&field, Qt::LeftButton, Qt::AltModifier, QPoint(7, 8));
    EXPECT_EQ(text.log, (QStringList{"MouseMove 0 0 5,6", "MouseDown 1 4 7,8", "MouseUp 1 4 7,8", "Click"}));
    text.log.clear();
    test::double_click(field, QPoint(9, 9));
    EXPECT_EQ(text.log, (QStringList{"MouseDown 1 0 9,9", "MouseUp 1 0 9,9", "Click", "MouseDown 1 0 9,9",
                                     "DblClick", "MouseUp 1 0 9,9"}));
    text.log.clear();
    QTest::mousePress(&field, Qt::LeftButton, {}, QPoint(7, 8));
    QTest::mouseRelease(&field, Qt::LeftButton, {}, QPoint(7, 80));
    EXPECT_EQ(text.log.last(), "MouseUp 1 0 7,80");
    QTest::mousePress(&field, Qt::LeftButton, {}, QPoint(7, 8));
    QTest::mouseRelease(&field, Qt::LeftButton, {}, QPoint(field.width(), 8));
    EXPECT_EQ(text.log.last(), QString("MouseUp 1 0 %1,8").arg(field.width()));
}

TEST(Eltexto, FourthAndFifthMouseButtonsRaiseNoEvents) {
    TextBox text;
    for (const Qt::MouseButton other : {Qt::BackButton, Qt::ForwardButton}) {
        test::fast_pair(&text->Text1(), other, {}, {7, 8});
    }
    EXPECT_TRUE(text.log.isEmpty());
}

TEST(Eltexto, MouseEventsBesideTheFieldAreNotForwarded) {
    TextBox text;
    QTest::mouseClick(&text.control, Qt::LeftButton, {}, QPoint(1, 10));
    EXPECT_TRUE(text.log.isEmpty());
}

TEST(Eltexto, MaxCharsLimitsTheInput) {
    TextBox text;
    EXPECT_EQ(text->MaxChars(), 0);
    text->SetText("");
    text->SetMaxChars(3);
    QTest::keyClicks(&text->Text1(), "12345");
    EXPECT_EQ(text->Text(), "123");
    text->SetMaxChars(0);
    QTest::keyClicks(&text->Text1(), "45");
    EXPECT_EQ(text->Text(), "12345");
    EXPECT_FAILURE(text->SetMaxChars(-1), InvalidPropertyValue);
}

TEST(Eltexto, ObtainedBackgroundLeavesOutTheEdge) {
    TextBox text;
    test::TestSurface behind(200, 100, 32, 0, 0xFFFFFF);
    text->obtener_imagen_fondo(behind.hDC(), 0, 0, 255);
    const Bitmap& pixels = *text->get_the_hdc().bitmap();
    EXPECT_EQ(pixels.pixel(0, 0), theme::field_background);
    EXPECT_EQ(pixels.pixel(1, 1), 0xFFFFFF);
    EXPECT_EQ(pixels.pixel(98, 18), 0xFFFFFF);
    EXPECT_EQ(pixels.pixel(99, 18), theme::field_background);
}

// The combo box.

struct Combo : Shown<elcombo> {
    QStringList log;

    explicit Combo(const QString& items = "one\ntwo\nthree", int width = 120) : Shown(width) {
        control.SetColor3DDark(dark);
        control.SetList(items);
        record(control, log);
    }

    const QWidget* child(const char* name) { return control.findChild<QWidget*>(name); }
};

TEST(Elcombo, PartsAreAtTheirDesignedPositions) {
    Combo combo;
    EXPECT_EQ(combo->Height(), 300);
    EXPECT_EQ(combo.child("Picture2")->geometry(), QRect(1, 1, 118, 18));
    EXPECT_EQ(combo.child("Combo1")->pos(), QPoint(-1, -3));
    EXPECT_EQ(combo.child("Combo1")->width(), 120);
    EXPECT_EQ(combo.child("Combo1")->parentWidget(), combo.child("Picture2"));
    // (1800 twips - 280) / 15 - 2, rounded to the nearest pixel
    EXPECT_EQ(combo.child("Picture1")->geometry(), QRect(99, 0, 20, 18));
    combo->SetWidth(10);
    EXPECT_EQ(combo->Width(), 1425);
    EXPECT_EQ(combo->width(), 95);
}

TEST(Elcombo, NewComboHasItsListAtTheCornerOfTheClip) {
    elcombo combo("c", nullptr);
    EXPECT_EQ(combo.Combo1().pos(), QPoint(-1, -1));
}

TEST(Elcombo, HasSunkenEdges) {
    Combo combo;
    expect_sunken_edges(combo.control);
    combo->SetListIndex(0);
    expect_sunken_edges(combo.control);
}

TEST(Elcombo, ArrowIsDrawnInSymbolColorOnTheBackground) {
    Combo combo;
    combo->SetSymbolColor(0x0000FF);
    for (const int scale : {1, 2}) {
        const QImage picture = picture_of(combo.control, scale);
        const QRect arrow(100 * scale, scale, 19 * scale, 18 * scale);
        EXPECT_GT(count_of(picture, 0x0000FF, arrow), 4 * scale * scale);
        EXPECT_GT(count_of(picture, theme::field_background, arrow), 200 * scale * scale);
        EXPECT_EQ(count_of(picture, 0x0000FF), count_of(picture, 0x0000FF, arrow));
    }
    EXPECT_EQ(combo->part<TextPart>("Label2").Caption(), "6");
}

TEST(Elcombo, IsPaintedWhileAFailureIsShown) {
    Combo combo;
    const QImage before = picture_of(combo.control);
    QImage during;
    const FatalErrorHandlerInstallation end(
        [&](std::string_view, std::string_view) { during = picture_of(combo.control); });
    guard_event([] { fail(Failure::Overflow); });
    EXPECT_EQ(during, before);
}

TEST(Elcombo, ArrowPassesMouseEventsToTheList) {
    Combo combo;
    const QPoint arrow(110, 10);
    EXPECT_EQ(combo.window.childAt(combo->mapTo(&combo.window, arrow)), combo.child("Combo1"));
    QTest::mousePress(&combo->Combo1(), Qt::LeftButton, {},
                      combo->Combo1().mapFrom(&combo.window, combo->mapTo(&combo.window, arrow)));
    EXPECT_TRUE(combo->Combo1().view()->isVisible());
    combo->Combo1().hidePopup();
}

TEST(Elcombo, HoverStateChangesTheArrowColour) {
    Combo combo;
    combo->SetSymbolOverColor(0x00FF00);
    EXPECT_EQ(combo->part<TextPart>("Label2").ForeColor, light);
    combo->set_over_state();
    EXPECT_EQ(combo->part<TextPart>("Label2").ForeColor, 0x00FF00);
    EXPECT_GT(count_of(picture_of(combo.control), 0x00FF00), 4);
    combo->set_normal_state();
    EXPECT_EQ(combo->part<TextPart>("Label2").ForeColor, light);
}

TEST(Elcombo, ItemsAreAddedReplacedReadAndCleared) {
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

TEST(Elcombo, IndexOutOfRangeIsSubscriptOutOfRange) {
    Combo combo;
    EXPECT_FAILURE(combo->GetList(-1), SubscriptOutOfRange);
    EXPECT_FAILURE(combo->GetList(3), SubscriptOutOfRange);
    EXPECT_FAILURE(combo->SetList(-1, "x"), SubscriptOutOfRange);
    EXPECT_FAILURE(combo->SetList(3, "x"), SubscriptOutOfRange);
    EXPECT_EQ(combo->ListCount(), 3);
}

TEST(Elcombo, SelectingAnItemRaisesClick) {
    Combo combo;
    combo->SetListIndex(2);
    EXPECT_EQ(combo->GetListIndex(), 2);
    EXPECT_EQ(combo.log, QStringList{"Click"});
}

TEST(Elcombo, SelectingAnIndexOutOfRangeDoesNothing) {
    Combo combo;
    combo->SetListIndex(1);
    combo.log.clear();
    combo->SetListIndex(-1);
    combo->SetListIndex(3);
    EXPECT_EQ(combo->GetListIndex(), 1);
    combo->Clear();
    for (const std::int16_t line : {std::int16_t{-1}, std::int16_t{0}}) {
        combo->SetListIndex(line);
        EXPECT_EQ(combo->GetListIndex(), -1);
    }
    EXPECT_TRUE(combo.log.isEmpty());
}

TEST(Elcombo, RemovingAnIndexOutOfRangeDoesNothing) {
    Combo combo;
    combo->RemoveItem(-1);
    combo->RemoveItem(3);
    EXPECT_EQ(combo->List(), "one\ntwo\nthree");
    combo->RemoveItem(1);
    EXPECT_EQ(combo->List(), "one\nthree");
    combo->Clear();
    combo->RemoveItem(0);
    EXPECT_EQ(combo->ListCount(), 0);
}

TEST(Elcombo, RemovingTheSelectedItemSelectsNoOther) {
    Combo combo;
    combo->SetListIndex(1);
    combo->RemoveItem(1);
    EXPECT_EQ(combo->GetListIndex(), -1);
    combo->SetListIndex(1);
    combo->RemoveItem(0);
    EXPECT_EQ(combo->GetListIndex(), 0);
}

TEST(Elcombo, PropertiesWithoutEffectOnlyNotifyTheHost) {
    Combo combo;
    QStringList told;
    on_event(&combo.control, &elcombo::property_changed, &combo.control,
             [&](const QString& name) { told.append(name); });
    const QImage before = picture_of(combo.control);
    combo->SetDropShadow(true);
    combo->SetListBackColor(0x0000FF);
    combo->SetListForeColor(0x00FF00);
    EXPECT_FALSE(combo->DropShadow());
    EXPECT_EQ(picture_of(combo.control), before);
    EXPECT_EQ(told, (QStringList{"DropShadow", "ListBackColor", "ListForeColor"}));
}

TEST(Elcombo, ObtainedBackgroundCoversTheWholeControl) {
    Combo combo;
    test::TestSurface behind(200, 100, 32, 0, 0xFFFFFF);
    combo->obtener_imagen_fondo(behind.hDC(), 0, 0, 255);
    EXPECT_EQ(combo->get_the_hdc().bitmap()->pixel(0, 0), 0xFFFFFF);
    EXPECT_EQ(combo->get_the_hdc().bitmap()->pixel(119, 19), 0xFFFFFF);
}

// The label.

struct CaptionLabel : Shown<ellabel> {
    QStringList log;

    CaptionLabel() : Shown(100, 40) { record(control, log); }

    const TextPart& text(const char* name) { return control.part<TextPart>(name); }
};

TEST(Ellabel, CaptionIsCentredInTheFixedHeight) {
    CaptionLabel label;
    EXPECT_EQ(label->Height(), 300);
    EXPECT_EQ(label.text("Label2").Left, 0);
    EXPECT_EQ(label.text("shadow1").Left, 1);
    EXPECT_EQ(label.text("Label2").Top, std::trunc(10 - label.text("Label2").Height / 2));
    EXPECT_EQ(label.text("shadow1").Top, label.text("Label2").Top + 1);
    label->SetWidth(15);
    EXPECT_EQ(label->Width(), 15);
}

TEST(Ellabel, OnlyTheCaptionRaisesMouseEvents) {
    CaptionLabel label;
    const QPoint inside = label.text("Label2").place().topLeft().toPoint() + QPoint(3, 4);
    test::move(label.control, inside);
    test::double_click(label.control, inside);
    EXPECT_EQ(label.log, (QStringList{"MouseMove 0 0 3,4", "MouseDown 1 0 3,4", "MouseUp 1 0 3,4", "Click",
                                      "MouseDown 1 0 3,4", "DblClick", "MouseUp 1 0 3,4"}));
    label.log.clear();
    QTest::mouseClick(&label.control, Qt::LeftButton, {}, QPoint(97, 10));
    EXPECT_TRUE(label.log.isEmpty());
}

TEST(Ellabel, NewFontCentresTheCaption) {
    CaptionLabel label;
    label->SetFontSize(6);
    EXPECT_EQ(label.text("Label2").Top, std::trunc(10 - label.text("Label2").Height / 2));
    EXPECT_EQ(label.text("shadow1").Top, label.text("Label2").Top + 1);
    EXPECT_EQ(label.text("shadow1").Font(), label->Font());
}

TEST(Ellabel, ShadowHasTheSameCaption) {
    CaptionLabel label;
    label->SetCaption("Name");
    label->SetFontSize(24); // strokes wider than a pixel in any font
    const QImage without_shadow = picture_of(label.control);
    label->SetDropShadow(true);
    EXPECT_EQ(label.text("shadow1").Caption(), "Name");
    EXPECT_TRUE(label.text("shadow1").Visible);
    EXPECT_NE(picture_of(label.control), without_shadow);
    label->SetForeColor(0x0000FF);
    EXPECT_GT(count_of(picture_of(label.control), 0x0000FF), 0);
}

TEST(Ellabel, ObtainedBackgroundCoversTheWholeControl) {
    CaptionLabel label;
    test::TestSurface behind(200, 100, 32, 0, 0xFFFFFF);
    label->obtener_imagen_fondo(behind.hDC(), 0, 0, 255);
    EXPECT_EQ(label->get_the_hdc().bitmap()->pixel(0, 0), 0xFFFFFF);
    EXPECT_EQ(label->get_the_hdc().bitmap()->pixel(99, 19), 0xFFFFFF);
}

} // namespace
} // namespace varnoth
