#include "core/base/files.h"

#include <cerrno>
#include <string_view>
#include <system_error>

#include "core/base/RunTimeFailure.h"

#ifndef _WIN32
#include <dirent.h>
#include <sys/stat.h>
#endif

namespace varnoth {

namespace {

Failure failure_of(int error) {
    switch (error) {
    case ENOENT:
        return Failure::FileNotFound;
    case ENOTDIR:
        return Failure::PathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
        return Failure::PermissionDenied;
    case ENOSPC:
        return Failure::DiskFull;
    case ENOMEM:
        return Failure::OutOfMemory;
    default:
        return Failure::DeviceIo;
    }
}

// What is at a path, links followed. All false when nothing is there or it cannot be examined.
struct Entry {
    bool is_file = false;
    bool is_folder = false;
    bool is_read_only = false;
};

#ifdef _WIN32
Entry entry_at(const std::filesystem::path& native) {
    using std::filesystem::perms;
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(native, error);
    if (error) {
        return {};
    }
    return {std::filesystem::is_regular_file(status), std::filesystem::is_directory(status),
            (status.permissions() & perms::owner_write) == perms::none};
}
#else
Entry entry_at(const std::filesystem::path& native) {
    struct stat status = {};
    if (stat(native.c_str(), &status) != 0) {
        return {};
    }
    return {S_ISREG(status.st_mode), S_ISDIR(status.st_mode), (status.st_mode & S_IWUSR) == 0};
}
#endif

// The system has one error for a missing file and for a missing folder in its path.
[[noreturn]] void fail_at(const std::filesystem::path& native, int error) {
    const std::filesystem::path folder = native.parent_path();
    if (error == ENOENT && !folder.empty() && !entry_at(folder).is_folder) {
        fail(Failure::PathNotFound);
    }
    fail(failure_of(error));
}

void reject_folder(const std::string& path) {
    if (folder_exists(path)) {
        fail(Failure::PermissionDenied);
    }
}

std::FILE* open_file(const std::string& path, const char* mode) {
    const std::filesystem::path native = native_path(path);
    reject_folder(path);
#ifdef _WIN32
    const std::wstring wide_mode(mode, mode + std::char_traits<char>::length(mode));
    std::FILE* file = _wfopen(native.c_str(), wide_mode.c_str());
#else
    std::FILE* file = std::fopen(native.c_str(), mode);
#endif
    if (file == nullptr) {
        fail_at(native, errno);
    }
    return file;
}

#ifndef _WIN32
struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};
#endif

// The standard functions use long, which has 32 bits on some platforms.
int seek_in(std::FILE* file, std::int64_t offset, int origin) {
#ifdef _WIN32
    return _fseeki64(file, offset, origin);
#else
    return fseeko(file, offset, origin);
#endif
}

std::int64_t position_in(std::FILE* file) {
#ifdef _WIN32
    return _ftelli64(file);
#else
    return ftello(file);
#endif
}

} // namespace

std::filesystem::path native_path(const std::string& path) {
    return std::filesystem::path(std::u8string(path.begin(), path.end()));
}

std::string join_path(const std::string& folder, const std::string& name) {
    constexpr char separator = static_cast<char>(std::filesystem::path::preferred_separator);
    if (folder.empty() || folder.back() == separator || folder.back() == '/') {
        return folder + name;
    }
    return folder + separator + name;
}

bool file_exists(const std::string& path) {
    return entry_at(native_path(path)).is_file;
}

bool folder_exists(const std::string& path) {
    return entry_at(native_path(path)).is_folder;
}

bool is_read_only(const std::string& path) {
    return entry_at(native_path(path)).is_read_only;
}

#ifdef _WIN32
std::vector<std::string> names_in(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator it(native_path(folder), error), end; !error && it != end;
         it.increment(error)) {
        const std::u8string name = it->path().filename().u8string();
        names.emplace_back(name.begin(), name.end());
    }
    return names;
}
#else
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
#endif

void delete_file(const std::string& path) {
    const std::filesystem::path native = native_path(path);
    reject_folder(path);
    if (file_exists(path) && is_read_only(path)) {
        fail(Failure::PermissionDenied);
    }
#ifdef _WIN32
    const int result = _wremove(native.c_str());
#else
    const int result = std::remove(native.c_str());
#endif
    if (result != 0) {
        fail_at(native, errno);
    }
}

InputFile::InputFile(const std::string& path) : file_(open_file(path, "rb")) {
    if (seek_in(file_.get(), 0, SEEK_END) != 0) {
        fail(Failure::DeviceIo);
    }
    length_ = position_in(file_.get());
    if (length_ < 0) {
        fail(Failure::DeviceIo);
    }
    seek(0);
}

std::int64_t InputFile::remaining() const {
    const std::int64_t position = position_in(file_.get());
    if (position < 0) {
        fail(Failure::DeviceIo);
    }
    return length_ - position;
}

void InputFile::seek(std::int64_t position) {
    if (seek_in(file_.get(), position, SEEK_SET) != 0) {
        fail(Failure::DeviceIo);
    }
}

std::size_t InputFile::read(std::span<std::uint8_t> target) {
    const std::size_t count = std::fread(target.data(), 1, target.size(), file_.get());
    if (count < target.size() && std::ferror(file_.get()) != 0) {
        fail(failure_of(errno));
    }
    return count;
}

OutputFile::OutputFile(const std::string& path) {
    if (file_exists(path) && is_read_only(path)) {
        fail(Failure::PermissionDenied);
    }
    file_.reset(open_file(path, "wb"));
}

void OutputFile::write(std::span<const std::uint8_t> bytes) {
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size()) {
        fail(failure_of(errno));
    }
}

void OutputFile::close() {
    if (std::fclose(file_.release()) != 0) {
        fail(failure_of(errno));
    }
}

std::vector<std::uint8_t> read_head(const std::string& path, std::size_t count) {
    InputFile file(path);
    std::vector<std::uint8_t> bytes(count);
    bytes.resize(file.read(bytes));
    return bytes;
}

} // namespace varnoth
