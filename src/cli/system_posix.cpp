#include "cli/system.h"

#include <sys/ioctl.h>
#include <unistd.h>

namespace varnoth::cli {

void prepare_streams() {}

bool is_terminal(std::FILE* stream) {
    return isatty(fileno(stream)) == 1;
}

TerminalSize terminal_size() {
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0) {
        return {};
    }
    return {size.ws_col, size.ws_row};
}

int process_number() {
    return getpid();
}

std::FILE* open_file(const std::filesystem::path& path, bool to_write) {
    return std::fopen(path.c_str(), to_write ? "wb" : "rb");
}

bool flush_to_disk(std::FILE* file) {
    return std::fflush(file) == 0 && fsync(fileno(file)) == 0;
}

} // namespace varnoth::cli
