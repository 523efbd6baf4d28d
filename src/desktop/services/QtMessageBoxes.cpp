#include "desktop/services/QtMessageBoxes.h"

#include <QMessageBox>

#include "desktop/services/dialog_parent.h"
#include "desktop/theme/theme.h"

namespace varnoth {

namespace {

/// Returns the button that the user chose.
int run_box(std::string_view text, QMessageBox::StandardButtons buttons) {
    QMessageBox box(dialog_parent());
    box.setWindowTitle(QString::fromLatin1(application_title));
    box.setTextFormat(Qt::PlainText);
    box.setText(QString::fromUtf8(text));
    box.setStandardButtons(buttons);
    return box.exec();
}

} // namespace

void QtMessageBoxes::show(std::string_view text) {
    run_box(text, QMessageBox::Ok);
}

bool QtMessageBoxes::ask(std::string_view question) {
    return run_box(question, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

} // namespace varnoth
