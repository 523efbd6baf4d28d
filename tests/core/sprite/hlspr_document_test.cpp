#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/sprite/hlspr.h"
#include "support/TemporaryFolder.h"
#include "support/pictures.h"
#include "support/sprites.h"

namespace varnoth::test {
namespace {

using hlspr::document;

// The state at program start, before any test changes it.
const bool unnamed_at_start = hlspr::UnnamedSprite;
const bool dirty_at_start = hlspr::SpriteDirty;
const std::string folder_at_start = hlspr::ExtractFolder;

class SpriteDocumentTest : public testing::Test {
  protected:
    SpriteDocumentTest() { reset_sprite(); }
};

void expect_one_empty_slot() {
    ASSERT_EQ(document().FrameStore.size(), 1U);
    EXPECT_EQ(indices_of(document().FrameStore[0]), (Bytes{0}));
    EXPECT_EQ(document().FrameOrder, (std::vector<std::int16_t>{0}));
}

TEST_F(SpriteDocumentTest, ProgramStartsWithoutUnsavedChanges) {
    EXPECT_FALSE(unnamed_at_start);
    EXPECT_FALSE(dirty_at_start);
    EXPECT_EQ(folder_at_start, "");
}

TEST_F(SpriteDocumentTest, NewSpriteSetsHeaderPaletteAndFrameHeader) {
    document().Palette.Colours[7] = {1, 2, 3};
    document().Palette.ColourCount = 3;
    document().FrameHeader.FrameType = 5;
    document().SpriteHeader.FrameCount = 9;
    document().SpriteHeader.BeamLength = 4;
    hlspr::new_sprite(32, 64, 3, 2);
    const SpriteHeaderRecord& header = document().SpriteHeader;
    EXPECT_EQ(header.Ident, (std::array<char, 4>{'I', 'D', 'S', 'P'}));
    EXPECT_EQ(header.Version, 2);
    EXPECT_EQ(header.SpriteType, 3);
    EXPECT_EQ(header.RenderMode, 2);
    EXPECT_EQ(header.Width, 32);
    EXPECT_EQ(header.Height, 64);
    EXPECT_EQ(header.FrameCount, 0);
    EXPECT_EQ(header.BeamLength, 0);
    EXPECT_EQ(header.SyncType, 1);
    EXPECT_EQ(document().Palette.ColourCount, 256);
    EXPECT_EQ(document().Palette.Colours, (std::array<PaletteColour, 256>{}));
    EXPECT_EQ(document().FrameHeader.FrameType, 0);
    EXPECT_EQ(document().FrameHeader.FrameWidth, 32);
    EXPECT_EQ(document().FrameHeader.FrameHeight, 64);
    EXPECT_EQ(document().FrameHeader.OriginX, -16);
    EXPECT_EQ(document().FrameHeader.OriginY, 32);
    expect_one_empty_slot();
}

TEST_F(SpriteDocumentTest, OriginRoundsTiesToEven) {
    struct Case {
        std::int32_t size;
        std::int32_t origin_x;
        std::int32_t origin_y;
    };

    for (const Case& each : {Case{1, 0, 0}, Case{3, -2, 2}, Case{5, -2, 2}, Case{33, -16, 16},
                             Case{35, -18, 18}, Case{-3, 2, -2}}) {
        hlspr::new_sprite(each.size, each.size, 0, 0);
        EXPECT_EQ(document().FrameHeader.OriginX, each.origin_x) << each.size;
        EXPECT_EQ(document().FrameHeader.OriginY, each.origin_y) << each.size;
    }
}

TEST_F(SpriteDocumentTest, BoundingRadiusReachesTheCorner) {
    hlspr::new_sprite(32, 32, 0, 0);
    EXPECT_EQ(document().SpriteHeader.BoundingRadius, 22.627417F);
    hlspr::new_sprite(6, 8, 0, 0);
    EXPECT_EQ(document().SpriteHeader.BoundingRadius, 5.0F);
    hlspr::new_sprite(1, 0, 0, 0);
    EXPECT_EQ(document().SpriteHeader.BoundingRadius, 0.5F);
}

TEST_F(SpriteDocumentTest, Size0By0GivesRadius0AndOrigin0) {
    hlspr::new_sprite(0, 0, 2, 1);
    EXPECT_EQ(document().SpriteHeader.BoundingRadius, 0.0F);
    EXPECT_EQ(document().FrameHeader.OriginX, 0);
    EXPECT_EQ(document().FrameHeader.OriginY, 0);
    EXPECT_EQ(document().SpriteHeader.Width, 0);
}

TEST_F(SpriteDocumentTest, NewSpriteDoesNotValidateItsArguments) {
    constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
    hlspr::new_sprite(-7, lowest, -1, 99);
    EXPECT_EQ(document().SpriteHeader.Width, -7);
    EXPECT_EQ(document().SpriteHeader.Height, lowest);
    EXPECT_EQ(document().FrameHeader.FrameHeight, lowest);
    EXPECT_EQ(document().FrameHeader.OriginX, 4);
    EXPECT_EQ(document().FrameHeader.OriginY, lowest / 2);
    EXPECT_EQ(document().SpriteHeader.SpriteType, -1);
    EXPECT_EQ(document().SpriteHeader.RenderMode, 99);
}

TEST_F(SpriteDocumentTest, ClearFramesKeepsTheOtherRecords) {
    hlspr::new_sprite(5, 7, 4, 3);
    document().SpriteHeader.FrameCount = 2;
    document().SpriteHeader.BeamLength = 2.5F;
    document().Palette.ColourCount = 12;
    document().Palette.Colours[255] = {1, 2, 3};
    document().FrameHeader.OriginX = 77;
    document().FrameStore = {indices({1, 2}), indices({3})};
    document().FrameOrder = {1, 0};
    hlspr::clear_frames();
    EXPECT_EQ(document().SpriteHeader.FrameCount, 0);
    EXPECT_EQ(document().SpriteHeader.Width, 5);
    EXPECT_EQ(document().SpriteHeader.Height, 7);
    EXPECT_EQ(document().SpriteHeader.SpriteType, 4);
    EXPECT_EQ(document().SpriteHeader.RenderMode, 3);
    EXPECT_EQ(document().SpriteHeader.BeamLength, 2.5F);
    EXPECT_EQ(document().Palette.ColourCount, 256) << "the count is put right, the colours stay";
    EXPECT_EQ(document().Palette.Colours[255], (PaletteColour{1, 2, 3}));
    EXPECT_EQ(document().FrameHeader.OriginX, 77);
    EXPECT_EQ(document().FrameHeader.FrameWidth, 5);
    expect_one_empty_slot();
}

// Forms keep references to the document, so no command may replace the object.
TEST_F(SpriteDocumentTest, CommandsModifyTheDocumentInPlace) {
    const TemporaryFolder folder;
    const SpriteDocument& sprite = document();
    hlspr::new_sprite(1, 1, 4, 3);
    EXPECT_EQ(sprite.SpriteHeader.SpriteType, 4);
    mixpals::ImportPalette[0] = {1, 2, 3, 0};
    mixpals::MakeLookupPalette();
    hlspr::add_frame(*surface_of(1, 1, {0}));
    EXPECT_EQ(sprite.SpriteHeader.FrameCount, 1);
    EXPECT_EQ(sprite.FrameStore.size(), 1U);
    EXPECT_EQ(sprite.Palette.Colours[0], (PaletteColour{3, 2, 1}));
    EXPECT_EQ(hlspr::save_sprite(folder.file("a.spr")), True);
    hlspr::clear_frames();
    EXPECT_EQ(sprite.SpriteHeader.FrameCount, 0);
    EXPECT_EQ(hlspr::load_sprite(folder.file("a.spr")), True);
    EXPECT_EQ(sprite.SpriteHeader.FrameCount, 1);
    EXPECT_EQ(&document(), &sprite);
    reset_mixpals();
}

TEST_F(SpriteDocumentTest, ModesAndTypesHaveNamesAndOthersAreMinus1) {
    EXPECT_EQ(hlspr::render_mode_name(0), "NORMAL");
    EXPECT_EQ(hlspr::render_mode_name(1), "ADDITIVE");
    EXPECT_EQ(hlspr::render_mode_name(2), "INDEXALPHA");
    EXPECT_EQ(hlspr::render_mode_name(3), "ALPHATEST");
    EXPECT_EQ(hlspr::render_mode_name(4), "-1");
    EXPECT_EQ(hlspr::render_mode_name(7), "-1");
    EXPECT_EQ(hlspr::render_mode_name(-1), "-1");
    EXPECT_EQ(hlspr::sprite_type_name(0), "VP_PARALLEL_UPRIGHT");
    EXPECT_EQ(hlspr::sprite_type_name(1), "FACING_UPRIGHT");
    EXPECT_EQ(hlspr::sprite_type_name(2), "VP_PARALLEL");
    EXPECT_EQ(hlspr::sprite_type_name(3), "ORIENTED");
    EXPECT_EQ(hlspr::sprite_type_name(4), "VP_PARALLEL_ORIENTED");
    EXPECT_EQ(hlspr::sprite_type_name(5), "-1");
    EXPECT_EQ(hlspr::sprite_type_name(-2), "-1");
}

} // namespace
} // namespace varnoth::test
