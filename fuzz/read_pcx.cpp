// The bytes are a PCX file to be decoded with read_pcx().
#include "core/codecs/read_pcx.h"

#include "read_rgba.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace varnoth;
    const std::span<const std::uint8_t> file(data, size);
    const bool was_read = fuzzing::read_whole_and_truncated(read_pcx, file).has_value();
    fuzzing::require(!was_read || is_pcx(file), "only PCX files are read");
    if (was_read) {
        const std::size_t colours = pcx_palette(file).size();
        fuzzing::require(colours != 1 && colours <= 256, "a palette has 2 to 256 colours");
    }
    return 0;
}
