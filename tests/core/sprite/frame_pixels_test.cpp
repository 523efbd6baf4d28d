#include "core/sprite/frame_pixels.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

namespace varnoth {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Pixels = std::vector<std::uint32_t>;

constexpr std::uint32_t colour = 0x0A1428; // red 10, green 20, blue 40

RgbaPicture row(const Pixels& pixels) {
    return {static_cast<int>(pixels.size()), 1, pixels};
}

Pixels with_alpha_by(const Transparency& transparency, const Pixels& pixels) {
    RgbaPicture picture = row(pixels);
    set_alpha(picture, transparency);
    return picture.pixels;
}

Bytes bytes_of(const ByteArray& array) {
    return {array.bytes().begin(), array.bytes().end()};
}

TEST(Transparency, AlphaChangesNothing) {
    const Pixels pixels{0x00FFFFFF, 0x80000001};
    EXPECT_EQ(with_alpha_by({}, pixels), pixels);
}

TEST(Transparency, KeyReplacesTheAlphaChannel) {
    EXPECT_EQ(with_alpha_by({Transparency::By::Key, colour}, {0xFF0A1428, 0x000A1428, 0x010A1429}),
              (Pixels{0, 0, 0xFF0A1429}));
}

TEST(Transparency, CornerIsTheFirstPixelsColour) {
    EXPECT_EQ(with_alpha_by({Transparency::By::Corner}, {0x000A1428, 0xFF000000, 0xFF0A1428}),
              (Pixels{0, 0xFF000000, 0}));
    EXPECT_EQ(with_alpha_by({Transparency::By::Corner}, {}), Pixels());
}

TEST(Transparency, NoneMakesEverythingOpaque) {
    EXPECT_EQ(with_alpha_by({Transparency::By::None}, {0x000A1428, 0x80000000}),
              (Pixels{0xFF0A1428, 0xFF000000}));
}

TEST(FramePixels, AlphaTestIsOpaqueFromAlpha128On) {
    const FramePixels result = frame_pixels(row({0x7F0A1428, 0x800A1428, 0xFFFFC8AA}), RenderMode::AlphaTest);
    EXPECT_EQ(result.opaque, (Bytes{0, 1, 1}));
    EXPECT_EQ(result.pixels, (Bytes{40, 20, 10, 0, 40, 20, 10, 0, 170, 200, 255, 0}));
}

TEST(FramePixels, OtherModesBlendOverBlack) {
    for (const RenderMode mode : {RenderMode::Normal, RenderMode::Additive}) {
        const FramePixels result = frame_pixels(row({0x000A1428, 0x800A1428, 0xFF0A1428}), mode);
        EXPECT_TRUE(result.opaque.empty());
        EXPECT_EQ(result.pixels, (Bytes{0, 0, 0, 0, 20, 10, 5, 0, 40, 20, 10, 0}));
    }
}

TEST(FramePixels, TransparentPixelsOfAFrameAreThoseOfIndex255) {
    PaletteRecord palette;
    palette.Colours[7] = {10, 20, 40};
    palette.Colours[255] = {0, 0, 255};
    const Bytes indices{7, 255};
    EXPECT_EQ(picture_of_frame(indices, 2, 1, palette, RenderMode::AlphaTest).pixels,
              (Pixels{0xFF0A1428, 0}));
    EXPECT_EQ(picture_of_frame(indices, 2, 1, palette, RenderMode::Normal).pixels,
              (Pixels{0xFF0A1428, 0xFF0000FF}));
}

TEST(FrameMapper, OnlyTransparentPixelsGetIndex255) {
    std::vector<RGBQUAD> palette(256);
    palette[1] = {40, 20, 10, 0};
    palette[255] = {250, 0, 0, 0};
    const RgbaPicture picture = row({0xFF0A1428, 0x000A1428, 0xFF0000FA});
    for (const Dither dither : {Dither::None, Dither::Ordered, Dither::BlueNoise, Dither::FloydSteinberg}) {
        EXPECT_EQ(bytes_of(FrameMapper(palette, RenderMode::AlphaTest)
                               .indices(frame_pixels(picture, RenderMode::AlphaTest), {dither, 0})),
                  (Bytes{1, 255, 1}));
        EXPECT_EQ(bytes_of(FrameMapper(palette, RenderMode::Normal)
                               .indices(frame_pixels(picture, RenderMode::Normal), {dither, 0})),
                  (Bytes{1, 0, 255}));
    }
}

TEST(FrameMapper, EqualEntriesDoNotWeakenDithers) {
    std::vector<RGBQUAD> palette{{0, 0, 0, 0}, {0, 0, 0, 0}, {255, 255, 255, 0}, {255, 255, 255, 0}};
    const std::vector<RGBQUAD> distinct{palette[0], palette[2]};
    FramePixels grey{8, 8, Bytes(256, 100), {}};
    for (const Dither dither : {Dither::Ordered, Dither::BlueNoise, Dither::FloydSteinberg}) {
        Bytes expected = bytes_of(FrameMapper(distinct, RenderMode::Normal).indices(grey, {dither}));
        std::ranges::transform(expected, expected.begin(),
                               [](std::uint8_t index) { return static_cast<std::uint8_t>(2 * index); });
        EXPECT_EQ(bytes_of(FrameMapper(palette, RenderMode::Normal).indices(grey, {dither})), expected);
    }
}

TEST(FrameMapper, KeptPixelsHaveTheEntryOfTheFrameBefore) {
    const std::vector<RGBQUAD> palette{{0, 0, 0, 0}, {0, 0, 0, 0}, {255, 255, 255, 0}};
    const FrameMapper mapper(palette, RenderMode::AlphaTest);
    const FramePixels grey{4, 1, Bytes(16, 100), {1, 1, 1, 0}};
    const Bytes before{0, 1, 1, 255};
    for (const Dither dither : {Dither::BlueNoise, Dither::FloydSteinberg}) {
        Bytes entries(4);
        mapper.map(grey, {dither}, Bytes{1, 1, 1, 0}, before, entries);
        EXPECT_EQ(entries, before);
        mapper.to_indices(entries);
        EXPECT_EQ(entries, (Bytes{0, 2, 2, 255}));
    }
}

TEST(PaletteOfEntries, OtherEntriesAreBlack) {
    const std::vector<RGBQUAD> entries{{3, 2, 1, 0}};
    const PaletteRecord palette = palette_record(entries, RenderMode::Normal);
    EXPECT_EQ(palette.ColourCount, 256);
    EXPECT_EQ(palette.Colours[0], (PaletteColour{1, 2, 3}));
    EXPECT_EQ(palette.Colours[1], PaletteColour());
    EXPECT_EQ(palette.Colours[255], PaletteColour());
}

TEST(PaletteOfEntries, TransparentEntryIsBlueUnlessGiven) {
    std::vector<RGBQUAD> entries(255, {3, 2, 1, 0});
    EXPECT_EQ(palette_record(entries, RenderMode::AlphaTest).Colours[255], (PaletteColour{0, 0, 255}));
    entries.push_back({6, 5, 4, 0});
    EXPECT_EQ(palette_record(entries, RenderMode::AlphaTest).Colours[255], (PaletteColour{4, 5, 6}));
}

TEST(AlphaSummary, OpaquePicturesAreWhite) {
    AlphaSummary summary;
    summary.add(row({0xFF0A1428}));
    EXPECT_FALSE(summary.has_alpha);
    EXPECT_EQ(summary.colour(), (PaletteColour{255, 255, 255}));
}

TEST(AlphaSummary, ColourIsTheMeanWeightedByAlpha) {
    AlphaSummary one;
    one.add(row({0xC8FF0000, 0x00FFFFFF}));
    AlphaSummary both;
    both.add(row({0x6400FE00}));
    both.add(one);
    EXPECT_TRUE(both.has_alpha);
    EXPECT_EQ(both.colour(), (PaletteColour{170, 85, 0}));
}

TEST(AlphaSummary, InvisiblePicturesAreWhite) {
    AlphaSummary summary;
    summary.add(row({0x000A1428}));
    EXPECT_EQ(summary.colour(), (PaletteColour{255, 255, 255}));
}

TEST(AlphaIndices, AlphaOrBrightness) {
    const RgbaPicture picture = row({0xFF808080, 0x80FFFFFF, 0xFFFF0000, 0xFF00FF00, 0x00FFFFFF});
    EXPECT_EQ(bytes_of(alpha_indices(picture, true)), (Bytes{255, 128, 255, 255, 0}));
    EXPECT_EQ(bytes_of(alpha_indices(picture, false)), (Bytes{128, 128, 76, 150, 0}));
}

TEST(AlphaPalette, IsARampFromBlackToTheColour) {
    const PaletteRecord palette = alpha_palette({255, 51, 0});
    EXPECT_EQ(palette.ColourCount, 256);
    for (int i = 0; i < 256; ++i) {
        const PaletteColour& entry = palette.Colours[static_cast<std::size_t>(i)];
        EXPECT_EQ(entry.red, i);
        EXPECT_EQ(entry.green, (i + 2) / 5);
        EXPECT_EQ(entry.blue, 0);
    }
}

} // namespace
} // namespace varnoth
