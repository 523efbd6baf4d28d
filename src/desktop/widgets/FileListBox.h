// The files of a folder that match a pattern, with multiple selection. A line is the text of a file name;
// path_of_text converts it back to the name.
#pragma once

#include <string>

#include "desktop/widgets/ListBox.h"

namespace varnoth {

class FileListBox : public ListBox {
    Q_OBJECT

  public:
    FileListBox(const QString& name, QWidget* parent);

    const std::string& Path() const { return path_; }

    /// Lists another folder. A folder that cannot be read is listed as empty.
    void SetPath(const std::string& path);

    /// A star and an extension, such as "*.bmp". Case is ignored.
    void SetPattern(const QString& pattern);

  private:
    void list_again();

    std::string path_;
    QString pattern_ = QStringLiteral("*.bmp");
};

} // namespace varnoth
