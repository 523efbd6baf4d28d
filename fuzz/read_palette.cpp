// The bytes are a palette file.
#include "core/codecs/read_palette.h"

#include "fuzzing.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace varnoth;
    const std::span<const std::uint8_t> file(data, size);
    fuzzing::succeeds([&] { read_palette(file); });
    if (const auto palette = read_raw_palette(file)) {
        fuzzing::require(!palette->colours.empty() && palette->colours.size() <= 256,
                         "a raw palette has 1 to 256 colours");
        fuzzing::require(!palette->transparent || *palette->transparent < palette->colours.size(),
                         "the transparent colour is in the palette");
    }
    return 0;
}
