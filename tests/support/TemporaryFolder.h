// A temporary folder for a test's files, removed with its contents at the end.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <span>
#include <string>

#include "core/base/files.h"
#include "support/lists.h"

namespace varnoth::test {

class TemporaryFolder {
  public:
    TemporaryFolder() {
        const std::string pattern = (std::filesystem::temp_directory_path() / "varnoth-").string();
        std::random_device random;
        do {
            path_ = pattern + std::to_string(random());
        } while (!std::filesystem::create_directory(path_)); // false if the name exists
    }

    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& path() const { return path_; }

    /// The absolute path of a name in the folder.
    std::string file(const std::string& name) const { return path_ + "/" + name; }

    /// Writes a file of these bytes; returns its absolute path.
    std::string write(const std::string& name, std::span<const std::uint8_t> bytes) const {
        std::ofstream stream(native_path(file(name)), std::ios::binary);
        for (const std::uint8_t byte : bytes) {
            stream.put(static_cast<char>(byte));
        }
        return file(name);
    }

  private:
    std::string path_;
};

inline Bytes read_file(const std::string& path) {
    std::ifstream stream(native_path(path), std::ios::binary);
    Bytes bytes;
    for (auto it = std::istreambuf_iterator<char>(stream); it != std::istreambuf_iterator<char>(); ++it) {
        bytes.push_back(static_cast<std::uint8_t>(*it));
    }
    return bytes;
}

} // namespace varnoth::test
