// The bytes are a TGA file to be decoded with read_tga().
#include "core/codecs/read_tga.h"

#include "read_rgba.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace varnoth;
    const std::span<const std::uint8_t> file(data, size);
    const bool was_read = fuzzing::read_whole_and_truncated(read_tga, file).has_value();
    fuzzing::require(!was_read || is_tga(file), "only TGA files are read");
    fuzzing::succeeds([&] { tga_colour_map(file); });
    return 0;
}
