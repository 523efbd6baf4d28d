// The program keeps no state between runs, so Qt must not keep any either.
#pragma once

namespace varnoth {

/// Prevents Qt from reading and writing its own settings. QFileDialog would otherwise restore the folder,
/// view, history and side bar that it shares with all of the user's Qt programs, and save them on closing.
/// Call it before the first dialog. No effect on Windows, where Qt keeps these settings in the registry.
void keep_no_settings();

} // namespace varnoth
