#include "core/base/system_files.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <string_view>

#include <io.h>
#include <windows.h>

namespace varnoth::system_files {

namespace {

/// Absolute paths from this length on need a prefix, unless the registry and the manifest both allow them. It
/// is the limit of folders; that of files is 260.
constexpr std::size_t long_path = 248;

std::wstring full_path(const std::wstring& path) {
    std::wstring full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
    const DWORD length =
        GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    full.resize(std::min<std::size_t>(length, full.size()));
    return full;
}

std::string utf8(std::wstring_view text) {
    const int length = static_cast<int>(text.size());
    std::string bytes(static_cast<std::size_t>(
                          WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr)),
                      '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), static_cast<int>(bytes.size()),
                        nullptr, nullptr);
    return bytes;
}

struct CloseHandleOf {
    using pointer = HANDLE;

    void operator()(HANDLE handle) const { CloseHandle(handle); }
};

/// Whether the file part of a path has a colon, which would open a hidden stream of another file.
bool names_a_stream(const std::filesystem::path& native) {
    return native.relative_path().native().find(L':') != std::wstring::npos;
}

bool is_on_a_disk(std::FILE* file) {
    return GetFileType(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file)))) == FILE_TYPE_DISK;
}

} // namespace

// Not the conversions of the standard library: they throw where the text is malformed, these substitute
// U+FFFD.
std::filesystem::path native_path(const std::string& path) {
    const int length = static_cast<int>(path.size());
    std::wstring text(
        static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, path.data(), length, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, path.data(), length, text.data(), static_cast<int>(text.size()));
    return text;
}

std::string path_bytes(const std::filesystem::path& native) {
    return utf8(native.native());
}

// Not std::filesystem::absolute: libstdc++ takes a network folder for one of the current drive.
std::filesystem::path absolute_path(const std::filesystem::path& native) {
    std::wstring full = full_path(native.native());
    if (full.size() >= 2 && full[1] == L':' && full[0] >= L'a' && full[0] <= L'z') {
        full[0] = static_cast<wchar_t>(full[0] - L'a' + L'A');
    }
    return full;
}

std::size_t root_length(const std::string& path) {
    constexpr std::size_t drive_length = 3;
    if (!path.starts_with(R"(\\)")) {
        return std::min(drive_length, path.size());
    }
    const std::size_t after_host = path.find('\\', 2);
    const std::size_t after_share =
        after_host == std::string::npos ? after_host : path.find('\\', after_host + 1);
    return after_share == std::string::npos ? path.size() : after_share + 1;
}

std::filesystem::path system_path(const std::filesystem::path& native) {
    const std::wstring full = full_path(native.native());
    if (full.size() < long_path || full.starts_with(LR"(\\?\)") || full.starts_with(LR"(\\.\)")) {
        return native;
    }
    return full.starts_with(LR"(\\)") ? LR"(\\?\UNC)" + full.substr(1) : LR"(\\?\)" + full;
}

Entry entry_at(const std::filesystem::path& native) {
    constexpr DWORD share_all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE handle = CreateFileW(system_path(native).c_str(), FILE_READ_ATTRIBUTES, share_all, nullptr,
                                      OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return {};
    }
    const std::unique_ptr<HANDLE, CloseHandleOf> closing(handle);
    BY_HANDLE_FILE_INFORMATION information;
    if (GetFileType(handle) != FILE_TYPE_DISK || GetFileInformationByHandle(handle, &information) == 0) {
        return {};
    }
    const bool is_folder = (information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    return {!is_folder, is_folder, (information.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0};
}

std::FILE* open(const std::filesystem::path& native, const char* mode) {
    if (names_a_stream(native)) {
        errno = EINVAL;
        return nullptr;
    }
    const std::wstring wide_mode(mode, mode + std::char_traits<char>::length(mode));
    std::FILE* const file = _wfopen(system_path(native).c_str(), wide_mode.c_str());
    if (file != nullptr && !is_on_a_disk(file)) {
        std::fclose(file);
        errno = EIO;
        return nullptr;
    }
    return file;
}

int seek(std::FILE* file, std::int64_t offset, int origin) {
    return _fseeki64(file, offset, origin);
}

std::int64_t position(std::FILE* file) {
    return _ftelli64(file);
}

int remove(const std::filesystem::path& native) {
    return _wremove(system_path(native).c_str());
}

// Not std::filesystem::directory_iterator: that of libstdc++ fails for long paths.
std::vector<std::string> names_in(const std::string& folder) {
    const std::filesystem::path native = native_path(folder);
    std::vector<std::string> names;
    if (!entry_at(native).is_folder) {
        return names;
    }
    WIN32_FIND_DATAW entry;
    const HANDLE search = FindFirstFileW(system_path(native / L"*").c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) {
        return names;
    }
    do {
        const std::wstring_view name = entry.cFileName;
        if (name != L"." && name != L"..") {
            names.push_back(utf8(name));
        }
    } while (FindNextFileW(search, &entry) != 0);
    FindClose(search);
    return names;
}

} // namespace varnoth::system_files
