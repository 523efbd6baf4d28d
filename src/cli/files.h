// The files of the command line: "-" is standard input or output, results replace their target only when
// complete.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace varnoth::cli {

/// All bytes of a file, or of standard input for "-". CommandError when it cannot be read.
std::vector<std::uint8_t> read_input(const std::string& path);

/// Writes a new file, or standard output for "-". The bytes go to a temporary file in the same folder, which
/// is flushed to the disk and then renamed, so that the target is never half-written and two writers do not
/// mix. CommandError when the file exists and `replace` is false, or when it cannot be written; the target is
/// then unchanged and the temporary file is removed.
void write_output(const std::string& path, std::span<const std::uint8_t> bytes, bool replace);

/// The same for several parts, one after the other.
void write_output(const std::string& path, std::span<const std::span<const std::uint8_t>> parts,
                  bool replace);

/// CommandError when write_output would refuse to replace the file. For a check before long work.
void require_new(const std::string& path, bool replace);

} // namespace varnoth::cli
