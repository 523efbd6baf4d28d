// Fixture for sprite file tests: a temporary folder, recorded messages, and the sprite module reset to its
// state at program start before and after each test.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/sprite/hlspr.h"
#include "support/RecordedServices.h"
#include "support/TemporaryFolder.h"
#include "support/sprites.h"

namespace varnoth::test {

inline const std::string loading_failed = "Unknown Error Loading Sprite.";
inline const std::string saving_failed = "Unknown Error Saving Sprite.";

class SpriteFileTest : public testing::Test {
  protected:
    SpriteFileTest() { reset_sprite(); }

    ~SpriteFileTest() override { reset_sprite(); }

    Truth load(const Bytes& bytes) { return hlspr::load_sprite(folder.write("a.spr", bytes)); }

    Truth load(const SpriteFile& file) { return load(file.bytes()); }

    void expect_refused(const Bytes& bytes, const std::string& message = loading_failed) {
        services.messages.clear();
        EXPECT_EQ(load(bytes), False);
        EXPECT_EQ(services.messages, Texts{message});
    }

    void expect_refused(const SpriteFile& file, const std::string& message = loading_failed) {
        expect_refused(file.bytes(), message);
    }

    void expect_not_saved(const std::string& path) {
        services.messages.clear();
        EXPECT_EQ(hlspr::save_sprite(path), False);
        EXPECT_EQ(services.messages, Texts{saving_failed});
    }

    /// A document with one frame, to see what a rejected file overwrites.
    void put_old_sprite() {
        hlspr::new_sprite(2, 1, 0, 0);
        hlspr::document().SpriteHeader.FrameCount = 1;
        hlspr::document().FrameStore[0] = indices({5, 6});
        hlspr::document().Palette.Colours[5] = {9, 9, 9};
        hlspr::document().FrameHeader.OriginX = 44;
    }

    void expect_old_frames() {
        ASSERT_EQ(hlspr::document().FrameStore.size(), 1U);
        EXPECT_EQ(indices_of(hlspr::document().FrameStore[0]), (Bytes{5, 6}));
        EXPECT_EQ(hlspr::document().FrameOrder, (std::vector<std::int16_t>{0}));
        EXPECT_EQ(hlspr::document().FrameHeader.OriginX, 44);
    }

    TemporaryFolder folder;
    RecordedServices services;
};

/// Three frames of 2 by 1 with different origins.
inline SpriteFile three_frames() {
    SpriteFile file;
    file.width = 2;
    file.height = 1;
    file.palette[3] = 10;
    file.palette[4] = 20;
    file.palette[5] = 30;
    file.add({2, 1, {1, 2}, 0, -1, 1});
    file.add({2, 1, {3, 4}, 0, -2, 2});
    file.add({2, 1, {5, 6}, 0, -3, 3});
    return file;
}

} // namespace varnoth::test
