// Splits a sprite's path into folder, name and extension. Both "\" and "/" are separators.
#pragma once

#include <string>

namespace varnoth::Module1 {

/// The part after the last separator, or the whole path without one. A trailing separator does not count and
/// remains in the result.
std::string strip_folder(const std::string& path);

/// The part before the last separator; the separator itself, the root, when it is the first character. Empty
/// without a separator.
std::string folder_of(const std::string& path);

/// The part before the first dot that is not the first character, or the whole name without a dot.
std::string strip_extension(const std::string& name);

} // namespace varnoth::Module1
