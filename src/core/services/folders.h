// Folder paths for the lists of drives, folders and files. None of these functions
// fails.
#pragma once

#include <string>
#include <vector>

namespace varnoth {

/// The path made absolute and normalised: without "." and "..", and without a trailing separator unless it is
/// a root. An empty path is the working folder.
std::string plain_folder(const std::string& path);

std::string current_folder();

/// The full paths of all folders from the root down to and including `folder`, which is plain.
std::vector<std::string> folders_down_to(const std::string& folder);

/// The full paths of the subfolders of a folder, including hidden ones and links to folders, in natural
/// order. Empty when the folder cannot be read.
std::vector<std::string> folders_in(const std::string& folder);

/// The last component of a path; for a root, the root itself.
std::string folder_name(const std::string& folder);

/// Whether `folder` is `outer` or lies anywhere below it.
bool is_within(const std::string& folder, const std::string& outer);

} // namespace varnoth
