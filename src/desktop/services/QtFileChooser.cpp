#include "desktop/services/QtFileChooser.h"

#include <QFileDialog>

#include "desktop/services/dialog_parent.h"
#include "desktop/services/no_settings.h"
#include "qt/path_text.h"

namespace varnoth {

namespace {

struct Filter {
    QString name;
    QString pattern;
};

Filter parse(std::string_view filter) {
    const QString whole = QString::fromUtf8(filter);
    return {whole.section(u'|', 0, 0).trimmed(), whole.section(u'|', 1).trimmed()};
}

/// The filter in Qt's format: the name, then the pattern in brackets.
QString name_filter(const Filter& filter) {
    const QString bracketed = QStringLiteral("(%1)").arg(filter.pattern);
    return filter.name.endsWith(bracketed) ? filter.name : filter.name + u' ' + bracketed;
}

} // namespace

std::string QtFileChooser::choose(QFileDialog& dialog, std::string_view filter) {
    dialog.setNameFilter(name_filter(parse(filter)));
    if (!folder_.isEmpty()) {
        dialog.setDirectoryUrl(folder_);
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedUrls().isEmpty()) {
        return {};
    }
    const QUrl file = dialog.selectedUrls().constFirst();
    folder_ = file.adjusted(QUrl::RemoveFilename | QUrl::StripTrailingSlash);
    return path_of_url(file);
}

std::string QtFileChooser::choose_to_open(std::string_view filter) {
    const UnchangedRegistry unchanged;
    QFileDialog dialog(dialog_parent());
    dialog.setWindowTitle(QStringLiteral("Open")); // the dialog of Windows has no title of its own
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    return choose(dialog, filter);
}

std::string QtFileChooser::choose_to_save(std::string_view filter) {
    const UnchangedRegistry unchanged;
    QFileDialog dialog(dialog_parent());
    dialog.setWindowTitle(QStringLiteral("Save As"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setDefaultSuffix(parse(filter).pattern.section(u'.', -1));
    return choose(dialog, filter);
}

} // namespace varnoth
