// The files of a folder that end as the pattern says, several of them selected at will. A line is the text of
// a file's name; path_of_text gives the name.
#pragma once

#include <string>

#include "desktop/widgets/ListBox.h"

namespace varnoth {

class FileListBox : public ListBox {
    Q_OBJECT

  public:
    FileListBox(const QString& name, QWidget* parent);

    const std::string& Path() const { return path_; }

    /// Lists another folder. A folder that cannot be read has no entries.
    void SetPath(const std::string& path);

    const QString& Pattern() const { return pattern_; }

    /// "*.bmp" and the like: a star and an ending, matched without regard to case.
    void SetPattern(const QString& pattern);

  private:
    void list_again();

    std::string path_;
    QString pattern_ = QStringLiteral("*.bmp");
};

} // namespace varnoth
