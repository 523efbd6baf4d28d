// Runs a fuzz target on files, or on all files in folders, without libFuzzer, so that the corpus and earlier
// findings are tested with every compiler.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <vector>

#include "fuzzing.h"

namespace {

std::vector<std::filesystem::path> files_of(const std::filesystem::path& place) {
    if (!std::filesystem::is_directory(place)) {
        return {place};
    }
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(place)) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path());
        }
    }
    std::ranges::sort(files);
    return files;
}

} // namespace

int main(int count, char** arguments) {
    varnoth::fuzzing::every_input_counts = true;
    std::size_t inputs = 0;
    for (int i = 1; i < count; ++i) {
        for (const std::filesystem::path& file : files_of(arguments[i])) {
            const std::vector<std::uint8_t> bytes = varnoth::test::read_file(file.string());
            // If the program crashes, the last name printed is that of the input.
            std::fprintf(stderr, "%s\n", file.string().c_str());
            LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
            ++inputs;
        }
    }
    std::printf("%zu inputs\n", inputs);
    return inputs == 0 ? 1 : 0; // no inputs: the path is wrong
}
