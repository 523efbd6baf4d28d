// Folder listings as the file browser shows them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace varnoth {

/// The names of the plain files in a folder that end in the extension (".bmp") without regard to case, in the
/// order that people expect: letters without regard to case, numbers by their value, so frame2 stands before
/// frame10. A folder that cannot be read has none.
std::vector<std::string> list_files(const std::string& folder, std::string_view extension);

/// Whether `a` stands before `b` in that order.
bool comes_before(std::string_view a, std::string_view b);

} // namespace varnoth
