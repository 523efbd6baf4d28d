// Picture tools of other makers, run as a user would, to check files from both sides.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace varnoth::test {

/// Runs a shell command and returns its standard output; nothing when it ends with a status other than 0.
inline std::vector<std::uint8_t> output_of(const std::string& command) {
    std::vector<std::uint8_t> output;
    std::FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) {
        return output;
    }
    for (int byte = std::fgetc(pipe); byte != EOF; byte = std::fgetc(pipe)) {
        output.push_back(static_cast<std::uint8_t>(byte));
    }
    if (pclose(pipe) != 0) {
        output.clear();
    }
    return output;
}

} // namespace varnoth::test
