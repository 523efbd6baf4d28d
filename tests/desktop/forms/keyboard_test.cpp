// The keys of every window: each clicks its control under the same conditions as the mouse, every control has
// a key, and docs/access.md lists them all.
#include <algorithm>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QTest>
#include <QWindow>

#include "desktop/forms/EditorTest.h"
#include "support/PictureFolder.h"

namespace varnoth::test {
namespace {

constexpr Colour red = 0x0000FA;
constexpr Colour green = 0x00F000;
constexpr Colour blue = 0xC80000;

void press(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(window.windowHandle(), key, modifiers);
}

std::string name_of(QWidget& control) {
    if (qobject_cast<elpanel*>(&control) != nullptr) {
        return "Close";
    }
    const QString given = control.accessibleName();
    return (given.isEmpty() ? QAccessible::queryAccessibleInterface(&control)->text(QAccessible::Name)
                            : given)
        .toStdString();
}

std::string name_of(const FormKey& key) {
    return QKeySequence(key.combination).toString(QKeySequence::PortableText).toStdString();
}

/// Creates every window separately, with nothing connected to its signals.
class KeyboardTest : public EditorTest {
  protected:
    struct Window {
        std::string name;
        std::function<std::unique_ptr<Form>()> make;
    };

    const std::vector<Window>& windows() { return windows_; }

    using Visit = std::function<void(Form& form, const FormKey& key, const std::string& what)>;

    /// Visits each key of each window, on a new window in a state in which the key has an effect.
    void with_each_key(const Visit& visit) {
        for (const Window& window : windows_) {
            const std::size_t count = window.make()->keys().size();
            ASSERT_GT(count, 0U) << window.name;
            for (std::size_t i = 0; i < count; ++i) {
                const std::unique_ptr<Form> form = window.make();
                form->show_over(main());
                ui_driver::settle();
                const FormKey& key = form->keys()[i];
                make_clickable(*key.control);
                make_true(*form, key);
                visit(*form, key, window.name + ", " + name_of(key));
            }
        }
    }

    static void make_clickable(QWidget& control) {
        for (QWidget* widget = &control; widget != nullptr; widget = widget->parentWidget()) {
            widget->setEnabled(true);
            widget->show();
        }
    }

    /// Makes a key's condition true.
    static void make_true(Form& form, const FormKey& key) {
        if (!key.when) {
            if (QWidget* const focused = form.focusWidget()) {
                focused->clearFocus(); // it might accept the key
            }
            return;
        }
        if (auto* const main_window = qobject_cast<Form1*>(&form)) {
            main_window->List1.SetEnabled(true);
            main_window->List1.setFocus();
        } else if (auto* const add_frames = qobject_cast<Form4*>(&form)) {
            add_frames->enable_picker();
            add_frames->elboton1.perform_click();
        } else if (auto* const preview = qobject_cast<Form7*>(&form); preview != nullptr && !key.when()) {
            preview->Label2.perform_click();
        }
        EXPECT_TRUE(key.when()) << name_of(key);
    }

    /// Counts the clicks of a control.
    class Clicks {
      public:
        explicit Clicks(QWidget& control) {
            const auto count = [this] { ++count_; };
            if (auto* const button = qobject_cast<elboton*>(&control)) {
                QObject::connect(button, &elboton::Click, &context_, count);
            } else if (auto* const mark = qobject_cast<CheckableControl*>(&control)) {
                QObject::connect(mark, &CheckableControl::Click, &context_, count);
            } else if (auto* const label = qobject_cast<Label*>(&control)) {
                QObject::connect(label, &Label::Click, &context_, count);
            } else if (auto* const panel = qobject_cast<elpanel*>(&control)) {
                QObject::connect(panel, &elpanel::CloseClick, &context_, count);
            } else if (auto* const picture = qobject_cast<PictureBox*>(&control)) {
                QObject::connect(picture, &PictureBox::DblClick, &context_, count);
                QObject::connect(picture, &PictureBox::MouseDown, &context_, count);
                QObject::connect(picture, &PictureBox::MouseMove, &context_, count);
            } else {
                list_ = qobject_cast<DropDownList*>(&control);
                EXPECT_NE(list_, nullptr);
            }
        }

        int count() const { return list_ == nullptr ? count_ : list_->view()->isVisible() ? 1 : 0; }

      private:
        QObject context_;
        const DropDownList* list_ = nullptr;
        int count_ = 0;
    };

    static void press_key(Form& form, const FormKey& key) {
        press(form, key.combination.key(), key.combination.keyboardModifiers());
    }

    const std::vector<Window> windows_{
        {"Main window", [] { return std::make_unique<Form1>(); }},
        {"New Sprite", [this] { return std::make_unique<Form2>(main()); }},
        {"Extract Frame/s", [this] { return std::make_unique<Form3>(main()); }},
        {"Add Frame/s", [this] { return std::make_unique<Form4>(main()); }},
        {"Select Extracting Folder", [] { return std::make_unique<Form5>(); }},
        {"Progress", [] { return std::make_unique<Form6>(); }},
        {"Animation Preview", [this] { return std::make_unique<Form7>(main()); }},
    };
};

// Every key.

TEST_F(KeyboardTest, EveryKeyClicksItsControlOnce) {
    with_each_key([&](Form& form, const FormKey& key, const std::string& what) {
        const Clicks clicks(*key.control);
        press_key(form, key);
        EXPECT_EQ(clicks.count(), 1) << what;
    });
}

TEST_F(KeyboardTest, NoKeyClicksADisabledOrHiddenControl) {
    with_each_key([&](Form& form, const FormKey& key, const std::string& what) {
        const Clicks clicks(*key.control);
        key.control->setEnabled(false);
        press_key(form, key);
        EXPECT_EQ(clicks.count(), 0) << what << ", disabled";
        key.control->setEnabled(true);
        key.control->hide();
        press_key(form, key);
        EXPECT_EQ(clicks.count(), 0) << what << ", hidden";
    });
}

TEST_F(KeyboardTest, NoKeyWorksOnADisabledFormOrBehindABox) {
    with_each_key([&](Form& form, const FormKey& key, const std::string& what) {
        const Clicks clicks(*key.control);
        {
            QDialog box;
            box.setModal(true);
            box.show();
            press_key(form, key);
            EXPECT_EQ(clicks.count(), 0) << what << ", behind a box";
        }
        form.SetEnabled(false);
        press_key(form, key);
        QTest::sendKeyEvent(QTest::Press, &form, key.combination.key(), QString(),
                            key.combination.keyboardModifiers());
        EXPECT_EQ(clicks.count(), 0) << what << ", on a disabled form";
    });
}

TEST_F(KeyboardTest, OnlyThePickersArrowsRepeatWhileHeld) {
    with_each_key([&](Form& form, const FormKey& key, const std::string& what) {
        const Clicks clicks(*key.control);
        QKeyEvent repeated(QEvent::KeyPress, key.combination.key(), key.combination.keyboardModifiers(),
                           QString(), true);
        QApplication::sendEvent(&form, &repeated);
        const bool is_arrow_of_picker = name_of(*key.control) == "Preview" && name_of(key) != "Return";
        EXPECT_EQ(clicks.count(), is_arrow_of_picker ? 1 : 0) << what;
    });
}

TEST_F(KeyboardTest, EveryClickableControlHasAKey) {
    for (const Window& window : windows()) {
        const std::unique_ptr<Form> form = window.make();
        std::set<const QWidget*> with_key;
        for (const FormKey& key : form->keys()) {
            with_key.insert(key.control);
        }
        for (QWidget* control : form->findChildren<QWidget*>()) {
            const auto* const label = qobject_cast<Label*>(control);
            const auto* const panel = qobject_cast<elpanel*>(control);
            const bool is_clicked = qobject_cast<elboton*>(control) != nullptr ||
                                    qobject_cast<CheckableControl*>(control) != nullptr ||
                                    qobject_cast<DropDownList*>(control) != nullptr ||
                                    (label != nullptr && label->kind() == Label::Kind::Symbol) ||
                                    (panel != nullptr && panel->Cerrar());
            EXPECT_EQ(is_clicked, is_clicked && with_key.contains(control))
                << window.name << ": " << name_of(*control);
        }
    }
}

TEST_F(KeyboardTest, NoWindowUsesAKeyTwice) {
    for (const Window& window : windows()) {
        const std::unique_ptr<Form> form = window.make();
        std::set<std::string> said;
        for (const FormKey& key : form->keys()) {
            if (!key.when) {
                EXPECT_TRUE(said.insert(name_of(key)).second) << window.name << ": " << name_of(key);
            }
        }
    }
}

/// The cells of each row of the table under a heading of a document, without the table's header.
std::vector<std::vector<std::string>> table_under(const std::string& document, const std::string& heading) {
    std::ifstream file(VARNOTH_SOURCE_DIR "/docs/" + document);
    std::vector<std::vector<std::string>> rows;
    bool inside = false;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("#")) {
            inside = line == heading;
        } else if (inside && line.starts_with("| ")) {
            std::vector<std::string> cells;
            std::istringstream text(line.substr(2));
            for (std::string cell; std::getline(text, cell, '|');) {
                cell.erase(cell.find_last_not_of(' ') + 1);
                cell.erase(0, cell.find_first_not_of(' '));
                cells.push_back(cell);
            }
            rows.push_back(cells);
        }
    }
    if (!rows.empty()) {
        rows.erase(rows.begin());
    }
    return rows;
}

TEST_F(KeyboardTest, AccessDocumentListsExactlyTheKeys) {
    std::multiset<std::string> actual;
    for (const Window& window : windows()) {
        const std::unique_ptr<Form> form = window.make();
        for (const FormKey& key : form->keys()) {
            actual.insert(window.name + ": " + name_of(key) + " = " + name_of(*key.control) +
                          (key.when ? ", at times" : ""));
        }
    }
    std::multiset<std::string> listed;
    for (const std::vector<std::string>& row : table_under("access.md", "## Keys")) {
        ASSERT_EQ(row.size(), 4U) << row.front();
        std::istringstream keys(row[1]);
        for (std::string key; std::getline(keys, key, ',');) {
            key.erase(0, key.find_first_not_of(' '));
            listed.insert(row[0] + ": " + key + " = " + row[2] + (row[3].empty() ? "" : ", at times"));
        }
    }
    EXPECT_EQ(listed, actual);
}

TEST_F(KeyboardTest, GuideListsExactlyTheKeysOfEachWindow) {
    const std::regex named("(Ctrl\\+|Alt\\+|Shift\\+)?(Return|Esc|Space|Left|Right|Up|Down|[A-Z])\\b");
    std::map<std::string, std::set<std::string>> listed;
    for (const std::vector<std::string>& row : table_under("guide.md", "### Keys")) {
        ASSERT_EQ(row.size(), 2U) << row.front();
        for (auto key = std::sregex_iterator(row[1].begin(), row[1].end(), named);
             key != std::sregex_iterator(); ++key) {
            listed[row[0]].insert(key->str());
        }
    }
    std::map<std::string, std::set<std::string>> actual;
    for (const Window& window : windows()) {
        const std::unique_ptr<Form> form = window.make();
        for (const FormKey& key : form->keys()) {
            actual[window.name].insert(name_of(key));
        }
    }
    EXPECT_EQ(listed, actual);
}

TEST_F(KeyboardTest, KeyOfTheCloseBoxIsReported) {
    QAccessibleInterface& close_box = *QAccessible::queryAccessibleInterface(&main().elpanel1)->child(0);
    EXPECT_EQ(text(close_box.text(QAccessible::Accelerator)), "Ctrl+Q");
    EXPECT_EQ(close_box.actionInterface()->keyBindingsForAction(QAccessibleActionInterface::pressAction()),
              QStringList{"Ctrl+Q"});
}

// The main window.

TEST_F(KeyboardTest, MainWindowKeysAreIgnoredBehindADialog) {
    open_sprite(2);
    press(main(), Qt::Key_N, Qt::ControlModifier);
    ASSERT_NE(coordinator_->form2(), nullptr);
    press(main(), Qt::Key_I, Qt::ControlModifier);
    EXPECT_EQ(coordinator_->form4(), nullptr);
    press(*coordinator_->form2(), Qt::Key_Escape);
    ui_driver::settle();
    EXPECT_EQ(coordinator_->form2(), nullptr);
    press(main(), Qt::Key_I, Qt::ControlModifier);
    EXPECT_NE(coordinator_->form4(), nullptr);
}

TEST_F(KeyboardTest, LettersInThePathBoxAreTyped) {
    open_sprite(1);
    main().eltexto1.SetText("");
    main().eltexto1.Text1().setFocus();
    for (const char letter : std::string("nosiecr q")) {
        QTest::keyClick(main().windowHandle(), letter);
    }
    EXPECT_EQ(text(main().eltexto1.Text()), "nosiecr q");
}

TEST_F(KeyboardTest, KeyInThePathBoxStillRaisesKeyDown) {
    open_sprite(1);
    std::vector<int> keys;
    QObject::connect(&main().eltexto1, &eltexto::KeyDown, [&](std::int16_t key) { keys.push_back(key); });
    main().eltexto1.Text1().setFocus();
    press(main(), Qt::Key_Return);
    press(main(), Qt::Key_Escape);
    EXPECT_EQ(keys, (std::vector<int>{13, 27}));
    EXPECT_EQ(coordinator_->form7(), nullptr);
}

TEST_F(KeyboardTest, ArrowsMoveTheLineAndWithAltTheFrame) {
    open_sprite(3);
    main().List1.setFocus();
    press(main(), Qt::Key_Down);
    EXPECT_EQ(shown(), colour_of_frame(1));
    EXPECT_EQ(hlspr::document().FrameOrder, (std::vector<std::int16_t>{0, 1, 2}));
    press(main(), Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(hlspr::document().FrameOrder, (std::vector<std::int16_t>{0, 2, 1}));
    EXPECT_EQ(main().List1.ListIndex(), 2);
    press(main(), Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(hlspr::document().FrameOrder, (std::vector<std::int16_t>{0, 1, 2}));
    EXPECT_EQ(main().List1.ListIndex(), 1);
}

// The dialogs.

TEST_F(KeyboardTest, ReturnInEveryFieldOfNewSpriteIsOk) {
    for (int tabs = 0; tabs < 5; ++tabs) {
        press(main(), Qt::Key_N, Qt::ControlModifier);
        ASSERT_NE(coordinator_->form2(), nullptr);
        ui_driver::settle();
        for (int i = 0; i < tabs; ++i) {
            press(*coordinator_->form2(), Qt::Key_Tab);
        }
        press(*coordinator_->form2(), Qt::Key_Return);
        ui_driver::settle();
        EXPECT_EQ(coordinator_->form2(), nullptr) << tabs;
        EXPECT_EQ(enabled_buttons(), new_without_frames);
    }
}

TEST_F(KeyboardTest, OpenDropDownListHandlesReturnAndEscape) {
    press(main(), Qt::Key_N, Qt::ControlModifier);
    Form2& dialog = *coordinator_->form2();
    ui_driver::settle();
    for (const auto& [key, chosen] : {std::pair{Qt::Key_Return, 3}, std::pair{Qt::Key_Escape, 3}}) {
        press(dialog, Qt::Key_T, Qt::AltModifier);
        QWidget* const list = QApplication::activePopupWidget();
        ASSERT_NE(list, nullptr);
        press(*list, Qt::Key_Down);
        press(*list, key);
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
        EXPECT_EQ(dialog.elcombo1.GetListIndex(), chosen);
        EXPECT_EQ(QApplication::focusWidget(), &dialog.elcombo1.Combo1());
        EXPECT_EQ(coordinator_->form2(), &dialog);
    }
}

TEST_F(KeyboardTest, FolderListHandlesReturnButNotCtrlReturn) {
    open_sprite(1);
    press(main(), Qt::Key_E, Qt::ControlModifier);
    press(*coordinator_->form3(), Qt::Key_D, Qt::AltModifier);
    ASSERT_NE(coordinator_->form5(), nullptr);
    Form5& dialog = *coordinator_->form5();
    ui_driver::settle();
    dialog.Dir1.SetPath(folder_.path());
    dialog.Dir1.setFocus();
    press(dialog, Qt::Key_Home);
    press(dialog, Qt::Key_Return);
    ASSERT_EQ(coordinator_->form5(), &dialog);
    EXPECT_EQ(dialog.Dir1.Path(), "/");
    press(dialog, Qt::Key_Return, Qt::ControlModifier);
    ui_driver::settle();
    EXPECT_EQ(coordinator_->form5(), nullptr);
    EXPECT_EQ(text(coordinator_->form3()->eltexto1.Text()), "/");
}

// Import.

class ImportKeysTest : public EditorTest {
  protected:
    Form4& dialog() { return *coordinator_->form4(); }

    /// Creates a sprite in a mode with a transparent colour and opens Import at the folder of the pictures.
    void open_dialog() {
        press(main(), Qt::Key_N, Qt::ControlModifier);
        ui_driver::choose(coordinator_->form2()->elcombo2.Combo1(), 3);
        press(*coordinator_->form2(), Qt::Key_Return);
        press(main(), Qt::Key_I, Qt::ControlModifier);
        ui_driver::settle();
        dialog().Dir1.SetPath(pictures_.path());
    }

    void select_first_file() {
        dialog().File1.setFocus();
        press(dialog(), Qt::Key_Home);
        press(dialog(), Qt::Key_Space);
    }

    /// Shows the first file and arms the picker.
    void arm_picker() {
        select_first_file();
        press(dialog(), Qt::Key_P, Qt::AltModifier);
    }

    /// Adds a picture of one row, opens Import and arms the picker on it.
    void arm_picker_on_row(const std::vector<Colour>& colours) {
        pictures_.add_bmp("a.bmp", static_cast<int>(colours.size()), 1, colours);
        open_dialog();
        arm_picker();
    }

    Colour transparent() { return dialog().Picture2.surface().BackColor(); }

    PictureFolder pictures_{services_};
};

TEST_F(ImportKeysTest, EscapeDuringTheImportAbortsIt) {
    for (const char* name : {"a.bmp", "b.bmp", "c.bmp"}) {
        pictures_.add_plain_bmp(name, 32, 32, red);
    }
    open_dialog();
    dialog().File1.setFocus();
    press(dialog(), Qt::Key_A, Qt::ControlModifier);
    bool pressed = false;
    bool disabled = false;
    services_.on_yield = [&] {
        Form6* const progress = coordinator_->form6();
        if (progress != nullptr && text(progress->Label2.Caption()) == "Frame 1" && !pressed) {
            pressed = true;
            press(*progress, Qt::Key_Escape);
            disabled = !progress->elboton1.Enabled();
        }
    };
    press(dialog(), Qt::Key_Return);
    EXPECT_TRUE(disabled);
    EXPECT_EQ(hlspr::document().SpriteHeader.FrameCount, 2);
}

TEST_F(ImportKeysTest, ArmedPickerMovesByArrowsAndPicksByReturn) {
    pictures_.add_bmp("a.bmp", 3, 2, {red, red, red, red, green, blue});
    open_dialog();
    arm_picker();
    press(dialog(), Qt::Key_Down);
    EXPECT_EQ(transparent(), red);
    press(dialog(), Qt::Key_Right);
    EXPECT_EQ(transparent(), green);
    press(dialog(), Qt::Key_Right);
    EXPECT_EQ(transparent(), blue);
    press(dialog(), Qt::Key_Left);
    EXPECT_EQ(transparent(), green);
    EXPECT_FALSE(dialog().TransparentPicked);
    press(dialog(), Qt::Key_Return);
    EXPECT_TRUE(dialog().TransparentPicked);
    EXPECT_EQ(transparent(), green);
    EXPECT_NE(coordinator_->form4(), nullptr);
    EXPECT_EQ(dialog().elboton1.ForeColor(), 0xD3DED8);
}

TEST_F(ImportKeysTest, IdlePickerLeavesTheArrowsToTheList) {
    pictures_.add_plain_bmp("a.bmp", 4, 4, red);
    pictures_.add_plain_bmp("b.bmp", 4, 4, green);
    open_dialog();
    select_first_file();
    press(dialog(), Qt::Key_Down);
    EXPECT_EQ(dialog().File1.ListIndex(), 1);
    press(dialog(), Qt::Key_P, Qt::AltModifier);
    press(dialog(), Qt::Key_Up);
    EXPECT_EQ(dialog().File1.ListIndex(), 1);
    press(dialog(), Qt::Key_P, Qt::AltModifier);
    press(dialog(), Qt::Key_Up);
    EXPECT_EQ(dialog().File1.ListIndex(), 0);
}

TEST_F(ImportKeysTest, PickerMovesBy10WithShiftAndStaysInThePicture) {
    std::vector<Colour> colours(12 * 12, red);
    colours[10 * 12 + 10] = green;
    colours[11 * 12 + 11] = blue;
    pictures_.add_bmp("a.bmp", 12, 12, colours);
    open_dialog();
    arm_picker();
    press(dialog(), Qt::Key_Right, Qt::ShiftModifier);
    press(dialog(), Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(transparent(), green);
    press(dialog(), Qt::Key_Right, Qt::ShiftModifier);
    press(dialog(), Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(transparent(), blue);
    press(dialog(), Qt::Key_Left, Qt::ShiftModifier);
    press(dialog(), Qt::Key_Up, Qt::ShiftModifier);
    press(dialog(), Qt::Key_Right, Qt::ShiftModifier);
    press(dialog(), Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(transparent(), blue);
}

TEST_F(ImportKeysTest, PickerStaysInTheVisiblePartOfALargePicture) {
    std::vector<Colour> colours(300, red);
    colours[255] = green;
    colours[299] = blue;
    arm_picker_on_row(colours);
    for (int i = 0; i < 30; ++i) {
        press(dialog(), Qt::Key_Right, Qt::ShiftModifier);
    }
    EXPECT_EQ(transparent(), green);
}

TEST_F(ImportKeysTest, PickerStaysOnAPictureOfOnePixel) {
    arm_picker_on_row({red});
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Down}) {
        press(dialog(), key);
        EXPECT_EQ(QCursor::pos(), dialog().Picture1.mapToGlobal(QPoint(0, 0)));
    }
}

TEST_F(ImportKeysTest, PickerContinuesFromThePointer) {
    arm_picker_on_row({red, green, blue});
    ui_driver::point_at(dialog().Picture1, {1, 0});
    EXPECT_EQ(transparent(), green);
    press(dialog(), Qt::Key_Right);
    EXPECT_EQ(transparent(), blue);
}

TEST_F(ImportKeysTest, PointerFollowsThePickersArrows) {
    arm_picker_on_row({red, green, blue});
    press(dialog(), Qt::Key_Right);
    EXPECT_EQ(QCursor::pos(), dialog().Picture1.mapToGlobal(QPoint(1, 0)));
}

// The window system also reports moves caused by the arrow keys, and late.
TEST_F(ImportKeysTest, LateMoveEventDoesNotMoveThePickerBack) {
    arm_picker_on_row({red, green, blue, red});
    press(dialog(), Qt::Key_Right);
    press(dialog(), Qt::Key_Right);
    emit dialog().Picture1.MouseMove({.x = 1, .y = 0});
    press(dialog(), Qt::Key_Left);
    EXPECT_EQ(transparent(), green);
}

TEST_F(ImportKeysTest, PickerFollowsThePointerBackToItsPixel) {
    arm_picker_on_row({red, green, blue, red});
    press(dialog(), Qt::Key_Right);
    for (const int x : {2, 1}) {
        QCursor::setPos(dialog().Picture1.mapToGlobal(QPoint(x, 0)));
        ui_driver::point_at(dialog().Picture1, {x, 0});
    }
    EXPECT_EQ(transparent(), green);
    press(dialog(), Qt::Key_Right);
    EXPECT_EQ(transparent(), blue);
}

TEST_F(ImportKeysTest, OpenListGetsTheArrowsOfAnArmedPicker) {
    open_dialog();
    press(dialog(), Qt::Key_P, Qt::AltModifier);
    press(dialog(), Qt::Key_T, Qt::AltModifier);
    QWidget* const list = QApplication::activePopupWidget();
    ASSERT_NE(list, nullptr);
    press(*list, Qt::Key_Down);
    press(*list, Qt::Key_Return);
    EXPECT_EQ(dialog().Combo1.ListIndex(), 1);
    EXPECT_EQ(dialog().elboton1.ForeColor(), 0x50B5C4);
}

} // namespace
} // namespace varnoth::test
