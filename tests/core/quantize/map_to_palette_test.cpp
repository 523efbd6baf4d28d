#include "core/quantize/map_to_palette.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <random>

#include <gtest/gtest.h>

#include "reference/BlueNoiseDither.h"
#include "reference/NearestEntry.h"
#include "support/expect_failure.h"
#include "support/pictures.h"
#include "support/pixel_bytes.h"
#include "support/thoroughness.h"

namespace varnoth::test {
namespace {

constexpr Dither all_methods[] = {Dither::None, Dither::Ordered, Dither::BlueNoise, Dither::FloydSteinberg};

// What indices hold before, which no palette of the tests reaches.
constexpr std::uint8_t untouched = 255;

struct Sample {
    std::int32_t width = 0;
    std::int32_t height = 0;
    Colours colours;
    Bytes opaque;

    std::size_t at(std::int32_t x, std::int32_t y) const { return static_cast<std::size_t>(y * width + x); }
};

Sample random_sample(std::int32_t width, std::int32_t height, Character character, std::uint32_t seed) {
    return {width,
            height,
            random_colours(static_cast<std::size_t>(width * height), static_cast<std::size_t>(width),
                           character, seed),
            {}};
}

Sample flat(std::int32_t width, std::int32_t height, Colour colour) {
    return {width, height, Colours(static_cast<std::size_t>(width * height), colour), {}};
}

// Two of three pixels are opaque.
Sample with_holes(Sample sample, std::uint32_t seed) {
    std::mt19937 random(seed);
    for (std::size_t i = 0; i < sample.colours.size(); ++i) {
        sample.opaque.push_back(random() % 3 == 0 ? 0 : 255);
    }
    return sample;
}

Bytes map(const Sample& sample, const std::vector<RGBQUAD>& palette, Dither method, int strength = 100) {
    Bytes indices(sample.colours.size(), untouched);
    const Bytes pixels = pixel_bytes(sample.colours);
    map_to_palette({pixels, sample.opaque, sample.width, sample.height}, NearestEntry(palette),
                   {method, strength}, indices);
    return indices;
}

std::vector<RGBQUAD> random_palette(std::size_t count, std::uint32_t seed) {
    std::mt19937 random(seed);
    Colours entries(count);
    for (Colour& entry : entries) {
        entry = static_cast<Colour>(random() % 0x1000000);
    }
    return palette_of(entries);
}

// Six levels in each channel, in steps of 51.
std::vector<RGBQUAD> cube_palette() {
    std::vector<RGBQUAD> palette;
    for (int i = 0; i < 216; ++i) {
        palette.push_back({static_cast<std::uint8_t>(i / 36 * 51), static_cast<std::uint8_t>(i / 6 % 6 * 51),
                           static_cast<std::uint8_t>(i % 6 * 51), 0});
    }
    return palette;
}

TEST(MapToPalette, WithoutDitherEveryPixelGetsTheNearestEntry) {
    const Sample sample = random_sample(40, 30, Character::Noise, 1);
    const std::vector<RGBQUAD> palette = random_palette(50, 2);
    const Bytes indices = map(sample, palette, Dither::None);
    for (std::size_t i = 0; i < indices.size(); ++i) {
        ASSERT_EQ(indices[i], reference::nearest_entry(palette, sample.colours[i])) << i;
    }
}

TEST(MapToPalette, ColoursOfThePaletteKeepTheirEntries) {
    const Colours entries = colours_of(random_palette(200, 3));
    Sample sample{37, 41, {}, {}};
    std::mt19937 random(4);
    Bytes expected;
    for (std::int32_t i = 0; i < 37 * 41; ++i) {
        expected.push_back(static_cast<std::uint8_t>(random() % entries.size()));
        sample.colours.push_back(entries[expected.back()]);
    }
    for (const Dither method : all_methods) {
        EXPECT_EQ(map(sample, palette_of(entries), method), expected) << static_cast<int>(method);
    }
}

TEST(MapToPalette, StrengthOf0IsNoDither) {
    const Sample sample = random_sample(60, 50, Character::Smooth, 5);
    const std::vector<RGBQUAD> palette = random_palette(30, 6);
    for (const Dither method : all_methods) {
        EXPECT_EQ(map(sample, palette, method, 0), map(sample, palette, Dither::None));
    }
}

TEST(MapToPalette, EveryDitherAndStrengthDiffers) {
    const Sample sample = random_sample(60, 50, Character::Smooth, 5);
    const std::vector<RGBQUAD> palette = random_palette(30, 6);
    std::vector<Bytes> results{map(sample, palette, Dither::None)};
    for (const Dither method : {Dither::Ordered, Dither::BlueNoise, Dither::FloydSteinberg}) {
        for (const int strength : {50, 100}) {
            results.push_back(map(sample, palette, method, strength));
        }
    }
    std::ranges::sort(results);
    EXPECT_EQ(std::ranges::adjacent_find(results), results.end());
}

// The mean of the chosen entries, and how far it may be from a colour between the entries of the cube.
void expect_mean(Dither method, double most) {
    std::mt19937 random(7);
    for (int i = 0; i < 10; ++i) {
        const auto colour = static_cast<Colour>(random() % 0x1000000);
        const std::vector<RGBQUAD> palette = cube_palette();
        std::array<double, 3> sums{};
        for (const std::uint8_t index : map(flat(96, 96, colour), palette, method)) {
            sums[0] += palette[index].rgbRed;
            sums[1] += palette[index].rgbGreen;
            sums[2] += palette[index].rgbBlue;
        }
        EXPECT_NEAR(sums[0] / (96 * 96), red_of(colour), most);
        EXPECT_NEAR(sums[1] / (96 * 96), green_of(colour), most);
        EXPECT_NEAR(sums[2] / (96 * 96), blue_of(colour), most);
    }
}

TEST(MapToPalette, OrderedMeanIsWithinAnEighthOfTheStep) {
    expect_mean(Dither::Ordered, 51.0 / 8);
}

TEST(MapToPalette, BlueNoiseMeanIsWithinALevelAndAHalf) {
    expect_mean(Dither::BlueNoise, 1.5);
}

TEST(MapToPalette, FloydSteinbergMeanIsWithinHalfALevel) {
    expect_mean(Dither::FloydSteinberg, 0.5);
}

TEST(MapToPalette, TransparentPixelsKeepTheirIndices) {
    const Sample sample = with_holes(random_sample(50, 40, Character::Smooth, 8), 9);
    for (const Dither method : all_methods) {
        const Bytes indices = map(sample, random_palette(255, 10), method);
        for (std::size_t i = 0; i < indices.size(); ++i) {
            ASSERT_EQ(indices[i] == untouched, sample.opaque[i] == 0)
                << static_cast<int>(method) << ", " << i;
        }
    }
}

TEST(MapToPalette, ColoursOfTransparentPixelsAffectNothing) {
    Sample sample = with_holes(random_sample(50, 40, Character::Smooth, 8), 9);
    Sample other = sample;
    for (std::size_t i = 0; i < other.colours.size(); ++i) {
        other.colours[i] = other.opaque[i] == 0 ? 0xFFFFFF - other.colours[i] : other.colours[i];
    }
    for (const Dither method : all_methods) {
        const std::vector<RGBQUAD> palette = random_palette(40, 10);
        EXPECT_EQ(map(sample, palette, method), map(other, palette, method));
    }
}

TEST(MapToPalette, FourthByteOfPixelsAffectsNothing) {
    const Sample sample = random_sample(30, 30, Character::Smooth, 11);
    const NearestEntry nearest(random_palette(20, 12));
    Bytes pixels = pixel_bytes(sample.colours);
    for (const Dither method : all_methods) {
        Bytes first(900);
        Bytes second(900);
        map_to_palette({pixels, {}, 30, 30}, nearest, {method, 100}, first);
        for (std::size_t i = 3; i < pixels.size(); i += 4) {
            pixels[i] = static_cast<std::uint8_t>(255 - pixels[i]);
        }
        map_to_palette({pixels, {}, 30, 30}, nearest, {method, 100}, second);
        EXPECT_EQ(first, second);
    }
}

// The pixels whose index differs after the colour of one has changed, as the largest distance in rows or
// columns.
std::int32_t reach_of_change(const Sample& sample, Dither method, std::int32_t x, std::int32_t y) {
    Sample changed = sample;
    changed.colours[sample.at(x, y)] ^= 0x808080;
    const std::vector<RGBQUAD> palette = random_palette(60, 13);
    const Bytes before = map(sample, palette, method);
    const Bytes after = map(changed, palette, method);
    std::int32_t reach = -1;
    for (std::int32_t row = 0; row < sample.height; ++row) {
        for (std::int32_t column = 0; column < sample.width; ++column) {
            if (before[sample.at(column, row)] != after[sample.at(column, row)]) {
                reach = std::max({reach, std::abs(column - x), std::abs(row - y)});
            }
        }
    }
    return reach;
}

std::int32_t largest_reach(Dither method) {
    std::int32_t largest = -1;
    for (std::uint32_t seed = 0; seed < cases(20U); ++seed) {
        const Sample sample = random_sample(100, 90, Character::Smooth, seed);
        largest =
            std::max(largest, reach_of_change(sample, method, static_cast<std::int32_t>(20 + seed), 31));
    }
    return largest;
}

TEST(MapToPalette, WithoutDitherAndOrderedAChangeStaysInItsPixel) {
    EXPECT_EQ(largest_reach(Dither::None), 0);
    EXPECT_EQ(largest_reach(Dither::Ordered), 0);
}

TEST(MapToPalette, BlueNoiseChangeStaysWithinTenPixels) {
    EXPECT_LE(largest_reach(Dither::BlueNoise), 10);
}

TEST(MapToPalette, BlueNoiseMatchesTheReference) {
    std::uint32_t seed = 0;
    for (const auto& [width, height] : {std::pair{1, 1}, {1, 9}, {3, 2}, {64, 64}, {65, 130}, {130, 20}}) {
        for (const Character character : {Character::Noise, Character::Smooth, Character::Grey}) {
            const Sample plain = random_sample(width, height, character, seed++);
            for (const Sample& sample : {plain, with_holes(plain, seed)}) {
                const std::vector<RGBQUAD> palette = random_palette(1 + seed * 7 % 100, seed);
                const int strength = seed % 2 == 0 ? 100 : 60;
                Bytes expected(sample.colours.size(), untouched);
                const Bytes pixels = pixel_bytes(sample.colours);
                reference::dither_blue_noise({pixels, sample.opaque, width, height}, palette, strength,
                                             expected);
                ASSERT_EQ(map(sample, palette, Dither::BlueNoise, strength), expected) << seed;
            }
        }
    }
}

TEST(MapToPalette, OrderedHalfToneIsAChequerboard) {
    Bytes expected;
    for (std::size_t i = 0; i < 16 * 16; ++i) {
        expected.push_back(static_cast<std::uint8_t>((i / 16 + i) % 2));
    }
    EXPECT_EQ(map(flat(16, 16, grey(127)), palette_of({grey(0), grey(255)}), Dither::Ordered), expected);
    // The order of the entries makes no difference.
    for (std::uint8_t& index : expected) {
        index = 1 - index;
    }
    EXPECT_EQ(map(flat(16, 16, grey(127)), palette_of({grey(255), grey(0)}), Dither::Ordered), expected);
}

TEST(MapToPalette, FloydSteinbergPassesErrorsAheadAndBelow) {
    // Computed apart from the program: 7/16 ahead, 3/16, 5/16 and 1/16 below; every other row runs to the
    // left.
    const Bytes expected{0, 0, 0, 0, 0, 1, 0, 1, 0, 1, 1, 1, //
                         0, 0, 0, 0, 1, 0, 1, 0, 1, 1, 1, 1, //
                         0, 0, 1, 0, 0, 1, 0, 1, 0, 1, 0, 1, //
                         0, 0, 0, 0, 1, 0, 1, 0, 1, 1, 1, 1, //
                         0, 0, 1, 0, 0, 1, 0, 1, 1, 0, 1, 1};
    Sample ramp{12, 5, {}, {}};
    for (int i = 0; i < 12 * 5; ++i) {
        ramp.colours.push_back(grey(20 * (i % 12) + 5 * (i / 12)));
    }
    EXPECT_EQ(map(ramp, palette_of({grey(0), grey(255)}), Dither::FloydSteinberg), expected);
}

TEST(MapToPalette, ColourOutsideThePaletteDoesNotSmear) {
    // White beyond the brightest grey; what follows is a palette colour.
    Sample sample = flat(40, 40, grey(255));
    std::fill(sample.colours.begin() + 20 * 40, sample.colours.end(), grey(100));
    const std::vector<RGBQUAD> palette = palette_of({grey(90), grey(100), grey(110)});
    for (const Dither method : {Dither::BlueNoise, Dither::FloydSteinberg}) {
        const Bytes indices = map(sample, palette, method);
        EXPECT_EQ(std::count(indices.begin() + 24 * 40, indices.end(), 1), 16 * 40)
            << static_cast<int>(method);
    }
}

TEST(MapToPalette, FloydSteinbergErrorsAreLimited) {
    // To three times the distance of the entries, the root of 3: 5 levels.
    const std::vector<RGBQUAD> palette = palette_of({grey(100), grey(101)});
    const auto after_white = [&](Colour colour) {
        return map({2, 1, {grey(255), colour}, {}}, palette, Dither::FloydSteinberg)[1];
    };
    EXPECT_EQ(after_white(grey(95)), 0);
    EXPECT_EQ(after_white(grey(96)), 1);
}

// Maps a sample of which some pixels keep their indices.
Bytes map_others(const Sample& sample, const std::vector<RGBQUAD>& palette, Dither method, const Bytes& kept,
                 const Bytes& before, BandListener* listener = nullptr) {
    Bytes indices(sample.colours.size(), untouched);
    const Bytes pixels = pixel_bytes(sample.colours);
    map_to_palette({pixels, sample.opaque, sample.width, sample.height, kept, before}, NearestEntry(palette),
                   {method, 100}, indices, listener);
    return indices;
}

Bytes random_bytes(std::size_t count, std::uint32_t below, std::uint32_t seed) {
    std::mt19937 random(seed);
    Bytes bytes(count);
    std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(random() % below); });
    return bytes;
}

TEST(MapToPalette, ErrorDiffusionGivesKeptPixelsTheIndexOfThePictureBefore) {
    const Sample sample = random_sample(70, 40, Character::Smooth, 14);
    const Bytes kept = random_bytes(sample.colours.size(), 2, 15);
    const Bytes before = random_bytes(sample.colours.size(), 30, 16);
    for (const Dither method : {Dither::BlueNoise, Dither::FloydSteinberg}) {
        const Bytes after = map_others(sample, random_palette(30, 17), method, kept, before);
        EXPECT_NE(after, before);
        for (std::size_t i = 0; i < kept.size(); ++i) {
            ASSERT_TRUE(kept[i] == 0 || after[i] == before[i]) << i;
        }
    }
}

TEST(MapToPalette, KeptPixelsPassTheirErrorsOn) {
    const Sample plain = random_sample(70, 40, Character::Smooth, 18);
    const std::vector<RGBQUAD> palette = random_palette(30, 19);
    for (const Sample& sample : {plain, with_holes(plain, 20)}) {
        for (const Dither method : {Dither::BlueNoise, Dither::FloydSteinberg}) {
            const Bytes expected = map(sample, palette, method);
            const Bytes kept = random_bytes(expected.size(), 2, 21);
            EXPECT_EQ(map_others(sample, palette, method, kept, expected), expected);
        }
    }
}

// Notes the indices after each band.
class BandRecorder : public BandListener {
  public:
    explicit BandRecorder(const Bytes& indices) : indices_(indices) {}

    void before_band(std::size_t band) override { EXPECT_EQ(band, after.size()); }

    void after_band(std::size_t band) override {
        EXPECT_EQ(band, after.size());
        after.push_back(indices_);
    }

    std::vector<Bytes> after;

  private:
    const Bytes& indices_;
};

// Reveals the indices of the picture before when a band needs them.
class BandRevealer : public BandListener {
  public:
    explicit BandRevealer(std::vector<Bytes> after)
        : revealed(after[0].size(), 0), after_(std::move(after)) {}

    void before_band(std::size_t band) override { std::ranges::copy(after_.at(band), revealed.begin()); }

    void after_band(std::size_t band) override { last = band; }

    Bytes revealed;
    std::size_t last = 0;

  private:
    std::vector<Bytes> after_;
};

TEST(MapToPalette, EachBandNeedsOnlyTheSameBandOfThePictureBefore) {
    const Sample first = random_sample(70, 90, Character::Smooth, 24);
    Sample second = first;
    std::fill(second.colours.begin() + 2000, second.colours.begin() + 3000, 0x123456);
    const std::vector<RGBQUAD> palette = random_palette(30, 25);
    const Bytes pixels = pixel_bytes(first.colours);
    for (const Dither method : {Dither::BlueNoise, Dither::FloydSteinberg}) {
        Bytes before(first.colours.size(), untouched);
        BandRecorder recorder(before);
        map_to_palette({pixels, {}, 70, 90}, NearestEntry(palette), {method, 100}, before, &recorder);
        EXPECT_GT(recorder.after.size(), 4U);
        Bytes kept(before.size(), 1);
        std::fill(kept.begin() + 2000, kept.begin() + 3000, std::uint8_t{0});
        BandRevealer revealer(recorder.after);
        EXPECT_EQ(map_others(second, palette, method, kept, revealer.revealed, &revealer),
                  map_others(second, palette, method, kept, before));
        EXPECT_EQ(revealer.last, recorder.after.size() - 1);
    }
}

TEST(MapToPalette, WithoutErrorDiffusionKeptPixelsAreMapped) {
    const Sample sample = random_sample(30, 20, Character::Smooth, 22);
    const std::vector<RGBQUAD> palette = random_palette(30, 23);
    const Bytes kept(sample.colours.size(), 1);
    for (const Dither method : {Dither::None, Dither::Ordered}) {
        EXPECT_EQ(map_others(sample, palette, method, kept, Bytes(kept.size())),
                  map(sample, palette, method));
    }
}

TEST(UnchangedPixels, AreOpaqueInBothAndOfOneColour) {
    Bytes before{1, 2, 3, 4, 5, 6, 7, 8, 9, 9, 9, 9, 1, 1, 1, 1, 2, 2, 2, 2};
    Bytes after{1, 2, 3, 0, 5, 6, 0, 8, 9, 9, 9, 9, 1, 1, 1, 1, 0, 2, 2, 2};
    const Bytes opaque_before{1, 1, 0, 1, 1};
    const Bytes opaque_after{1, 1, 1, 0, 1};
    EXPECT_EQ(unchanged_pixels({before, {}, 5, 1}, {after, {}, 5, 1}), (Bytes{1, 0, 1, 1, 0}));
    EXPECT_EQ(unchanged_pixels({before, opaque_before, 5, 1}, {after, opaque_after, 5, 1}),
              (Bytes{1, 0, 0, 0, 0}));
}

TEST(UnchangedPixels, AreNoneInAPictureOfAnotherShape) {
    const Bytes pixels(24);
    const Bytes larger(36);
    EXPECT_EQ(unchanged_pixels({larger, {}, 3, 3}, {pixels, {}, 3, 2}), Bytes());
    EXPECT_EQ(unchanged_pixels({larger, {}, 3, 3}, {pixels, {}, 2, 3}), Bytes());
    EXPECT_EQ(unchanged_pixels({pixels, {}, 3, 2}, {pixels, {}, 3, 2}), Bytes(6, 1));
}

TEST(UnchangedPixels, AreNoneIfFewerThanASixteenthOfTheOpaqueOnes) {
    for (const std::size_t opaque_count : {32U, 33U}) {
        const Bytes pixels(4 * 40);
        Bytes before = pixels;
        std::fill(before.begin() + 4 * 2, before.end(), std::uint8_t{1});
        Bytes opaque(40);
        std::fill_n(opaque.begin(), opaque_count, std::uint8_t{1});
        EXPECT_EQ(unchanged_pixels({before, {}, 40, 1}, {pixels, opaque, 40, 1}).empty(), opaque_count == 33);
    }
}

TEST(MapToPalette, SizesThatDoNotMatchFail) {
    const NearestEntry nearest(random_palette(2, 1));
    const Bytes six(6);
    Bytes indices(6);
    const Bytes pixels(24);
    for (const PixelView& wrong :
         {PixelView{pixels, {}, 3, 3}, PixelView{six, {}, 3, 2},
          PixelView{pixels, std::span(six).first(5), 3, 2}, PixelView{pixels, {}, -3, -2},
          PixelView{pixels, {}, 3, 2, std::span(six).first(5), six},
          PixelView{pixels, {}, 3, 2, six, std::span(six).first(5)}}) {
        EXPECT_FAILURE(map_to_palette(wrong, nearest, {}, indices), InvalidProcedureCall);
    }
    EXPECT_FAILURE(map_to_palette({pixels, {}, 3, 2}, nearest, {}, std::span(indices).first(5)),
                   InvalidProcedureCall);
    EXPECT_EQ(failure_in([&] { map_to_palette({pixels, six, 3, 2}, nearest, {}, indices); }), std::nullopt);
}

TEST(MapToPalette, StrengthOutside0To100Fails) {
    const NearestEntry nearest(random_palette(2, 1));
    Bytes index(1);
    for (const int strength : {-1, 101}) {
        EXPECT_FAILURE(map_to_palette({Bytes(4), {}, 1, 1}, nearest, {Dither::Ordered, strength}, index),
                       InvalidProcedureCall);
    }
}

TEST(MapToPalette, PictureWithoutPixelsIsNothingToDo) {
    const NearestEntry nearest(random_palette(2, 1));
    for (const Dither method : all_methods) {
        EXPECT_EQ(failure_in([&] {
                      map_to_palette({{}, {}, 0, 5}, nearest, {method, 100}, {});
                  }),
                  std::nullopt);
        EXPECT_EQ(failure_in([&] {
                      map_to_palette({{}, {}, 5, 0}, nearest, {method, 100}, {});
                  }),
                  std::nullopt);
    }
}

} // namespace
} // namespace varnoth::test
