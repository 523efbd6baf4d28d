// Cross-validation with ImageMagick and Netpbm: they write the files for tests of the readers, and decode
// those of the writers. Both must be installed; a command that fails is an error that quotes it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "core/image/Colour.h"

namespace varnoth::test {

#ifdef _WIN32
inline std::FILE* open_pipe(const char* command, const char* mode) {
    return _popen(command, mode);
}

inline int close_pipe(std::FILE* pipe) {
    return _pclose(pipe);
}
#else
inline std::FILE* open_pipe(const char* command, const char* mode) {
    return popen(command, mode);
}

inline int close_pipe(std::FILE* pipe) {
    return pclose(pipe);
}
#endif

/// Runs a shell command that must succeed; returns its standard output.
inline std::string run_tool(const std::string& command) {
    // Warnings are discarded; for a pipeline, the status of the last command counts.
    std::FILE* pipe = open_pipe(("exec 2>/dev/null; set -e; " + command).c_str(), "r");
    if (pipe == nullptr) {
        throw std::runtime_error("cannot run " + command);
    }
    std::string output;
    char block[4096];
    for (std::size_t read = 0; (read = std::fread(block, 1, sizeof block, pipe)) > 0;) {
        output.append(block, read);
    }
    if (close_pipe(pipe) != 0) {
        throw std::runtime_error("failed: " + command);
    }
    return output;
}

/// Pixels decoded by a foreign tool, rows from the top.
struct ForeignPicture {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<Colour> colours;
};

/// All pictures that a command prints, as concatenated 8-bit binary PPM or PGM files.
inline std::vector<ForeignPicture> pictures_from_tool(const std::string& command) {
    std::istringstream stream(run_tool(command));
    std::vector<ForeignPicture> pictures;
    std::string type;
    while (stream >> type) {
        ForeignPicture picture;
        int depth = 0;
        stream >> picture.width >> picture.height >> depth;
        stream.get();
        if ((type != "P5" && type != "P6") || depth != 255) {
            throw std::runtime_error("no 8-bit PPM printed by: " + command);
        }
        const auto byte = [&] { return static_cast<std::uint8_t>(stream.get()); };
        for (std::int32_t i = 0; i < picture.width * picture.height; ++i) {
            const std::uint8_t red = byte();
            const std::uint8_t green = type == "P6" ? byte() : red;
            const std::uint8_t blue = type == "P6" ? byte() : red;
            picture.colours.push_back(make_colour(red, green, blue));
        }
        if (!stream) {
            throw std::runtime_error("truncated PPM printed by: " + command);
        }
        pictures.push_back(std::move(picture));
    }
    return pictures;
}

/// The only picture that a command prints.
inline ForeignPicture picture_from_tool(const std::string& command) {
    std::vector<ForeignPicture> pictures = pictures_from_tool(command);
    if (pictures.size() != 1) {
        throw std::runtime_error(std::to_string(pictures.size()) + " pictures printed by: " + command);
    }
    return std::move(pictures.front());
}

/// Writes colours, rows from the top, as a binary PPM file for the tools.
inline void write_ppm(const std::string& path, std::int32_t width, const std::vector<Colour>& colours) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) {
        throw std::runtime_error("cannot write " + path);
    }
    std::fprintf(file, "P6\n%d %d\n255\n", width, static_cast<int>(colours.size()) / width);
    for (const Colour colour : colours) {
        for (const int shift : {0, 8, 16}) {
            std::fputc((colour >> shift) & 0xFF, file);
        }
    }
    std::fclose(file);
}

} // namespace varnoth::test
