// Message boxes and the file chooser, answered by real mouse and keyboard events while they are open.
#include <filesystem>
#include <functional>
#include <string>

#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include "desktop/services/QtFileChooser.h"
#include "desktop/services/QtMessageBoxes.h"
#include "desktop/theme/theme.h"
#include "support/TemporaryFolder.h"

namespace varnoth::test {
namespace {

/// Runs `work` on the dialog that opens next. Closes the dialog if it is still open afterwards, so that a
/// failing test terminates.
template <typename Dialog>
void when_open(std::function<void(Dialog&)> work) {
    QTimer::singleShot(0, [work = std::move(work)] {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        const QPointer<Dialog> still_open(dialog);
        work(*dialog);
        if (still_open && still_open->isVisible()) {
            ADD_FAILURE() << "the dialog is still open";
            still_open->reject();
        }
    });
}

void press(QMessageBox& box, QMessageBox::StandardButton button) {
    QTest::mouseClick(box.button(button), Qt::LeftButton);
}

TEST(QtMessageBoxes, MessageHasApplicationTitleTextAndOkButton) {
    bool seen = false;
    when_open<QMessageBox>([&](QMessageBox& box) {
        seen = true;
        EXPECT_EQ(box.windowTitle(), application_title);
        EXPECT_EQ(box.text(), "File: ü Bad Format/Corrupt.");
        EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
        press(box, QMessageBox::Ok);
    });
    QtMessageBoxes().show("File: ü Bad Format/Corrupt.");
    EXPECT_TRUE(seen);
}

TEST(QtMessageBoxes, EscapeAndEnterCloseAMessage) {
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return}) {
        when_open<QMessageBox>([&](QMessageBox& box) { QTest::keyClick(&box, key); });
        QtMessageBoxes().show("Sprite Saved Successfully !");
    }
}

TEST(QtMessageBoxes, TextIsNeverRichText) {
    when_open<QMessageBox>([](QMessageBox& box) {
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.text(), "<b>a&b</b>");
        press(box, QMessageBox::Ok);
    });
    QtMessageBoxes().show("<b>a&b</b>");
}

TEST(QtMessageBoxes, QuestionReturnsTheAnswer) {
    when_open<QMessageBox>([](QMessageBox& box) {
        EXPECT_EQ(box.windowTitle(), application_title);
        EXPECT_EQ(box.standardButtons(), QMessageBox::Yes | QMessageBox::No);
        press(box, QMessageBox::Yes);
    });
    EXPECT_TRUE(QtMessageBoxes().ask("Overwrite?"));
    when_open<QMessageBox>([](QMessageBox& box) { press(box, QMessageBox::No); });
    EXPECT_FALSE(QtMessageBoxes().ask("Overwrite?"));
}

TEST(QtMessageBoxes, EscapeOrClosingAQuestionMeansNo) {
    when_open<QMessageBox>([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    EXPECT_FALSE(QtMessageBoxes().ask("Overwrite?"));
    when_open<QMessageBox>([](QMessageBox& box) { box.close(); });
    EXPECT_FALSE(QtMessageBoxes().ask("Overwrite?"));
}

TEST(QtMessageBoxes, BoxAboveADisabledActiveWindowCanBeAnswered) {
    QWidget window;
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    window.setEnabled(false);
    when_open<QMessageBox>([&](QMessageBox& box) {
        EXPECT_EQ(box.parentWidget(), &window);
        press(box, QMessageBox::Yes);
    });
    EXPECT_TRUE(QtMessageBoxes().ask("Overwrite?"));
}

// The file chooser. The tests use Qt's own dialog, because they cannot drive a native one.

constexpr const char* sprites = "HL Spr File(*.spr)|*.spr";

class QtFileChooserTest : public testing::Test {
  protected:
    QtFileChooserTest() {
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        folder_.write("a.spr", {});
        folder_.write("b.txt", {});
    }

    ~QtFileChooserTest() override { QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs, false); }

    static void type_and_accept(QFileDialog& dialog, const std::string& name) {
        auto* field = dialog.findChild<QLineEdit*>("fileNameEdit");
        ASSERT_NE(field, nullptr);
        field->setText(QString::fromStdString(name));
        QTest::keyClick(field, Qt::Key_Return);
    }

    TemporaryFolder folder_;
    QtFileChooser chooser_;
};

TEST_F(QtFileChooserTest, ReturnsThePathOfTheChosenFile) {
    when_open<QFileDialog>([&](QFileDialog& dialog) {
        EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptOpen);
        EXPECT_EQ(dialog.fileMode(), QFileDialog::ExistingFile);
        EXPECT_EQ(dialog.nameFilters(), QStringList{"HL Spr File(*.spr)"});
        type_and_accept(dialog, folder_.file("a.spr"));
    });
    EXPECT_EQ(chooser_.choose_to_open(sprites), folder_.file("a.spr"));
}

TEST_F(QtFileChooserTest, NonAsciiNameIsReturnedAsUtf8) {
    const std::string path = folder_.write("ñandú.spr", {});
    when_open<QFileDialog>([&](QFileDialog& dialog) { type_and_accept(dialog, path); });
    EXPECT_EQ(chooser_.choose_to_open(sprites), path);
}

TEST_F(QtFileChooserTest, CancelReturnsAnEmptyPath) {
    when_open<QFileDialog>([](QFileDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_EQ(chooser_.choose_to_open(sprites), "");
    when_open<QFileDialog>([](QFileDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_EQ(chooser_.choose_to_save(sprites), "");
}

TEST_F(QtFileChooserTest, NextDialogOpensInTheFolderOfTheLastChoice) {
    when_open<QFileDialog>([&](QFileDialog& dialog) { type_and_accept(dialog, folder_.file("a.spr")); });
    chooser_.choose_to_open(sprites);
    when_open<QFileDialog>([&](QFileDialog& dialog) {
        EXPECT_EQ(dialog.directory().path().toStdString(), folder_.path());
        dialog.reject();
    });
    chooser_.choose_to_save(sprites);
}

TEST_F(QtFileChooserTest, SaveAddsTheExtensionIfNoneIsTyped) {
    when_open<QFileDialog>([&](QFileDialog& dialog) {
        EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptSave);
        type_and_accept(dialog, folder_.file("new"));
    });
    EXPECT_EQ(chooser_.choose_to_save(sprites), folder_.file("new.spr"));
    when_open<QFileDialog>([&](QFileDialog& dialog) { type_and_accept(dialog, folder_.file("new.old")); });
    EXPECT_EQ(chooser_.choose_to_save(sprites), folder_.file("new.old"));
}

TEST_F(QtFileChooserTest, SaveAsksBeforeReturningAnExistingFile) {
    int questions = 0;
    const auto answer_question = [&](QMessageBox::StandardButton answer) {
        when_open<QMessageBox>([&questions, answer](QMessageBox& box) {
            ++questions;
            press(box, answer);
        });
    };
    when_open<QFileDialog>([&](QFileDialog& dialog) {
        answer_question(QMessageBox::No);
        type_and_accept(dialog, folder_.file("a.spr"));
        EXPECT_TRUE(dialog.isVisible()) << "No returns to the dialog";
        answer_question(QMessageBox::Yes);
        type_and_accept(dialog, folder_.file("a.spr"));
    });
    EXPECT_EQ(chooser_.choose_to_save(sprites), folder_.file("a.spr"));
    EXPECT_EQ(questions, 2);
}

TEST_F(QtFileChooserTest, PatternIsAddedToTheFilterName) {
    when_open<QFileDialog>([](QFileDialog& dialog) {
        EXPECT_EQ(dialog.nameFilters(), QStringList{"Texts (*.txt)"});
        dialog.reject();
    });
    chooser_.choose_to_open("Texts|*.txt");
}

} // namespace
} // namespace varnoth::test
