// Folder listings as the file browser shows them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace varnoth {

/// The names of the regular files in a folder that end in the extension (".bmp"), compared
/// case-insensitively, in natural order: letters case-insensitively, numbers by value, so that frame2
/// precedes frame10. Empty when the folder cannot be read.
std::vector<std::string> list_files(const std::string& folder, std::string_view extension);

/// Whether `a` precedes `b` in natural order. Names that compare equal are ordered by their bytes.
bool comes_before(std::string_view a, std::string_view b);

} // namespace varnoth
