// The input is a BMP file, which is probed.
#include "core/codecs/BmpMod.h"
#include "fuzzing.h"

using namespace varnoth;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string path = fuzzing::scratch_file("input.bmp", {data, size});
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int16_t depth = 0;
    std::int16_t compression = 0;
    Truth answer = False;
    if (!fuzzing::succeeds([&] { answer = BmpMod::ProbeBmp(path, width, height, depth, compression); })) {
        return 0;
    }
    if (answer == True) {
        fuzzing::require(size >= 54 && width > 0 && height > 0 && compression >= 0,
                         "an accepted bitmap has a size");
    } else {
        fuzzing::require(answer == False && width == -1 && height == -1 && depth == -1 && compression == -1,
                         "a refused file gives -1 everywhere");
    }
    return 0;
}
