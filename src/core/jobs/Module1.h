// Taking a sprite's path apart. Both "\" and "/" separate.
#pragma once

#include <string>

namespace varnoth::Module1 {

/// What stands behind the last separator, or the whole text when there is none. A separator at the very end
/// is passed over and stays in the result.
std::string strip_folder(const std::string& path);

/// What stands before the last separator; of a path that has it at its front alone, that separator, which is
/// the root. Empty without one.
std::string folder_of(const std::string& path);

/// What stands before the first dot that has something before it, or the whole text when there is no dot.
std::string strip_extension(const std::string& name);

} // namespace varnoth::Module1
