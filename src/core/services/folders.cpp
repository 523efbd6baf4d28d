#include "core/services/folders.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "core/base/files.h"
#include "core/base/system_files.h"
#include "core/services/FileList.h"

namespace varnoth {

namespace {

using Path = std::filesystem::path;

using system_files::path_bytes;

constexpr char separator = static_cast<char>(Path::preferred_separator);

} // namespace

std::string plain_folder(const std::string& path) {
    Path plain = system_files::absolute_path(path.empty() ? Path(".") : native_path(path));
    if (!plain.has_filename() && plain.has_relative_path()) {
        plain = plain.parent_path();
    }
    return path_bytes(plain);
}

std::string current_folder() {
    return plain_folder({});
}

std::vector<std::string> folders_down_to(const std::string& folder) {
    std::size_t end = system_files::root_length(folder);
    std::vector<std::string> folders{folder.substr(0, end)};
    while (end < folder.size()) {
        const std::size_t length = std::min(folder.find(separator, end), folder.size());
        folders.push_back(folder.substr(0, length));
        end = length + 1;
    }
    return folders;
}

std::vector<std::string> folders_in(const std::string& folder) {
    std::vector<std::string> names;
    for (std::string& name : names_in(folder)) {
        if (folder_exists(join_path(folder, name))) {
            names.push_back(std::move(name));
        }
    }
    std::ranges::sort(names, comes_before);
    for (std::string& name : names) {
        name = join_path(folder, name);
    }
    return names;
}

std::string folder_name(const std::string& folder) {
    const Path path = native_path(folder);
    return path.has_filename() ? path_bytes(path.filename()) : folder;
}

bool is_within(const std::string& folder, const std::string& outer) {
    const Path inner_path = native_path(plain_folder(folder));
    const Path outer_path = native_path(plain_folder(outer));
    return std::ranges::mismatch(inner_path, outer_path).in2 == outer_path.end();
}

} // namespace varnoth
