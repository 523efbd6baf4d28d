// The program keeps no state between runs. Qt must not do so on its behalf.
#pragma once

namespace varnoth {

/// Makes Qt read and write no settings of its own. QFileDialog would restore the folder, view, history and
/// side bar of the last one that any of the user's programs has shown, and save its own. To be called before
/// the first dialog. Has no effect on Windows, where Qt keeps these settings in the registry.
void keep_no_settings();

} // namespace varnoth
