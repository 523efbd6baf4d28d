// A folder list: the folders from the root down to the open one, followed by the folders in it. A double
// click or Enter opens a folder.
#pragma once

#include <string>

#include <QListWidget>

namespace varnoth {

class FolderListBox : public QListWidget {
    Q_OBJECT

  public:
    /// Opens the current folder.
    FolderListBox(const QString& name, QWidget* parent);

    /// The open folder.
    const std::string& Path() const { return path_; }

    /// Opens a folder and raises Change if it was not open. An empty path is ignored. Raises PathNotFound for
    /// a folder that does not exist.
    void SetPath(const std::string& path);

  signals:
    void Change();

  protected:
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void list_again();
    void open_current();

    std::string path_;
};

} // namespace varnoth
