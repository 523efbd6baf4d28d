// The input is a JPEG file, which is probed.
#include "core/codecs/JpgMod.h"
#include "fuzzing.h"

using namespace varnoth;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string path = fuzzing::scratch_file("input.jpg", {data, size});
    std::int32_t width = -5;
    std::int32_t height = -6;
    Truth answer = False;
    if (!fuzzing::succeeds([&] { answer = JpgMod::ProbeJpeg(path, width, height); })) {
        return 0;
    }
    if (answer == True) {
        fuzzing::require(width >= 0 && width <= 32767 && height >= 0 && height <= 32767,
                         "sides are 15-bit numbers");
    } else {
        fuzzing::require(answer == False && width == -5 && height == -6,
                         "a refused file leaves the sizes unchanged");
    }
    return 0;
}
