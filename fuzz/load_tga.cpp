// The input is one TGA file, or several with a separator in between, which are probed, decoded and drawn by
// the same reader, since a reader keeps colour maps from file to file.
#include <algorithm>
#include <cstdlib>

#include "core/base/bytes.h"
#include "core/codecs/CBitmap.h"
#include "core/codecs/LoadTGA.h"
#include "fuzzing.h"

namespace {

using namespace varnoth;

constexpr std::array<std::uint8_t, 4> separator{'N', 'E', 'X', 'T'};
constexpr std::size_t most_files = 4;
constexpr std::int64_t few_pixels = 1 << 9;
constexpr std::int64_t most_decoded_pixels = 1 << 14;
constexpr std::int64_t most_pixels_at_all = 1 << 29;
constexpr std::uint32_t inputs_for_one_large = 64;
constexpr std::uint32_t inputs_for_one_drawn = 64;

// The sizes that the header declares, in 64 bits, so that nothing overflows.
struct Claim {
    std::int64_t width; ///< without the origin
    std::int64_t height;
    std::int64_t line; ///< with the origin

    std::int64_t pixels() const { return std::max(std::abs(width * height), std::abs(line * height)); }
};

Claim claim_of(const TgaHeader& header) {
    return {std::int64_t{header.ImageWidth} - header.XOrigin,
            std::int64_t{header.ImageHeight} - header.YOrigin, header.ImageWidth};
}

// A small file may declare a picture of up to 2 GiB; decoding that takes long and finds nothing more. Larger
// pictures are refused before memory is allocated, unless both sides are negative.
bool is_worth_decoding(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < TgaHeader::size) {
        return true;
    }
    const Claim claim = claim_of(TgaHeader::from_bytes(bytes.first<TgaHeader::size>()));
    const bool is_refused = std::abs(claim.width * claim.height) > most_pixels_at_all &&
                            ((claim.width > 0 && claim.line > 0) || claim.height > 0);
    return claim.pixels() <= few_pixels || is_refused ||
           (claim.pixels() <= most_decoded_pixels && fuzzing::is_one_in(inputs_for_one_large, bytes));
}

void draw(LoadTGA& reader) {
    if (claim_of(reader.Header()).pixels() > few_pixels ||
        std::abs(std::int64_t{reader.Width()} * reader.Height()) > few_pixels) {
        return;
    }
    reader.SetAutoscale(True);
    test::TestSurface whole(1, 1);
    if (fuzzing::succeeds([&] { reader.DrawTGA(whole); })) {
        fuzzing::require(whole.bitmap().width() == reader.Width() &&
                             whole.bitmap().height() == reader.Height(),
                         "an autoscaled surface has the picture's size");
    }
    test::TestSurface framed(20, 10, 24, 2);
    reader.SetAutoscale(False);
    fuzzing::succeeds([&] { reader.DrawTGA(framed); });
}

void read(LoadTGA& reader, std::span<const std::uint8_t> bytes) {
    const std::string path = fuzzing::scratch_file("input.tga", bytes);
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int16_t bpp = 0;
    const Truth answer = reader.GetInfoTGA(path, width, height, bpp);
    if (!is_worth_decoding(bytes) || !fuzzing::succeeds([&] { reader.Load(path); })) {
        return;
    }
    fuzzing::require(reader.IsTGA() == answer, "probe and reader agree on the format");
    fuzzing::require(reader.Header().ImageWidth == width && reader.Header().ImageHeight == height &&
                         reader.Bpp() == bpp,
                     "probe and reader agree on the size");
    if (fuzzing::is_one_in(inputs_for_one_drawn, bytes)) {
        draw(reader);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzzing::AtEnd cleanup([] { CBitmap::CurrentBitmap = nullptr; });
    LoadTGA reader;
    std::span<const std::uint8_t> rest(data, size);
    for (std::size_t files = 1;; ++files) {
        const auto end = std::search(rest.begin(), rest.end(), separator.begin(), separator.end());
        if (end == rest.end() || files == most_files) {
            read(reader, rest);
            return 0;
        }
        const auto length = static_cast<std::size_t>(end - rest.begin());
        read(reader, rest.first(length));
        rest = rest.subspan(length + separator.size());
    }
}
