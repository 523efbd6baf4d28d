// The steps of an import. Each processes 64 photographs, so the times add up to that of the whole import,
// which import_job measures.
#include <benchmark/benchmark.h>

#include "core/image/Picture.h"
#include "core/quantize/mDither8bpp.h"
#include "core/quantize/mixpals.h"
#include "core/services/Services.h"
#include "core/sprite/hlspr.h"
#include "photographs.h"
#include "platform.h"
#include "reference/Dither.h"
#include "reference/Import.h"

namespace varnoth::bench {
namespace {

constexpr std::size_t set_size = 64;

const test::TemporaryFolder& folder() {
    static const test::TemporaryFolder the_folder;
    return the_folder;
}

std::string photograph_path(std::size_t number) {
    return folder().file("photograph" + std::to_string(number) + ".bmp");
}

void decode(benchmark::State& state) {
    test::TestSurface surface(1, 1);
    surface.AutoSize = true;
    for (auto _ : state) {
        for (std::size_t i = 0; i < set_size; ++i) {
            surface.SetPicture(picture_loader().load(photograph_path(i)));
        }
    }
}

void stretch_shipped(benchmark::State& state) {
    const Surfaces& pictures = photographs(set_size);
    test::TestSurface frame(photograph_side, photograph_side);
    for (auto _ : state) {
        for (std::size_t i = 0; i < set_size; ++i) {
            const DrawingContext from(&pictures[i]->bitmap());
            stretch_blt(frame.hDC(), {0, 0, photograph_side, photograph_side}, from,
                        {0, 0, photograph_side, photograph_side}, SRCCOPY);
        }
    }
}

void stretch_reference(benchmark::State& state) {
    const Surfaces& pictures = photographs(set_size);
    test::TestSurface frame(photograph_side, photograph_side);
    for (auto _ : state) {
        for (std::size_t i = 0; i < set_size; ++i) {
            reference::stretch(*pictures[i], frame);
        }
    }
}

void collect_shipped(benchmark::State& state) {
    const Surfaces& pictures = reduced_photographs(set_size);
    for (auto _ : state) {
        mixpals::InitColorTable();
        for (std::size_t i = 0; i < set_size; ++i) {
            mixpals::AddPictureColors(*pictures[i]);
        }
    }
    state.counters["colours"] = mixpals::ColorCount;
}

void collect_reference(benchmark::State& state) {
    const Surfaces& pictures = reduced_photographs(set_size);
    reference::Mixpals mixing;
    for (auto _ : state) {
        mixing.InitColorTable();
        for (std::size_t i = 0; i < set_size; ++i) {
            mixing.AddPictureColors(*pictures[i]);
        }
    }
    state.counters["colours"] = mixing.ColorCount;
}

// Collects the colours of the whole set with mixpals, and copies them to the reference implementation.
reference::Mixpals collected_colours() {
    mixpals::InitColorTable();
    for (std::size_t i = 0; i < set_size; ++i) {
        mixpals::AddPictureColors(*reduced_photographs(set_size)[i]);
    }
    reference::Mixpals mixing;
    mixing.ColorTable = mixpals::ColorTable;
    mixing.ColorCount = mixpals::ColorCount;
    return mixing;
}

void sheet_shipped(benchmark::State& state) {
    collected_colours();
    test::TestSurface sheet(1, 1);
    for (auto _ : state) {
        mixpals::DrawColorTable(sheet);
    }
}

void sheet_reference(benchmark::State& state) {
    const reference::Mixpals mixing = collected_colours();
    test::TestSurface sheet(1, 1);
    for (auto _ : state) {
        mixing.DrawColorTable(sheet);
    }
}

std::unique_ptr<test::TestSurface> reduced_sheet() {
    collected_colours();
    auto sheet = std::make_unique<test::TestSurface>(1, 1);
    mixpals::DrawColorTable(*sheet);
    mDither8bpp().transform_to_8bit(*sheet, *sheet);
    return sheet;
}

void finalize_shipped(benchmark::State& state) {
    const auto sheet = reduced_sheet();
    for (auto _ : state) {
        mixpals::ImportPalette.fill({});
        mixpals::FinalizePalette(*sheet);
    }
}

void finalize_reference(benchmark::State& state) {
    const auto sheet = reduced_sheet();
    reference::Mixpals mixing;
    for (auto _ : state) {
        mixing.ImportPalette.fill({});
        mixing.FinalizePalette(*sheet);
    }
}

void frames_shipped(benchmark::State& state) {
    const Surfaces& pictures = reduced_photographs(set_size);
    mixpals::ImportPalette.fill({});
    mixpals::FinalizePalette(*reduced_sheet());
    for (auto _ : state) {
        hlspr::new_sprite(photograph_side, photograph_side, 2, 1);
        for (std::size_t i = 0; i < set_size; ++i) {
            hlspr::add_frame(*pictures[i]);
        }
    }
}

void frames_reference(benchmark::State& state) {
    const Surfaces& pictures = reduced_photographs(set_size);
    reference::Mixpals mixing;
    mixing.FinalizePalette(*reduced_sheet());
    for (auto _ : state) {
        hlspr::new_sprite(photograph_side, photograph_side, 2, 1);
        for (std::size_t i = 0; i < set_size; ++i) {
            reference::add_frame(hlspr::document(), *pictures[i], mixing);
        }
    }
}

BENCHMARK(decode)->Name("64 times decode/shipped");
BENCHMARK(stretch_shipped)->Name("64 times stretch/shipped");
BENCHMARK(stretch_reference)->Name("64 times stretch/reference");
BENCHMARK(collect_shipped)->Name("64 times AddPictureColors/shipped");
BENCHMARK(collect_reference)->Name("64 times AddPictureColors/reference")->Iterations(1)->Repetitions(3);
BENCHMARK(sheet_shipped)->Name("DrawColorTable/shipped");
BENCHMARK(sheet_reference)->Name("DrawColorTable/reference");
BENCHMARK(finalize_shipped)->Name("FinalizePalette/shipped");
BENCHMARK(finalize_reference)->Name("FinalizePalette/reference");
BENCHMARK(frames_shipped)->Name("64 times add_frame/shipped");
BENCHMARK(frames_reference)->Name("64 times add_frame/reference")->Iterations(1)->Repetitions(3);

} // namespace
} // namespace varnoth::bench

int main(int argc, char** argv) {
    const varnoth::bench::Platform platform(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::AddCustomContext("pictures decoded by", varnoth::bench::Platform::name());
    varnoth::bench::write_photographs(varnoth::bench::folder().path(), varnoth::bench::set_size);
    benchmark::RunSpecifiedBenchmarks();
}
