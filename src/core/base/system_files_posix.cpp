#include "core/base/system_files.h"

#include <memory>
#include <string_view>
#include <system_error>

#include <dirent.h>
#include <sys/stat.h>

namespace varnoth::system_files {

namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

} // namespace

std::filesystem::path native_path(const std::string& path) {
    return path;
}

std::string path_bytes(const std::filesystem::path& native) {
    return native.native();
}

std::filesystem::path absolute_path(const std::filesystem::path& native) {
    std::error_code error;
    return std::filesystem::absolute(native, error).lexically_normal();
}

std::size_t root_length(const std::string& /*path*/) {
    return 1;
}

std::filesystem::path system_path(const std::filesystem::path& native) {
    return native;
}

Entry entry_at(const std::filesystem::path& native) {
    struct stat status = {};
    if (stat(native.c_str(), &status) != 0) {
        return {};
    }
    return {S_ISREG(status.st_mode), S_ISDIR(status.st_mode), (status.st_mode & S_IWUSR) == 0};
}

std::FILE* open(const std::filesystem::path& native, const char* mode) {
    return std::fopen(native.c_str(), mode);
}

int seek(std::FILE* file, std::int64_t offset, int origin) {
    return fseeko(file, offset, origin);
}

std::int64_t position(std::FILE* file) {
    return ftello(file);
}

int remove(const std::filesystem::path& native) {
    return std::remove(native.c_str());
}

// Not std::filesystem::directory_iterator: that of libstdc++ terminates the program when memory runs out.
std::vector<std::string> names_in(const std::string& folder) {
    std::vector<std::string> names;
    const std::unique_ptr<DIR, CloseFolder> open(opendir(folder.c_str()));
    while (const dirent* entry = open ? readdir(open.get()) : nullptr) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") {
            names.emplace_back(name);
        }
    }
    return names;
}

} // namespace varnoth::system_files
