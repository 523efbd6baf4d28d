// Compares palette mixing with a reference implementation: tiny and degenerate pictures, then random imports.
#include <algorithm>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "core/quantize/mixpals.h"
#include "reference/Mixpals.h"
#include "support/expect_failure.h"
#include "support/pictures.h"
#include "support/sprites.h"
#include "support/thoroughness.h"

namespace varnoth::test {
namespace {

class MixpalsProperty : public testing::Test {
  protected:
    MixpalsProperty() { reset_mixpals(); }

    ~MixpalsProperty() override { reset_mixpals(); }

    void start_over(std::uint32_t seed) {
        reset_mixpals();
        plain = {};
        random.seed(seed);
    }

    std::uint32_t any(std::uint32_t limit) { return static_cast<std::uint32_t>(random() % limit); }

    std::int32_t side(std::uint32_t limit) { return static_cast<std::int32_t>(1 + any(limit)); }

    Character character() { return all_characters[any(6)]; }

    std::int32_t depth() {
        const std::uint32_t die = any(12);
        return die == 0 ? 16 : die < 3 ? 24 : 32;
    }

    void add(PictureSurface& picture) {
        bool shipped_added = false;
        bool plain_added = false;
        const auto shipped_failure = failure_in([&] { shipped_added = mixpals::AddPictureColors(picture); });
        const auto plain_failure = failure_in([&] { plain_added = plain.AddPictureColors(picture); });
        ASSERT_EQ(shipped_failure, plain_failure);
        ASSERT_EQ(shipped_added, plain_added);
        ASSERT_EQ(mixpals::ColorCount, plain.ColorCount);
        ASSERT_EQ(mixpals::ColorTable, plain.ColorTable);
    }

    // Both sheets lose colours in the same way where they have too many; what is left may still be too much.
    static void reduce(PictureSurface& sheet, Colour kept_bits) {
        for (std::int32_t y = 0; y < sheet.bitmap().height(); ++y) {
            for (std::int32_t x = 0; x < sheet.bitmap().width(); ++x) {
                sheet.PSet(x, y, sheet.Point(x, y) & kept_bits);
            }
        }
    }

    void finish() {
        mixpals::DrawColorTable(sheet);
        plain.DrawColorTable(plain_sheet);
        ASSERT_EQ(sheet.bitmap().width(), plain_sheet.bitmap().width());
        ASSERT_EQ(sheet.bitmap().height(), plain_sheet.bitmap().height());
        ASSERT_TRUE(std::ranges::equal(sheet.bitmap().bytes(), plain_sheet.bitmap().bytes()));
        if (mixpals::ColorCount > 255 && any(3) != 0) {
            reduce(sheet, 0xC0E0E0);
            reduce(plain_sheet, 0xC0E0E0);
        }
        const auto shipped_failure = failure_in([&] { mixpals::FinalizePalette(sheet); });
        const auto plain_failure = failure_in([&] { plain.FinalizePalette(plain_sheet); });
        ASSERT_EQ(shipped_failure, plain_failure);
        ASSERT_EQ(mixpals::ColorCount, plain.ColorCount);
        ASSERT_EQ(mixpals::ColorTable, plain.ColorTable);
        ASSERT_EQ(mixpals::ImportPalette, plain.ImportPalette);
        failed_imports += shipped_failure.has_value() ? 1 : 0;
    }

    void swap_transparent() {
        const Colour colour =
            any(2) == 0 ? colour_of(plain.ImportPalette[any(256)]) : static_cast<Colour>(any(0x1000000));
        mixpals::SwapTransparent(red_of(colour), green_of(colour), blue_of(colour));
        plain.SwapTransparent(red_of(colour), green_of(colour), blue_of(colour));
        ASSERT_EQ(mixpals::ImportPalette, plain.ImportPalette);
    }

    void ask(Colour colour) {
        const auto shipped_answer = [&] {
            return mixpals::nearest_index(red_of(colour), green_of(colour), blue_of(colour));
        };
        const auto plain_answer = [&] {
            return plain.nearest_index(red_of(colour), green_of(colour), blue_of(colour));
        };
        ASSERT_EQ(failure_in(shipped_answer), failure_in(plain_answer));
        if (!failure_in(plain_answer)) {
            ASSERT_EQ(shipped_answer(), plain_answer()) << colour;
            ASSERT_EQ(shipped_answer(), plain_answer()) << colour << ", asked again";
        }
    }

    void ask_many() {
        for (int i = 0; i < 40; ++i) {
            ask(static_cast<Colour>(any(0x1000000)));
            const RGBQUAD& entry = plain.ImportPalette[any(256)];
            ask(colour_of(entry));
            ask(make_colour(entry.rgbRed, entry.rgbGreen,
                            static_cast<std::uint8_t>(entry.rgbBlue ^ (1U << any(8)))));
        }
    }

    void import(std::uint32_t pictures, std::uint32_t largest_side) {
        mixpals::InitColorTable();
        plain.InitColorTable();
        for (std::uint32_t i = 0; i < pictures; ++i) {
            const std::int32_t width = side(largest_side);
            const std::int32_t height = side(largest_side);
            add(*random_surface(width, height, character(), any(1000000), depth()));
            if (HasFatalFailure()) {
                return;
            }
        }
        finish();
        if (!HasFatalFailure() && any(2) == 0) {
            swap_transparent();
        }
        if (!HasFatalFailure()) {
            ask_many();
        }
    }

    reference::Mixpals plain;
    TestSurface sheet{1, 1};
    TestSurface plain_sheet{1, 1};
    std::mt19937 random;
    int failed_imports = 0;
};

TEST_F(MixpalsProperty, TinyPicturesMatchTheReference) {
    constexpr Colour colours[] = {0, 0xFFFFFF, 0x0000FF};
    for (std::int32_t width = 1; width <= 5; ++width) {
        const int pictures = width == 1 ? 3 : width == 2 ? 9 : width == 3 ? 27 : width == 4 ? 81 : 243;
        for (int number = 0; number < pictures; ++number) {
            for (const std::int32_t bits : {32, 24}) {
                start_over(static_cast<std::uint32_t>(number));
                Colours row;
                for (int rest = number; row.size() < static_cast<std::size_t>(width); rest /= 3) {
                    row.push_back(colours[rest % 3]);
                }
                mixpals::InitColorTable();
                plain.InitColorTable();
                ASSERT_NO_FATAL_FAILURE(add(*surface_of(width, 1, row, bits)));
                ASSERT_NO_FATAL_FAILURE(finish());
                ASSERT_NO_FATAL_FAILURE(swap_transparent());
                ASSERT_NO_FATAL_FAILURE(ask_many());
            }
        }
    }
}

TEST_F(MixpalsProperty, SurfacesWithoutPixelsMatchTheReference) {
    for (const std::int32_t bits : {32, 24, 16}) {
        start_over(1);
        mixpals::InitColorTable();
        plain.InitColorTable();
        TestSurface none(0, 0, bits);
        TestSurface flat(4, 0, bits);
        TestSurface thin(0, 4, bits);
        for (TestSurface* surface : {&none, &flat, &flat, &thin, &thin, &none}) {
            ASSERT_NO_FATAL_FAILURE(add(*surface));
        }
    }
}

TEST_F(MixpalsProperty, SuccessiveSmallImportsMatchTheReference) {
    for (std::uint32_t seed = 0; seed < cases(900U); ++seed) {
        start_over(seed);
        const std::uint32_t imports = 1 + any(4);
        for (std::uint32_t i = 0; i < imports; ++i) {
            // Every eighth import is large enough for a 257th colour.
            const std::uint32_t largest_side = any(8) == 0 ? 24 : 1 + any(18);
            ASSERT_NO_FATAL_FAILURE(import(1 + any(4), largest_side)) << "seed " << seed;
        }
    }
    EXPECT_GT(failed_imports, 0) << "some sheets must bring the 257th colour";
}

TEST_F(MixpalsProperty, ImportsThatGrowTheTableMatchTheReference) {
    for (std::uint32_t seed = 0; seed < cases(20U); ++seed) {
        start_over(seed);
        for (int i = 0; i < 2; ++i) {
            mixpals::InitColorTable();
            plain.InitColorTable();
            ASSERT_NO_FATAL_FAILURE(add(*random_surface(side(40) + 24, side(40), Character::Noise, seed)));
            ASSERT_NO_FATAL_FAILURE(add(*random_surface(side(30), 40, Character::Smooth, seed + 1)));
            ASSERT_NO_FATAL_FAILURE(finish()) << "seed " << seed;
            ASSERT_NO_FATAL_FAILURE(ask_many());
        }
    }
}

} // namespace
} // namespace varnoth::test
