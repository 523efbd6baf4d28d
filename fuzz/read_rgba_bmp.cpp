// The bytes are a BMP file to be decoded with its alpha channel.
#include "core/codecs/read_rgba_bmp.h"

#include "read_rgba.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace varnoth;
    fuzzing::read_whole_and_truncated(read_rgba_bmp, {data, size});
    return 0;
}
