// A drop-down list of the mounted volumes.
#pragma once

#include <string>
#include <string_view>

#include "desktop/widgets/DropDownList.h"

namespace varnoth {

/// Whether the system mounts a volume of that type there for itself, and no user keeps files on it.
bool is_system_volume(const std::string& root, std::string_view type);

class DriveList : public DropDownList {
    Q_OBJECT

  public:
    /// Shows the volumes mounted now, with the one of the current folder chosen. What the system mounts for
    /// itself (processes, devices and the like) is left out; the root is always there.
    DriveList(const QString& name, QWidget* parent);

    /// The root folder of the chosen volume.
    std::string Drive() const;

    /// Chooses the volume that holds a folder, without raising Change.
    void show_drive_of(const std::string& folder);

  signals:
    /// Another volume was chosen than the one shown.
    void Change();

  private:
    void add_volume(const QString& root, const QString& name);

    bool quiet_ = false; ///< show_drive_of is choosing
};

} // namespace varnoth
