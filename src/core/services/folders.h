// Folders by their paths, as the lists of drives, folders and files need them. Paths are UTF-8; nothing here
// fails.
#pragma once

#include <string>
#include <vector>

namespace varnoth {

/// The path made absolute and plain: no dots, no separator at its end but that of a root. The working folder
/// if it is empty.
std::string plain_folder(const std::string& path);

std::string current_folder();

/// The folders from the root down to a folder, itself included, as full paths.
std::vector<std::string> folders_down_to(const std::string& folder);

/// The folders that a folder holds, hidden ones and links to folders too, as full paths in the order that
/// people expect. A folder that cannot be read holds none.
std::vector<std::string> folders_in(const std::string& folder);

/// The last part of a path; of a root, the root.
std::string folder_name(const std::string& folder);

/// Whether a folder is that one or lies somewhere in it.
bool is_within(const std::string& folder, const std::string& outer);

} // namespace varnoth
