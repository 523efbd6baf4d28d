// Whole-file input and output with the program's failures. Paths are UTF-8.
// Every file is opened, used and closed within one routine; nothing here stays open behind a call.
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

/// A UTF-8 path in the form that the file system wants.
std::filesystem::path native_path(const std::string& path);

/// Folder and name joined with the platform's separator.
std::string join_path(const std::string& folder, const std::string& name);

/// Whether a look-up of plain files finds the name: a folder of that name does not count.
bool file_exists(const std::string& path);

/// Whether there is a folder of that name.
bool folder_exists(const std::string& path);

/// A read-only file is one whose owner-write permission is off, whoever runs the program.
bool is_read_only(const std::string& path);

/// The names of everything in a folder, hidden ones too, in no order. Of a folder that cannot be read, those
/// that could be.
std::vector<std::string> names_in(const std::string& folder);

/// Deletes an existing file. PermissionDenied for a read-only file and for a folder, FileNotFound when there
/// is none, PathNotFound when there is no such folder either.
void delete_file(const std::string& path);

/// A file open for reading.
class InputFile {
  public:
    /// FileNotFound, PathNotFound, PermissionDenied (also for a folder) or DeviceIo.
    explicit InputFile(const std::string& path);

    /// The file's length in bytes.
    std::int64_t length() const { return length_; }

    /// Bytes from the present position to the end; DeviceIo when the position cannot be told.
    std::int64_t remaining() const;

    /// Counted from the start of the file. DeviceIo when it cannot be gone to.
    void seek(std::int64_t position);

    /// Reads into `target` and returns the number of bytes that the file supplied. The end of the file is
    /// no failure; what it does not supply stays as it was.
    std::size_t read(std::span<std::uint8_t> target);

  private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    std::unique_ptr<std::FILE, Close> file_;
    std::int64_t length_ = 0;
};

/// A file created or emptied for writing. Destroying one that was not closed writes what is buffered;
/// failures then stay unknown.
class OutputFile {
  public:
    /// PermissionDenied also for an existing read-only file, which keeps its content.
    explicit OutputFile(const std::string& path);

    /// All of the bytes. A failure of the disk shows here or when the file is closed.
    void write(std::span<const std::uint8_t> bytes);

    /// Writes out what is buffered and closes; failures of the disk show here at the latest.
    void close();

  private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    std::unique_ptr<std::FILE, Close> file_;
};

/// The first `count` bytes of a file, fewer when it is shorter.
std::vector<std::uint8_t> read_head(const std::string& path, std::size_t count);

} // namespace varnoth
