// The calls of the operating system behind files.h: POSIX in system_files_posix.cpp, Windows in
// system_files_windows.cpp. Those that return a status set errno when they fail.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace varnoth::system_files {

/// What is at a path, links followed. All false when nothing is there or it cannot be examined.
struct Entry {
    bool is_file = false;
    bool is_folder = false;
    bool is_read_only = false;
};

/// The path for the standard library: the same bytes, or UTF-16 on Windows.
std::filesystem::path native_path(const std::string& path);

/// The inverse of native_path.
std::string path_bytes(const std::filesystem::path& native);

/// An absolute, normalised path. On Windows, the letter of the drive is a capital.
std::filesystem::path absolute_path(const std::filesystem::path& native);

/// The length of the root that an absolute path begins with, including its separator: "/", or on Windows a
/// drive or the share of a network folder.
std::size_t root_length(const std::string& path);

/// The path for a call of the system. Windows needs a prefix before long ones.
std::filesystem::path system_path(const std::filesystem::path& native);

Entry entry_at(const std::filesystem::path& native);

/// Like std::fopen; null on failure. On Windows, also for a reserved name such as NUL.
std::FILE* open(const std::filesystem::path& native, const char* mode);

// The standard functions use long, which has 32 bits on some platforms.
int seek(std::FILE* file, std::int64_t offset, int origin);
std::int64_t position(std::FILE* file);

/// Like std::remove.
int remove(const std::filesystem::path& native);

/// The names in a folder without "." and ".."; those read so far when reading fails.
std::vector<std::string> names_in(const std::string& folder);

} // namespace varnoth::system_files
