// The calls of the operating system that the command line needs beside those of core/base/system_files.h:
// POSIX in system_posix.cpp, Windows in system_windows.cpp.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>

namespace varnoth::cli {

struct TerminalSize {
    std::int32_t columns = 80;
    std::int32_t lines = 24;
};

/// Makes the standard streams carry bytes unchanged, and a console of Windows show UTF-8 and colours until
/// the program exits.
void prepare_streams();

bool is_terminal(std::FILE* stream);

/// The size of the terminal on standard output; the default when it is unknown.
TerminalSize terminal_size();

int process_number();

/// Opens a file or a device for bytes. Null, with errno set, on failure.
std::FILE* open_file(const std::filesystem::path& path, bool to_write);

/// Whether all that was written has reached the disk. Sets errno when not.
bool flush_to_disk(std::FILE* file);

} // namespace varnoth::cli
