#include "cli/files.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>

#include "cli/command.h"
#include "cli/system.h"
#include "core/base/files.h"
#include "core/base/system_files.h"

namespace varnoth::cli {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view standard_stream = "-";

struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

using File = std::unique_ptr<std::FILE, Close>;

std::string last_error() {
    return std::generic_category().message(errno);
}

File opened(const fs::path& path, bool to_write) {
    return File(open_file(path, to_write));
}

using Parts = std::span<const std::span<const std::uint8_t>>;

bool write_all(std::FILE* file, Parts parts) {
    return std::ranges::all_of(parts, [file](std::span<const std::uint8_t> part) {
        return std::fwrite(part.data(), 1, part.size(), file) == part.size();
    });
}

std::vector<std::uint8_t> read_all(std::FILE* file, const std::string& name) {
    std::vector<std::uint8_t> bytes;
    std::vector<std::uint8_t> part(std::size_t{1} << 16);
    while (const std::size_t count = std::fread(part.data(), 1, part.size(), file)) {
        bytes.insert(bytes.end(), part.begin(), part.begin() + static_cast<std::ptrdiff_t>(count));
    }
    if (std::ferror(file) != 0) {
        throw CommandError(name, last_error());
    }
    return bytes;
}

// Devices and pipes are written in place; renaming a file onto them would replace them.
bool is_written_in_place(const fs::path& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    return fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status);
}

void write_in_place(const std::string& name, const fs::path& path, Parts parts) {
    const File file = opened(path, true);
    if (!file || !write_all(file.get(), parts) || std::fflush(file.get()) != 0) {
        throw CommandError(name, last_error());
    }
}

/// What a symbolic link leads to, so that the link itself is not replaced.
fs::path without_link(const fs::path& path) {
    std::error_code error;
    const fs::path target = fs::is_symlink(path, error) ? fs::canonical(path, error) : path;
    return error ? path : target;
}

/// A file beside the target, removed again unless it has become the target.
class TemporaryFile {
  public:
    TemporaryFile(const std::string& name, const fs::path& target)
        : name_(name), target_(target), path_(target) {
        path_.replace_filename(fs::path(".") += target.filename());
        path_ += "." + std::to_string(process_number()) + ".tmp";
        path_ = system_files::system_path(path_);
    }

    ~TemporaryFile() { system_files::remove(path_); }

    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    void write(Parts parts) {
        File file = opened(path_, true);
        if (!file || !write_all(file.get(), parts) || !flush_to_disk(file.get()) ||
            std::fclose(file.release()) != 0) {
            throw CommandError(name_, last_error());
        }
    }

    void replace_target() {
        std::error_code error;
        if (const fs::file_status status = fs::status(target_, error); fs::exists(status)) {
            fs::permissions(path_, status.permissions(), error);
        }
        fs::rename(path_, target_, error);
        if (error) {
            throw CommandError(name_, error.message());
        }
    }

    // A hard link fails if the target exists, even if it has just been created; a rename would replace it.
    void become_new_target() {
        std::error_code error;
        fs::create_hard_link(path_, target_, error);
        if (error == std::errc::file_exists) {
            throw CommandError(name_, "the file exists; --force replaces it");
        }
        if (error) { // a file system without hard links
            require_new(name_, false);
            replace_target();
        }
    }

  private:
    const std::string& name_;
    const fs::path& target_;
    fs::path path_;
};

} // namespace

std::vector<std::uint8_t> read_input(const std::string& path) {
    if (path == standard_stream) {
        return read_all(stdin, "standard input");
    }
    const File file = opened(native_path(path), false);
    if (!file) {
        throw CommandError(path, last_error());
    }
    return read_all(file.get(), path);
}

void write_output(const std::string& path, std::span<const std::uint8_t> bytes, bool replace) {
    write_output(path, Parts(&bytes, 1), replace);
}

void write_output(const std::string& path, Parts parts, bool replace) {
    if (path == standard_stream) {
        if (!write_all(stdout, parts) || std::fflush(stdout) != 0) {
            throw CommandError("standard output", last_error());
        }
        return;
    }
    const fs::path target = without_link(system_files::system_path(native_path(path)));
    if (is_written_in_place(target)) {
        write_in_place(path, target, parts);
        return;
    }
    require_new(path, replace);
    TemporaryFile file(path, target);
    file.write(parts);
    if (replace) {
        file.replace_target();
    } else {
        file.become_new_target();
    }
}

void require_new(const std::string& path, bool replace) {
    if (path == standard_stream) {
        return;
    }
    const fs::path target = native_path(path);
    if (folder_exists(path)) {
        throw CommandError(path, "is a folder");
    }
    std::error_code error;
    if (!replace && fs::exists(fs::symlink_status(target, error)) && !is_written_in_place(target)) {
        throw CommandError(path, "the file exists; --force replaces it");
    }
}

} // namespace varnoth::cli
