// A drop-down list of the mounted volumes.
#pragma once

#include <string>
#include <string_view>

#include "desktop/widgets/DropDownList.h"

namespace varnoth {

/// Whether a volume of the given type mounted at `root` belongs to the system and holds no user files.
bool is_system_volume(const std::string& root, std::string_view type);

class DriveList : public DropDownList {
    Q_OBJECT

  public:
    /// Lists the volumes that are mounted now and selects the one of the current folder. System volumes
    /// (processes, devices and the like) are left out; the root is always listed. On Windows, a volume is a
    /// drive with a letter, and a removable drive is listed while it has a medium.
    DriveList(const QString& name, QWidget* parent);

    /// The root folder of the selected volume; empty when none is selected.
    std::string Drive() const;

    /// Selects the volume that holds a folder, without raising Change. None holds a network folder of
    /// Windows.
    void show_drive_of(const std::string& folder);

  signals:
    /// Another volume was selected.
    void Change();

  private:
    void add_volume(const QString& root, const QString& name);

    bool quiet_ = false; ///< suppresses Change
};

} // namespace varnoth
