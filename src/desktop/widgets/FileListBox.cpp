#include "desktop/widgets/FileListBox.h"

#include "core/services/FileList.h"
#include "core/services/folders.h"
#include "qt/path_text.h"

namespace varnoth {

FileListBox::FileListBox(const QString& name, QWidget* parent) : ListBox(name, parent) {
    SetPath(current_folder());
}

void FileListBox::SetPath(const std::string& path) {
    path_ = path;
    list_again();
}

void FileListBox::SetPattern(const QString& pattern) {
    pattern_ = pattern;
    list_again();
}

void FileListBox::list_again() {
    Clear();
    const QString ending = pattern_.startsWith(u'*') ? pattern_.mid(1) : pattern_;
    for (const std::string& file : list_files(path_, ending.toStdString())) {
        AddItem(text_of_path(file));
    }
}

} // namespace varnoth
