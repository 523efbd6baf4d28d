// File input and output that fails with the program's failures. A path is a string of bytes as the file
// system has them, of any encoding; on Windows it is UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace varnoth {

/// The path for the standard library: the same bytes, or UTF-16 on Windows.
std::filesystem::path native_path(const std::string& path);

/// Folder and name joined with the platform's separator.
std::string join_path(const std::string& folder, const std::string& name);

/// Whether there is a regular file of that name. Follows links.
bool file_exists(const std::string& path);

/// Whether there is a folder of that name. Follows links.
bool folder_exists(const std::string& path);

/// Whether the owner has no permission to write, regardless of who runs the program.
bool is_read_only(const std::string& path);

/// The names of all entries of a folder, including hidden ones, unsorted. When reading the folder fails,
/// those read so far.
std::vector<std::string> names_in(const std::string& folder);

/// Deletes a file. PermissionDenied for a read-only file or a folder, FileNotFound when there is no such
/// file, PathNotFound when its folder does not exist either.
void delete_file(const std::string& path);

/// A file open for reading.
class InputFile {
  public:
    /// FileNotFound, PathNotFound, PermissionDenied (also for a folder) or DeviceIo.
    explicit InputFile(const std::string& path);

    /// The file's length in bytes.
    std::int64_t length() const { return length_; }

    /// The number of bytes from the current position to the end. DeviceIo when the position cannot be
    /// determined.
    std::int64_t remaining() const;

    /// Sets the position, counted from the start of the file. DeviceIo when that fails.
    void seek(std::int64_t position);

    /// Reads into `target` and returns the number of bytes read. The end of the file is not a failure; the
    /// rest of `target` then stays unchanged.
    std::size_t read(std::span<std::uint8_t> target);

  private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    std::unique_ptr<std::FILE, Close> file_;
    std::int64_t length_ = 0;
};

/// A file created or truncated for writing. The destructor closes it and ignores failures; call close() to
/// get them.
class OutputFile {
  public:
    /// PermissionDenied also for an existing read-only file, which keeps its contents.
    explicit OutputFile(const std::string& path);

    /// Writes all bytes. They are buffered, so a failure may only be reported by close().
    void write(std::span<const std::uint8_t> bytes);

    /// Flushes the buffer and closes the file.
    void close();

  private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    std::unique_ptr<std::FILE, Close> file_;
};

/// The first `count` bytes of a file, or all of a shorter one.
std::vector<std::uint8_t> read_head(const std::string& path, std::size_t count);

} // namespace varnoth
