// Peak resident memory of imports of several sizes, one JSON object a line. Each import runs in a process of
// its own, which makes its pictures first and forgets the peak of that time.
#include <cstdio>
#include <fstream>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

#include "photographs.h"
#include "platform.h"
#include "whole_folder.h"

namespace varnoth::bench {
namespace {

// Kilobytes under that name in what the system tells about this process.
long memory_field(const std::string& name) {
    std::ifstream status("/proc/self/status");
    std::string word;
    long kilobytes = -1;
    while (status >> word) {
        if (word == name) {
            status >> kilobytes;
        }
    }
    return kilobytes;
}

// The peak starts anew from what is resident now (proc(5), "clear_refs").
void forget_peak() {
    std::ofstream("/proc/self/clear_refs") << "5";
}

std::size_t sprite_bytes() {
    std::size_t bytes = 0;
    for (const ByteArray& frame : hlspr::document().FrameStore) {
        bytes += frame.size();
    }
    return bytes;
}

void measure(const std::string& folder, std::int32_t count) {
    // What is had once for the whole run, such as the loader's tables, does not count.
    import_folder(folder, 1);
    hlspr::new_sprite(photograph_side, photograph_side, 2, 1);
    const long before = memory_field("VmRSS:");
    forget_peak();
    import_folder(folder, count);
    std::printf("{\"pictures\": %d, \"before_kb\": %ld, \"peak_kb\": %ld, \"sprite_kb\": %zu}\n", count,
                before, memory_field("VmHWM:"), sprite_bytes() / 1024);
    std::fflush(stdout);
}

} // namespace
} // namespace varnoth::bench

int main(int argc, char** argv) {
    using namespace varnoth::bench;
    const varnoth::test::TemporaryFolder folder;
    write_photographs(folder, 256);
    for (const std::int32_t count : {1, 16, 64, 256}) {
        const pid_t child = fork();
        if (child == 0) {
            {
                const Platform platform(argc, argv);
                measure(folder.path(), count);
            }
            _exit(0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        if (child < 0 || status != 0) {
            return 1;
        }
    }
    return 0;
}
