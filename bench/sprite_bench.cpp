// Loading and saving a sprite compared with reading and writing the same bytes, and drawing compared with
// copying the same pixels.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <random>

#include "core/sprite/hlspr.h"
#include "photographs.h"
#include "support/TemporaryFolder.h"

namespace varnoth::bench {
namespace {

constexpr std::int16_t most_frames = 1024; // a file of 64 MiB
constexpr std::int16_t few_frames = 16;    // fit in the processor's caches, as in a preview
constexpr std::size_t frame_pixels = std::size_t{photograph_side} * photograph_side;

const test::TemporaryFolder& folder() {
    static const test::TemporaryFolder the_folder;
    return the_folder;
}

// A sprite of many frames of noise in a random palette.
void make_sprite(std::int16_t frames) {
    hlspr::new_sprite(photograph_side, photograph_side, 2, 1);
    SpriteDocument& sprite = hlspr::document();
    std::mt19937 random(1);
    const auto byte = [&] { return static_cast<std::uint8_t>(random() >> 24); };
    for (PaletteColour& colour : sprite.Palette.Colours) {
        colour = {byte(), byte(), byte()};
    }
    sprite.SpriteHeader.FrameCount = frames;
    sprite.FrameStore.clear();
    sprite.FrameOrder.clear();
    for (std::int16_t number = 0; number < frames; ++number) {
        ByteArray indices(frame_pixels);
        for (std::uint8_t& index : indices.bytes()) {
            index = byte();
        }
        sprite.FrameStore.push_back(std::move(indices));
        sprite.FrameOrder.push_back(number);
    }
}

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

using File = std::unique_ptr<std::FILE, CloseFile>;

std::string saved_sprite() {
    static const std::string path = [] {
        make_sprite(most_frames);
        hlspr::save_sprite(folder().file("sprite.spr"));
        return folder().file("sprite.spr");
    }();
    return path;
}

void count_bytes(benchmark::State& state) {
    const auto size = static_cast<std::int64_t>(std::filesystem::file_size(saved_sprite()));
    state.SetBytesProcessed(state.iterations() * size);
}

void load_shipped(benchmark::State& state) {
    const std::string path = saved_sprite();
    for (auto _ : state) {
        if (hlspr::load_sprite(path) == False) {
            state.SkipWithError("the sprite does not load");
            break;
        }
    }
    count_bytes(state);
}

// Reads into newly allocated memory, as loading a sprite does.
void load_bytes(benchmark::State& state) {
    const std::string path = saved_sprite();
    const std::size_t size = std::filesystem::file_size(path);
    for (auto _ : state) {
        const auto bytes = std::make_unique_for_overwrite<std::uint8_t[]>(size);
        const File file(std::fopen(path.c_str(), "rb"));
        benchmark::DoNotOptimize(std::fread(bytes.get(), 1, size, file.get()));
        benchmark::ClobberMemory();
    }
    count_bytes(state);
}

void save_shipped(benchmark::State& state) {
    hlspr::load_sprite(saved_sprite());
    for (auto _ : state) {
        if (hlspr::save_sprite(folder().file("out.spr")) == False) {
            state.SkipWithError("the sprite is not saved");
            break;
        }
    }
    count_bytes(state);
}

// Replaces the old file, as saving does.
void save_bytes(benchmark::State& state) {
    const std::vector<std::uint8_t> bytes = test::read_file(saved_sprite());
    const std::string path = folder().file("out.bytes");
    for (auto _ : state) {
        std::filesystem::remove(path);
        const File file(std::fopen(path.c_str(), "wb"));
        benchmark::DoNotOptimize(std::fwrite(bytes.data(), 1, bytes.size(), file.get()));
    }
    count_bytes(state);
}

// Draws all frames in turn, as a preview does.
void draw_shipped(benchmark::State& state) {
    make_sprite(few_frames);
    test::TestSurface picture(photograph_side, photograph_side);
    std::int16_t position = 0;
    for (auto _ : state) {
        std::int16_t number = position;
        hlspr::draw_frame(number, picture);
        benchmark::ClobberMemory();
        position = static_cast<std::int16_t>((position + 1) % few_frames);
    }
}

// Copies the pixels of as many frames in turn.
void draw_copy(benchmark::State& state) {
    test::TestSurface picture(photograph_side, photograph_side);
    const std::vector<std::vector<std::uint8_t>> frames(few_frames,
                                                        std::vector<std::uint8_t>(4 * frame_pixels, 7));
    std::size_t position = 0;
    for (auto _ : state) {
        std::memcpy(picture.bitmap().bytes().data(), frames[position].data(), frames[position].size());
        benchmark::ClobberMemory();
        position = (position + 1) % frames.size();
    }
}

BENCHMARK(load_shipped)->Name("load_sprite, 64 MiB/shipped");
BENCHMARK(load_bytes)->Name("load_sprite, 64 MiB/same bytes");
BENCHMARK(save_shipped)->Name("save_sprite, 64 MiB/shipped");
BENCHMARK(save_bytes)->Name("save_sprite, 64 MiB/same bytes");
BENCHMARK(draw_shipped)->Name("draw_frame/shipped");
BENCHMARK(draw_copy)->Name("draw_frame/memcpy");

} // namespace
} // namespace varnoth::bench

BENCHMARK_MAIN();
