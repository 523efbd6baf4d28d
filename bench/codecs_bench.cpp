// The PCX and TGA readers and writers on a drawing of flat areas: complete files, then the run-length coders
// compared with their reference implementations. The coders also run on a photograph, which has hardly any
// runs.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "core/codecs/LoadPCX.h"
#include "core/codecs/LoadTGA.h"
#include "core/codecs/SavePCX.h"
#include "core/codecs/SaveTGA.h"
#include "photographs.h"
#include "reference/LoadPCX.h"
#include "reference/LoadTGA.h"
#include "reference/TgaRle.h"

namespace varnoth::bench {
namespace {

constexpr std::int32_t side = photograph_side;

const test::TemporaryFolder& folder() {
    static const test::TemporaryFolder the_folder;
    return the_folder;
}

// A drawing of flat areas, which even the lossy TGA coder preserves.
PictureSurface& drawing() {
    static const auto surface = test::random_surface(side, side, test::Character::Runs, 5);
    return *surface;
}

std::string pcx_path(bool compressed) {
    const std::string path = folder().file(compressed ? "packed.pcx" : "plain.pcx");
    SavePCX().SavePCXinFile(path, drawing(), compressed ? True : False);
    return path;
}

std::string tga_path(bool compressed) {
    const std::string path = folder().file(compressed ? "packed.tga" : "plain.tga");
    SaveTGA().SaveTGAinFile(path, drawing(), compressed ? True : False);
    return path;
}

void load_pcx(benchmark::State& state, bool compressed) {
    const std::string path = pcx_path(compressed);
    test::TestSurface target(1, 1);
    for (auto _ : state) {
        LoadPCX reader;
        reader.Load(path);
        reader.DrawPCX(target);
    }
}

void load_tga(benchmark::State& state, bool compressed) {
    const std::string path = tga_path(compressed);
    test::TestSurface target(1, 1);
    for (auto _ : state) {
        LoadTGA reader;
        reader.Load(path);
        reader.DrawTGA(target);
    }
}

void save_pcx(benchmark::State& state, bool compressed) {
    for (auto _ : state) {
        pcx_path(compressed);
    }
}

void save_tga(benchmark::State& state, bool compressed) {
    for (auto _ : state) {
        tga_path(compressed);
    }
}

using Bytes = std::vector<std::uint8_t>;

// The three channel bytes of every pixel of the drawing.
const Bytes& drawing_bytes() {
    static const Bytes bytes = [] {
        Bytes made;
        for (const Colour colour : test::colours_of(drawing())) {
            made.insert(made.end(), {blue_of(colour), green_of(colour), red_of(colour)});
        }
        return made;
    }();
    return bytes;
}

Bytes with_spare_byte(const ByteArray& bytes) {
    Bytes result(bytes.bytes().begin(), bytes.bytes().end());
    result.push_back(0);
    return result;
}

const Bytes& pcx_runs() {
    static const Bytes bytes = with_spare_byte(SavePCX::EncodeRle(drawing_bytes(), 3 * side));
    return bytes;
}

const Bytes& tga_runs() {
    static const Bytes bytes = with_spare_byte(SaveTGA::EncodeRle(drawing_bytes(), side));
    return bytes;
}

// Calls a coder repeatedly.
template <typename Code>
void repeat(benchmark::State& state, Code code) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(code());
    }
}

void add(const std::string& name, void (*run)(benchmark::State&, bool)) {
    benchmark::RegisterBenchmark((name + ", uncompressed/shipped").c_str(), run, false);
    benchmark::RegisterBenchmark((name + ", compressed/shipped").c_str(), run, true);
}

template <typename Shipped, typename Reference>
void add_coder(const std::string& name, Shipped shipped, Reference reference) {
    benchmark::RegisterBenchmark((name + "/shipped").c_str(),
                                 [=](benchmark::State& state) { repeat(state, shipped); });
    benchmark::RegisterBenchmark((name + "/reference").c_str(),
                                 [=](benchmark::State& state) { repeat(state, reference); });
}

// A single colour, as large as a sheet of many pictures.
constexpr std::int32_t area_side = 1024;

const Bytes& area_bytes() {
    static const Bytes bytes(std::size_t{3} * area_side * area_side, 100);
    return bytes;
}

// Speed counts bytes of unpacked pixels.
template <typename Code>
void add_speed(const std::string& what, Code code) {
    benchmark::RegisterBenchmark(what.c_str(), [=](benchmark::State& state) {
        repeat(state, code);
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(area_bytes().size()));
    });
}

void add_flat_area() {
    static const Bytes pcx = with_spare_byte(SavePCX::EncodeRle(area_bytes(), 3 * area_side));
    static const Bytes tga = with_spare_byte(SaveTGA::EncodeRle(area_bytes(), area_side));
    add_speed("PCX encoder, flat area/shipped",
              [] { return SavePCX::EncodeRle(area_bytes(), 3 * area_side); });
    add_speed("TGA encoder, flat area/shipped", [] { return SaveTGA::EncodeRle(area_bytes(), area_side); });
    add_speed("PCX decoder, flat area/shipped", [] { return LoadPCX::DecodeRle(pcx); });
    add_speed("TGA decoder, flat area/shipped",
              [] { return LoadTGA::DecodeRle(tga, 24, area_side, area_side); });
    add_speed("copy of the same bytes/shipped", [] { return Bytes(area_bytes()); });
}

void add_all() {
    add_flat_area();
    add("read PCX", load_pcx);
    add("read TGA", load_tga);
    add("write PCX", save_pcx);
    add("write TGA", save_tga);
    static const Bytes photograph_pixels = photograph_bytes(0);
    add_coder(
        "TGA run-length encoder, drawing", [] { return SaveTGA::EncodeRle(drawing_bytes(), side); },
        [] { return reference::encode_tga_rle(drawing_bytes(), side); });
    add_coder(
        "PCX run-length decoder, drawing", [] { return LoadPCX::DecodeRle(pcx_runs()); },
        [] { return reference::decode_pcx_rle(pcx_runs()); });
    add_coder(
        "TGA run-length decoder, drawing", [] { return LoadTGA::DecodeRle(tga_runs(), 24, side, side); },
        [] { return reference::decode_tga_rle(tga_runs(), 3, 3 * side * side); });
    static const Bytes planes = [] {
        Bytes made = photograph_pixels;
        made.resize(std::size_t{side} / 2 * side);
        return made;
    }();
    add_coder(
        "PCX plane merger", [] { return LoadPCX::MergePlanes(planes, side / 8, side, side); },
        [] { return reference::merge_pcx_planes(planes, side / 8, side, side); });
}

} // namespace
} // namespace varnoth::bench

int main(int argc, char** argv) {
    varnoth::bench::add_all();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
