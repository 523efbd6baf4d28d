#include "core/base/files.h"

#include <cerrno>

#include "core/base/RunTimeFailure.h"
#include "core/base/system_files.h"

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

// The system has one error for a missing file and for a missing folder in its path.
[[noreturn]] void fail_at(const std::filesystem::path& native, int error) {
    const std::filesystem::path folder = native.parent_path();
    if (error == ENOENT && !folder.empty() && !system_files::entry_at(folder).is_folder) {
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
    std::FILE* file = system_files::open(native, mode);
    if (file == nullptr) {
        fail_at(native, errno);
    }
    return file;
}

} // namespace

std::filesystem::path native_path(const std::string& path) {
    return system_files::native_path(path);
}

std::string join_path(const std::string& folder, const std::string& name) {
    constexpr char separator = static_cast<char>(std::filesystem::path::preferred_separator);
    if (folder.empty() || folder.back() == separator || folder.back() == '/') {
        return folder + name;
    }
    return folder + separator + name;
}

bool file_exists(const std::string& path) {
    return system_files::entry_at(native_path(path)).is_file;
}

bool folder_exists(const std::string& path) {
    return system_files::entry_at(native_path(path)).is_folder;
}

bool is_read_only(const std::string& path) {
    return system_files::entry_at(native_path(path)).is_read_only;
}

std::vector<std::string> names_in(const std::string& folder) {
    return system_files::names_in(folder);
}

void delete_file(const std::string& path) {
    const std::filesystem::path native = native_path(path);
    reject_folder(path);
    if (file_exists(path) && is_read_only(path)) {
        fail(Failure::PermissionDenied);
    }
    if (system_files::remove(native) != 0) {
        fail_at(native, errno);
    }
}

InputFile::InputFile(const std::string& path) : file_(open_file(path, "rb")) {
    if (system_files::seek(file_.get(), 0, SEEK_END) != 0) {
        fail(Failure::DeviceIo);
    }
    length_ = system_files::position(file_.get());
    if (length_ < 0) {
        fail(Failure::DeviceIo);
    }
    seek(0);
}

std::int64_t InputFile::remaining() const {
    const std::int64_t position = system_files::position(file_.get());
    if (position < 0) {
        fail(Failure::DeviceIo);
    }
    return length_ - position;
}

void InputFile::seek(std::int64_t position) {
    if (system_files::seek(file_.get(), position, SEEK_SET) != 0) {
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
