#include "cli/system.h"

#include <cstdlib>

#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <windows.h>

#include "core/base/system_files.h"

namespace varnoth::cli {

namespace {

/// The code page that the console had; it outlives the program.
UINT previous_page = 0;

void restore_page() {
    SetConsoleOutputCP(previous_page);
}

} // namespace

void prepare_streams() {
    for (std::FILE* const stream : {stdin, stdout, stderr}) {
        _setmode(_fileno(stream), _O_BINARY);
    }
    previous_page = GetConsoleOutputCP();
    if (previous_page != 0 && SetConsoleOutputCP(CP_UTF8) != 0) {
        std::atexit(restore_page);
    }
    for (const DWORD stream : {STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
        const HANDLE console = GetStdHandle(stream);
        if (DWORD mode = 0; GetConsoleMode(console, &mode) != 0) {
            SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
        }
    }
}

bool is_terminal(std::FILE* stream) {
    return _isatty(_fileno(stream)) != 0;
}

TerminalSize terminal_size() {
    CONSOLE_SCREEN_BUFFER_INFO info;
    if (GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info) == 0) {
        return {};
    }
    return {info.srWindow.Right - info.srWindow.Left + 1, info.srWindow.Bottom - info.srWindow.Top + 1};
}

int process_number() {
    return _getpid();
}

std::FILE* open_file(const std::filesystem::path& path, bool to_write) {
    return _wfopen(system_files::system_path(path).c_str(), to_write ? L"wb" : L"rb");
}

bool flush_to_disk(std::FILE* file) {
    return std::fflush(file) == 0 && _commit(_fileno(file)) == 0;
}

} // namespace varnoth::cli
