// The input is a PCX file, which is probed, decoded and drawn.
#include <algorithm>
#include <array>
#include <cstdlib>

#include "core/codecs/CBitmap.h"
#include "core/codecs/LoadPCX.h"
#include "fuzzing.h"

namespace {

using namespace varnoth;

constexpr std::int64_t few_pixels = 1 << 9;
constexpr std::int64_t most_decoded_pixels = 1 << 14;
constexpr std::int64_t most_pixels_at_all = 1 << 29;
constexpr std::int64_t most_row_bytes = 1 << 18;
constexpr std::uint32_t inputs_for_one_large = 64;
constexpr std::uint32_t inputs_for_one_drawn = 64;

struct Probe {
    Truth answer = False;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int16_t bpp = 0;

    std::int64_t pixels() const { return std::abs(std::int64_t{width} * height); }
};

// The size of all rows, from the line length in the header, which need not match the width.
std::int64_t row_bytes(const Probe& probe, std::span<const std::uint8_t> bytes) {
    std::array<std::uint8_t, PcxHeader::size> start{}; // bytes missing from the file count as zero
    std::copy_n(bytes.begin(), std::min(bytes.size(), start.size()), start.begin());
    const PcxHeader header = PcxHeader::from_bytes(start);
    return std::abs(std::int64_t{header.NPlanes} * header.BytesPerLine * probe.height);
}

// A small file may declare a picture of up to 2 GiB; decoding that takes seconds and finds nothing more.
// Larger pictures are refused before memory is allocated, unless both sides are negative or two pixels share
// a byte.
bool is_worth_decoding(const Probe& probe, std::span<const std::uint8_t> bytes) {
    const std::int64_t pixels = probe.pixels();
    const bool is_refused =
        pixels > most_pixels_at_all && probe.bpp != 4 && (probe.width > 0 || probe.height > 0);
    const bool is_small = (pixels <= few_pixels || is_refused) && row_bytes(probe, bytes) <= most_row_bytes;
    return is_small || (pixels <= most_decoded_pixels && row_bytes(probe, bytes) <= 16 * most_row_bytes &&
                        fuzzing::is_one_in(inputs_for_one_large, bytes));
}

void draw(LoadPCX& reader) {
    test::TestSurface whole(1, 1);
    if (fuzzing::succeeds([&] { reader.DrawPCX(whole); })) {
        fuzzing::require(whole.bitmap().width() == reader.Width() &&
                             whole.bitmap().height() == reader.Height(),
                         "an autoscaled surface has the picture's size");
    }
    test::TestSurface framed(20, 10, 24, 2);
    reader.SetAutoscale(False);
    fuzzing::succeeds([&] { reader.DrawPCX(framed); });
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string path = fuzzing::scratch_file("input.pcx", {data, size});
    const fuzzing::AtEnd cleanup([] { CBitmap::CurrentBitmap = nullptr; });
    LoadPCX reader;
    Probe probe;
    probe.answer = reader.GetInfoPCX(path, probe.width, probe.height, probe.bpp);
    if (!is_worth_decoding(probe, {data, size}) || !fuzzing::succeeds([&] { reader.Load(path); })) {
        return 0;
    }
    fuzzing::require(reader.IsPCX() == probe.answer, "probe and reader agree on the format");
    fuzzing::require(reader.Width() == probe.width && reader.Height() == probe.height &&
                         reader.Bpp() == probe.bpp,
                     "probe and reader agree on the size");
    if (probe.pixels() <= few_pixels && fuzzing::is_one_in(inputs_for_one_drawn, {data, size})) {
        draw(reader);
    }
    return 0;
}
