// The reduction of photographs to 256 colours each, and its steps.
#include <benchmark/benchmark.h>

#include "core/image/ProcessPicture1.h"
#include "core/image/cDIB.h"
#include "core/quantize/cPal8bpp.h"
#include "core/quantize/mDither8bpp.h"
#include "photographs.h"
#include "reference/Dither.h"
#include "reference/OptimalPalette.h"
#include "reference/ProcessPicture1.h"

namespace varnoth::bench {
namespace {

constexpr std::size_t set_size = 64;
constexpr std::int32_t sample_side = 150;

// One toolbox for the whole set, as in an import: its list of colours persists from picture to picture.
template <typename Toolbox>
void count_colours(benchmark::State& state, const Surfaces& pictures) {
    for (auto _ : state) {
        Toolbox toolbox;
        for (std::size_t i = 0; i < set_size; ++i) {
            benchmark::DoNotOptimize(toolbox.is_more_than_256(*pictures[i]));
        }
    }
}

void count_shipped(benchmark::State& state) {
    count_colours<ProcessPicture1>(state, photographs(set_size));
}

void count_reference(benchmark::State& state) {
    count_colours<reference::ProcessPicture1>(state, photographs(set_size));
}

// Pictures of at most 256 colours are scanned completely.
void count_to_end_shipped(benchmark::State& state) {
    count_colours<ProcessPicture1>(state, reduced_photographs(set_size));
}

void count_to_end_reference(benchmark::State& state) {
    count_colours<reference::ProcessPicture1>(state, reduced_photographs(set_size));
}

template <typename Reduce>
void reduce_all(benchmark::State& state, Reduce reduce) {
    const Surfaces& pictures = photographs(set_size);
    test::TestSurface target(photograph_side, photograph_side);
    for (auto _ : state) {
        for (std::size_t i = 0; i < set_size; ++i) {
            reduce(*pictures[i], target);
        }
    }
}

void reduce_shipped(benchmark::State& state) {
    mDither8bpp dither;
    reduce_all(state, [&](PictureSurface& source, PictureSurface& target) {
        dither.transform_to_8bit(source, target);
    });
}

void reduce_reference(benchmark::State& state) {
    reduce_all(state, [](PictureSurface& source, PictureSurface& target) {
        reference::transform_to_8bit(mDither8bpp::OptimalMode, source, target);
    });
}

// The input of the palette: the photograph, scaled to the size of a sample.
std::unique_ptr<cDIB> sample() {
    auto dib = std::make_unique<cDIB>();
    dib->CreateFromHdc(photographs(1)[0]->hDC(), photograph_side, photograph_side);
    dib->Resize(sample_side, sample_side, true);
    return dib;
}

void palette_shipped(benchmark::State& state) {
    const auto picture = sample();
    cPal8bpp palette;
    for (auto _ : state) {
        palette.CreateOptimal(*picture, 256, 8, 1.0F, 1.0F, 1.0F);
    }
}

void palette_reference(benchmark::State& state) {
    const auto picture = sample();
    for (auto _ : state) {
        benchmark::DoNotOptimize(reference::optimal_palette(*picture, 256, 8, 1.0F, 1.0F, 1.0F));
    }
}

void lookup_shipped(benchmark::State& state) {
    cPal8bpp palette;
    palette.CreateOptimal(*sample(), 256, 8, 1.0F, 1.0F, 1.0F);
    mDither8bpp dither;
    for (auto _ : state) {
        dither.BuildColorLookup(palette);
    }
}

void lookup_reference(benchmark::State& state) {
    const auto palette = reference::optimal_palette(*sample(), 256, 8, 1.0F, 1.0F, 1.0F);
    for (auto _ : state) {
        benchmark::DoNotOptimize(reference::color_lookup(palette.value().colors));
    }
}

BENCHMARK(count_shipped)->Name("64 times is_more_than_256/shipped");
BENCHMARK(count_reference)->Name("64 times is_more_than_256/reference");
BENCHMARK(count_to_end_shipped)->Name("64 times is_more_than_256 to the end/shipped");
BENCHMARK(count_to_end_reference)->Name("64 times is_more_than_256 to the end/reference");
BENCHMARK(reduce_shipped)->Name("64 times transform_to_8bit/shipped");
BENCHMARK(reduce_reference)->Name("64 times transform_to_8bit/reference")->Iterations(1)->Repetitions(3);
BENCHMARK(palette_shipped)->Name("CreateOptimal/shipped");
BENCHMARK(palette_reference)->Name("CreateOptimal/reference");
BENCHMARK(lookup_shipped)->Name("BuildColorLookup/shipped");
BENCHMARK(lookup_reference)->Name("BuildColorLookup/reference");

} // namespace
} // namespace varnoth::bench

BENCHMARK_MAIN();
