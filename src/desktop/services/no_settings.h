// The program keeps no state between runs, so Qt must not keep any either.
#pragma once

#include <QVariantMap>

namespace varnoth {

/// Prevents Qt from reading and writing its own settings. QFileDialog would otherwise restore the folder,
/// view, history and side bar that it shares with all of the user's Qt programs, and save them on closing.
/// Call it before the first dialog. No effect on Windows, where Qt keeps these settings in the registry.
void keep_no_settings();

/// On Windows, the destructor restores what a file dialog has changed in the registry since the constructor:
/// the values that it saves, and the keys that it creates for them. Declare it before the dialog.
class UnchangedRegistry {
  public:
    UnchangedRegistry();
    ~UnchangedRegistry();

    UnchangedRegistry(const UnchangedRegistry&) = delete;
    UnchangedRegistry& operator=(const UnchangedRegistry&) = delete;

  private:
    QVariantMap before_;
};

} // namespace varnoth
