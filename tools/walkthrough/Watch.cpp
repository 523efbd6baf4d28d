#include "walkthrough/Watch.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTimer>

#include "desktop/forms/FormCoordinator.h"
#include "desktop/forms/main_window/Form1.h"
#include "desktop/forms/progress/Form6.h"
#include "ui_driver/UiDriver.h"

namespace varnoth::walkthrough {

void AnsweredMessageBoxes::show(std::string_view text) {
    ++count_;
    if (before) {
        before(text);
    }
    report_("message", text);
    answer_when_open();
    boxes_.show(text);
}

bool AnsweredMessageBoxes::ask(std::string_view question) {
    ++count_;
    report_("question", question);
    answer_when_open();
    return boxes_.ask(question);
}

void AnsweredMessageBoxes::answer_when_open() {
    QTimer::singleShot(0, [this] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (on_open) {
            on_open();
        }
        QAbstractButton* ok = box->button(QMessageBox::Ok);
        ui_driver::click(ok != nullptr ? *ok : *box->button(answer_ ? QMessageBox::Yes : QMessageBox::No));
    });
}

Watch::Watch(FormCoordinator& coordinator, Report report) : report_(std::move(report)) {
    ListBox& lines = coordinator.form1().List1;
    connect(lines.model(), &QAbstractItemModel::rowsInserted, this,
            [this, &lines](const QModelIndex&, int first, int last) {
                for (int line = first; line <= last; ++line) {
                    report_("list", lines.List(line).toStdString());
                }
            });
    connect(&coordinator, &FormCoordinator::dialog_made, this, [this](Form& dialog) {
        if (auto* progress = qobject_cast<Form6*>(&dialog)) {
            watch_progress(*progress);
        }
    });
    connect(&coordinator, &FormCoordinator::frame_written, this, [this](const std::string& path) {
        ++frames_written_;
        report_("wrote", path);
    });
}

void Watch::watch_progress(Form6& progress) {
    for (const ellabel* label : {&progress.Label1, &progress.Label2}) {
        connect(label, &ellabel::property_changed, this, [this, label](const QString& property) {
            if (property == "Caption") {
                record_step(label->Caption());
            }
        });
    }
}

void Watch::record_step(const QString& text) {
    if (text.isEmpty()) {
        return;
    }
    if (text == "Loading Picture..." || text.startsWith("Frame ")) {
        ++pictures_begun_;
    }
    report_("step", text.toStdString());
}

} // namespace varnoth::walkthrough
