#include <cmath>
#include <utility>

#include <QApplication>
#include <QFontMetricsF>
#include <QIcon>
#include <QImage>
#include <QMessageBox>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include "core/base/RunTimeFailure.h"
#include "desktop/controls/on_screen.h"
#include "desktop/forms/EditorTest.h"
#include "desktop/forms/exit_picture/Form9.h"
#include "desktop/services/QtMessageBoxes.h"
#include "desktop/theme/theme.h"
#include "support/PictureFolder.h"

namespace varnoth::test {
namespace {

using ui_driver::click;

class WindowsTest : public EditorTest {};

QImage installed_icon(int size) {
    const QImage image(
        QString(VARNOTH_SOURCE_DIR "/packaging/icons/hicolor/%1x%1/apps/varnoth.png").arg(size));
    return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

TEST_F(WindowsTest, HaveNoSystemTitleBarButATitle) {
    EXPECT_TRUE(main().windowFlags().testFlag(Qt::FramelessWindowHint));
    click(main().elboton2);
    EXPECT_TRUE(coordinator_->form2()->windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_EQ(text(coordinator_->form2()->windowTitle()), "New Sprite");
}

TEST_F(WindowsTest, AllHaveTheProgramsIconInTaskBarSizes) {
    click(main().elboton2);
    for (const QWidget* window :
         {static_cast<QWidget*>(&main()), static_cast<QWidget*>(coordinator_->form2())}) {
        EXPECT_EQ(window->windowIcon().availableSizes().size(), 5);
        for (const int size : {16, 24, 32, 48, 64}) {
            const QImage drawn = window->windowIcon().pixmap(QSize(size, size)).toImage();
            EXPECT_EQ(drawn.size(), QSize(size, size));
            EXPECT_EQ(drawn, installed_icon(size)) << size;
        }
    }
}

TEST_F(WindowsTest, ShareOneIcon) {
    const qint64 icon = main().windowIcon().cacheKey();
    for (int opening = 0; opening < 3; ++opening) {
        click(main().elboton2);
        EXPECT_EQ(coordinator_->form2()->windowIcon().cacheKey(), icon);
        click(coordinator_->form2()->elboton1);
    }
}

TEST_F(WindowsTest, MainWindowStartsInTheCentreOfTheScreen) {
    EXPECT_EQ(main().geometry().center(), main().screen()->availableGeometry().center());
}

TEST_F(WindowsTest, DialogIsCentredAboveItsOwner) {
    main().move(40, 60);
    click(main().elboton2);
    Form2& dialog = *coordinator_->form2();
    EXPECT_EQ(dialog.windowHandle()->transientParent(), main().windowHandle());
    EXPECT_EQ(dialog.geometry().center(), main().geometry().center());
}

TEST_F(WindowsTest, WindowThatWouldOpenOffTheScreenIsMovedOntoIt) {
    const QRect screen(0, 0, 800, 600);
    EXPECT_EQ(place_on_screen({-30, 700}, {200, 100}, screen), QPoint(0, 500));
    EXPECT_EQ(place_on_screen({750, -5}, {200, 100}, screen), QPoint(600, 0));
    EXPECT_EQ(place_on_screen({10, 20}, {200, 100}, screen), QPoint(10, 20));
    EXPECT_EQ(place_on_screen({50, 50}, {1000, 700}, screen), QPoint(0, 0)); // the title stays on the screen
    main().move(-560, -470);
    click(main().elboton2);
    EXPECT_TRUE(main().screen()->availableGeometry().contains(coordinator_->form2()->geometry()));
}

TEST_F(WindowsTest, DisabledWindowLooksTheSame) {
    open_sprite(40);
    QApplication::focusWidget()->clearFocus(); // its cursor blinks
    const QImage before = main().grab().toImage();
    main().SetEnabled(false);
    ui_driver::settle();
    EXPECT_EQ(main().grab().toImage(), before);
}

TEST_F(WindowsTest, EveryControlIsFoundByName) {
    click(main().elboton2);
    for (const char* name : {"elpanel1", "eltexto1", "List1", "Label1", "Label2", "Picture1", "elboton7",
                             "ellabel10", "elframe1", "elframe2", "elframe3", "elframe4", "elframe5"}) {
        EXPECT_NE(main().findChild<QWidget*>(name), nullptr) << name;
    }
    for (const char* name : {"ellabel1(0)", "ellabel1(1)", "ellabel1(2)", "ellabel1(3)", "ellabel1(4)",
                             "elcombo1", "eltexto3", "elboton2"}) {
        EXPECT_NE(coordinator_->form2()->findChild<QWidget*>(name), nullptr) << name;
    }
    EXPECT_NE(Form4(main()).findChild<QWidget*>("Picture3"), nullptr); // the code does not look it up
}

/// The main window and every dialog, created as the coordinator does, with its longest texts.
class AllWindows {
  public:
    explicit AllWindows(Form1& main) : form1(main), form2(main), form3(main), form4(main), form7(main) {
        form4.elradio1[0].SetCaption("Set Sprite To 256x256");
        form4.elradio1[1].SetCaption("Resize Pictures To 256x256");
        form6.Label1.SetCaption("Extracting Frames...");
        form7.Label5.SetCaption("60 fps");
    }

    std::vector<QWidget*> all() { return {&form1, &form2, &form3, &form4, &form5, &form6, &form7}; }

    Form1& form1;
    Form2 form2;
    Form3 form3;
    Form4 form4;
    Form5 form5;
    Form6 form6;
    Form7 form7;
};

/// The right edge of a text's last visible pixel; the advance behind the last letter may be clipped.
double ink_end(const QFont& font, const QString& words) {
    return std::ceil(QFontMetricsF(theme::display_font(font)).tightBoundingRect(words).right());
}

/// The right edge of a control's caption and its maximum. The first is 0 for a control without a caption.
std::pair<double, double> extent_of_caption(const QWidget& widget) {
    const auto end = [](const SkinnedControl& control, const char* part) {
        const TextPart& text = control.part<TextPart>(part);
        return text.Caption().isEmpty() ? 0 : text.Left + ink_end(text.Font(), text.Caption());
    };
    if (const auto* button = qobject_cast<const elboton*>(&widget)) {
        return {end(*button, "label"), button->width() - 1};
    }
    if (const auto* radio = qobject_cast<const elradio*>(&widget)) {
        return {end(*radio, "Label1"), radio->width()};
    }
    if (const auto* check = qobject_cast<const elcheck*>(&widget)) {
        return {end(*check, "Label2"), check->width()};
    }
    if (const auto* label = qobject_cast<const ellabel*>(&widget)) {
        return {end(*label, "Label2"), label->width()};
    }
    return {0, 0};
}

TEST_F(WindowsTest, EveryCaptionFitsItsControl) {
    AllWindows windows(main());
    int captions = 0;
    for (const QWidget* window : windows.all()) {
        for (const QWidget* widget : window->findChildren<QWidget*>()) {
            const auto [end, most] = extent_of_caption(*widget);
            EXPECT_LE(end, most) << text(window->objectName() + " " + widget->objectName());
            captions += end > 0 ? 1 : 0;
        }
    }
    EXPECT_EQ(captions, 48);
    for (const elcombo* combo : {&windows.form2.elcombo1, &windows.form2.elcombo2}) {
        for (std::int16_t i = 0; i < combo->ListCount(); ++i) {
            const int arrow_left = combo->width() - 20;
            EXPECT_LE(4 + ink_end(combo->Font(), combo->GetList(i)), arrow_left) << i;
        }
    }
}

TEST_F(WindowsTest, ControlsAreInsideTheirWindowsAndDoNotOverlap) {
    AllWindows windows(main());
    for (const QWidget* window : windows.all()) {
        const QList<SkinnedControl*> controls = window->findChildren<SkinnedControl*>();
        for (const SkinnedControl* control : controls) {
            const QString name = window->objectName() + " " + control->objectName();
            EXPECT_TRUE(control->parentWidget()->rect().contains(control->geometry())) << text(name);
            for (const SkinnedControl* other : controls) {
                // The panel is behind everything, and two frames share a position because one of them is
                // always hidden.
                const bool apart = control != other && control->parentWidget() == other->parentWidget() &&
                                   control->objectName() != "elpanel1" && other->objectName() != "elpanel1" &&
                                   control->geometry() != other->geometry();
                if (apart) {
                    EXPECT_FALSE(control->geometry().intersects(other->geometry()))
                        << text(name + " and " + other->objectName());
                }
            }
        }
    }
}

// Dragging by the title.

TEST_F(WindowsTest, CornerFollowsThePointerLessPartOfTheGrab) {
    EXPECT_EQ(dragged_place({100, 200}, 0, 0), QPoint(100, 200));
    EXPECT_EQ(dragged_place({100, 200}, 30, 7), QPoint(98, 200));   // 1470 and 2993 units
    EXPECT_EQ(dragged_place({100, 200}, 8, 300), QPoint(99, 180));  // 99.47
    EXPECT_EQ(dragged_place({0, 0}, 22.5F, 37.5F), QPoint(-2, -2)); // halves round to even
}

TEST_F(WindowsTest, TitleMoveWithoutAPressMovesNothing) {
    main().move(50, 50);
    emit main().elpanel1.TitleMouseMove(1, 0, 5, 5);
    EXPECT_EQ(main().pos(), QPoint(50, 50));
}

// The release is lost if the form is disabled during the drag.
TEST_F(WindowsTest, TitleMoveWithoutAButtonEndsTheDrag) {
    main().move(50, 50);
    elpanel& panel = main().elpanel1;
    emit panel.TitleMouseDown(1, 0, 45, 3);
    QCursor::setPos(300, 200);
    emit panel.TitleMouseMove(0, 0, 5, 5);
    emit panel.TitleMouseMove(1, 0, 5, 5);
    EXPECT_EQ(main().pos(), QPoint(50, 50));
}

// As under X11, where the position that Qt stores for the window may differ from that of the widget.
TEST_F(WindowsTest, ActivationMovesTheWindowToItsWidget) {
    class IgnoreMoves : public QObject {
        bool eventFilter(QObject* /*watched*/, QEvent* event) override {
            return event->type() == QEvent::Move;
        }
    };

    main().move(50, 50);
    QCoreApplication::processEvents();
    QWindow& window = *main().windowHandle();
    IgnoreMoves filter;
    window.installEventFilter(&filter);
    window.setPosition(80, 80);
    QCoreApplication::processEvents();
    ASSERT_EQ(main().pos(), QPoint(50, 50));
    ASSERT_EQ(window.position(), QPoint(80, 80));
    QEvent activation(QEvent::WindowActivate);
    QCoreApplication::sendEvent(&main(), &activation);
    QCoreApplication::processEvents();
    EXPECT_EQ(window.position(), QPoint(50, 50));
}

TEST_F(WindowsTest, OnlyTheFiveWindowsWithAPanelCanBeMoved) {
    AllWindows windows(main());
    main().move(200, 150);
    const std::vector<std::pair<Form*, elpanel*>> movable{{&main(), &main().elpanel1},
                                                          {&windows.form2, &windows.form2.elpanel1},
                                                          {&windows.form3, &windows.form3.elpanel1},
                                                          {&windows.form4, &windows.form4.elpanel1},
                                                          {&windows.form7, &windows.form7.elpanel1}};
    for (const auto& [form, panel] : movable) {
        panel->TitleMouseDown(1, 0, 45, 3);
        QCursor::setPos(300, 200);
        panel->TitleMouseMove(1, 0, 0, 0);
        const QPoint dragged = dragged_place(QCursor::pos(), 45, 3);
        EXPECT_EQ(form->pos(), dragged) << text(form->objectName());
        panel->TitleMouseUp(1, 0, 0, 0);
        QCursor::setPos(10, 10);
        panel->TitleMouseMove(1, 0, 0, 0);
        EXPECT_EQ(form->pos(), dragged) << text(form->objectName());
        const bool closes = form == &main() || form == &windows.form7;
        EXPECT_EQ(panel->Cerrar(), closes) << text(form->objectName());
    }
    EXPECT_EQ(windows.form5.findChild<elpanel*>(), nullptr);
    EXPECT_EQ(windows.form6.findChild<elpanel*>(), nullptr);
}

// Failures and exits.

TEST_F(WindowsTest, FailureDuringAMessageBoxOfAnImportIsReported) {
    PictureFolder pictures(services_);
    pictures.add_plain_bmp("a.bmp", 4, 4);
    QtMessageBoxes boxes;
    const ServicesInstallation real_boxes({&boxes, nullptr, nullptr, nullptr});
    open_sprite(1);
    click(main().elboton4);
    Form4& dialog = *coordinator_->form4();
    ASSERT_TRUE(ui_driver::walk_to(dialog.Dir1, QString::fromStdString(pictures.path())));
    ui_driver::click_line(dialog.File1, 0);

    // An event handler fails while the message at the end of the import is open.
    bool told_in_box = false;
    QTimer event;
    event.setSingleShot(true);
    on_event(&event, &QTimer::timeout, &main(), [] { fail(Failure::Overflow); });
    QTimer::singleShot(0, [&] {
        auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        ASSERT_NE(coordinator_->form4(), nullptr); // the import is still running
        event.start(0);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !event.isActive(); }));
        told_in_box = failures_ == std::vector<std::string>{"Overflow"} && box->isVisible();
        box->accept();
    });
    click(dialog.elboton2);
    ui_driver::settle();
    EXPECT_TRUE(told_in_box);
    EXPECT_EQ(failures_, std::vector<std::string>{"Overflow"});
    EXPECT_EQ(lines(), (std::vector<std::string>{"Frame 0", "Frame 1"}));
}

TEST_F(WindowsTest, RefreshPaintsTheProgressWithoutAnEventLoop) {
    Form6 form;
    form.show();
    const QImage before = on_screen(form);
    form.Label2.SetCaption("frame.bmp");
    form.Progressbar1.SetMax(2);
    form.Progressbar1.SetValue(1);
    form.refresh();
    const QImage after =
        form.screen()->grabWindow(form.winId()).toImage().convertToFormat(QImage::Format_RGB32);
    EXPECT_NE(after, before);
    EXPECT_EQ(after, form.grab().toImage().convertToFormat(QImage::Format_RGB32));
}

TEST_F(WindowsTest, ExitPictureHas24BitsAndAStoppedTimer) {
    const Form9 form;
    EXPECT_EQ(form.Picture1.surface().bitmap().bits_per_pixel(), 24);
    EXPECT_EQ(form.Timer1.interval(), 5000);
    EXPECT_FALSE(form.Timer1.isActive());
}

TEST_F(WindowsTest, ClickOnTheExitPictureEndsTheProgram) {
    Form9 form;
    form.show_over(main());
    EXPECT_EQ(status_after([&] { click(form); }), 0);
}

TEST_F(WindowsTest, ExitPicturesTimerEndsTheProgram) {
    Form9 form;
    EXPECT_EQ(status_after([&] { form.Timer1.start(0); }), 0);
}

} // namespace
} // namespace varnoth::test
