// The parser's frames, its findings, and its agreement with the editor's reader on random and damaged files.
#include "core/sprite/SpriteFile.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "core/sprite/sprite_file.h"
#include "support/TemporaryFolder.h"
#include "support/sprites.h"
#include "support/thoroughness.h"

namespace varnoth {
namespace {

using Texts = std::vector<std::string>;
using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t first_frame = 810;

std::uint32_t bits_of(float value) {
    return std::bit_cast<std::uint32_t>(value);
}

// Two frames of 16 by 16 pixels, with nothing to be found.
test::SpriteFile faultless() {
    test::SpriteFile file;
    file.width = 16;
    file.height = 16;
    file.bounding_radius_bits = bits_of(11.3137085F);
    file.add({16, 16, Bytes(256, 1), 0, -8, 8});
    file.add({16, 16, Bytes(256, 2), 0, -8, 8});
    return file;
}

Texts findings_of(const Bytes& bytes) {
    Texts texts;
    for (const SpriteFinding& finding : parse_sprite_file(bytes).findings) {
        texts.push_back(std::to_string(finding.offset) + ": " + std::string(name_of(finding.severity)) +
                        ": " + finding.text);
    }
    return texts;
}

Texts findings_of(const test::SpriteFile& file) {
    return findings_of(file.bytes());
}

bool opens(const Bytes& bytes) {
    return parse_sprite_file(bytes).opens_in_editor;
}

Bytes first(const Bytes& bytes, std::size_t count) {
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count)};
}

class SpriteFileParser : public testing::Test {
  protected:
    test::SpriteFile file = faultless();
};

TEST_F(SpriteFileParser, FaultlessFileHasNoFindings) {
    const Bytes bytes = file.bytes();
    EXPECT_EQ(findings_of(bytes), Texts{});
    EXPECT_TRUE(opens(bytes));
    EXPECT_EQ(parse_sprite_file(bytes).trailing_bytes, 0U);
}

TEST_F(SpriteFileParser, ReadsEveryField) {
    file.render_mode = 2;
    file.palette[3 * 7 + 1] = 99;
    file.frames[1] = {3, 2, {1, 2, 3, 4, 5, 6}, 1, -4, 5};
    const SpriteParse parse = parse_sprite_file(file.bytes());
    EXPECT_EQ(parse.sprite.header.SpriteType, 2);
    EXPECT_EQ(parse.sprite.header.RenderMode, 2);
    EXPECT_EQ(parse.sprite.mode(), RenderMode::IndexAlpha);
    EXPECT_EQ(parse.sprite.header.Width, 16);
    EXPECT_EQ(parse.sprite.palette.Colours[7], (PaletteColour{0, 99, 0}));
    ASSERT_EQ(parse.sprite.frames.size(), 2U);
    const SpriteFrame& frame = parse.sprite.frames[1];
    EXPECT_EQ(frame.header.FrameType, 1);
    EXPECT_EQ(frame.header.OriginX, -4);
    EXPECT_EQ(frame.header.OriginY, 5);
    EXPECT_EQ(frame.header.FrameWidth, 3);
    EXPECT_EQ(frame.header.FrameHeight, 2);
    EXPECT_EQ(test::indices_of(frame.indices), (Bytes{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(parse.frame_offsets, (std::vector<std::uint64_t>{first_frame, first_frame + 20 + 256}));
}

TEST_F(SpriteFileParser, WrongIdentIsTheOnlyFinding) {
    file.ident = "idsp";
    file.version = 7;
    EXPECT_EQ(findings_of(file),
              Texts{"0: error: the file does not begin with \"IDSP\": it is no Half-Life sprite"});
    EXPECT_FALSE(opens(file.bytes()));
    EXPECT_FALSE(opens({}));
}

TEST_F(SpriteFileParser, EndInTheHeader) {
    const Bytes bytes = first(file.bytes(), 39);
    EXPECT_EQ(findings_of(bytes), Texts{"39: error: the file ends in its header"});
    EXPECT_FALSE(opens(bytes));
}

TEST_F(SpriteFileParser, EndInThePalette) {
    const Bytes bytes = first(file.bytes(), first_frame - 1);
    EXPECT_EQ(findings_of(bytes), Texts{"809: error: the file ends in its palette"});
    EXPECT_FALSE(opens(bytes));
}

TEST_F(SpriteFileParser, EndBeforeAFrame) {
    for (const std::size_t length : {first_frame + 276, first_frame + 295}) {
        const Bytes bytes = first(file.bytes(), length);
        EXPECT_EQ(findings_of(bytes),
                  Texts{std::to_string(length) + ": error: the file ends before frame 1 of 2"});
        EXPECT_FALSE(opens(bytes));
        EXPECT_EQ(parse_sprite_file(bytes).sprite.frames.size(), 1U);
    }
}

TEST_F(SpriteFileParser, MissingPixelsAreZeros) {
    const Bytes bytes = first(file.bytes(), first_frame + 276 + 20 + 100);
    EXPECT_EQ(findings_of(bytes),
              Texts{"1206: error: the file ends in frame 1: 156 of 256 pixels are missing"});
    EXPECT_TRUE(opens(bytes));
    const SpriteParse parse = parse_sprite_file(bytes);
    EXPECT_EQ(parse.missing_pixels, 156U);
    const ByteArray& indices = parse.sprite.frames[1].indices;
    ASSERT_EQ(indices.size(), 256U);
    EXPECT_EQ(indices[99], 2);
    EXPECT_EQ(indices[100], 0);
    EXPECT_EQ(indices[255], 0);
}

TEST_F(SpriteFileParser, HeaderFieldsOutOfRange) {
    file.version = 1;
    file.sprite_type = 5;
    file.render_mode = -1;
    file.bounding_radius_bits = bits_of(-1.5F);
    file.beam_length_bits = bits_of(0.25F);
    file.sync_type = 2;
    EXPECT_EQ(findings_of(file),
              (Texts{"4: warning: Version is 1 instead of 2", "8: warning: SpriteType is 5, not 0 to 4",
                     "12: warning: RenderMode is -1, not 0 to 3", "16: warning: BoundingRadius is -1.5",
                     "32: note: BeamLength is 0.25 instead of 0", "36: warning: SyncType is 2, not 0 or 1"}));
    EXPECT_TRUE(opens(file.bytes()));
}

TEST_F(SpriteFileParser, OtherRadiusIsNoted) {
    file.bounding_radius_bits = bits_of(8);
    EXPECT_EQ(findings_of(file), Texts{"16: note: BoundingRadius is 8; half the diagonal is 11.313708"});
}

TEST_F(SpriteFileParser, RadiusThatIsNoNumber) {
    file.bounding_radius_bits = bits_of(std::numeric_limits<float>::infinity());
    EXPECT_EQ(findings_of(file), Texts{"16: warning: BoundingRadius is inf"});
}

TEST_F(SpriteFileParser, FrameCountOutOfRange) {
    file.frame_count = 0;
    EXPECT_EQ(findings_of(file),
              (Texts{"28: error: FrameCount is 0", "810: note: 552 bytes after the last frame"}));
    EXPECT_FALSE(opens(file.bytes()));
    file.frame_count = -1;
    EXPECT_EQ(findings_of(file).front(), "28: error: FrameCount is -1");
}

TEST_F(SpriteFileParser, TheEditorOpensAtMost32768Frames) {
    file = {};
    for (int i = 0; i < 32768; ++i) {
        file.add({});
    }
    EXPECT_TRUE(opens(file.bytes()));
    file.add({});
    const SpriteParse parse = parse_sprite_file(file.bytes());
    EXPECT_FALSE(parse.opens_in_editor);
    EXPECT_EQ(parse.sprite.frames.size(), 32769U);
    EXPECT_EQ(findings_of(file).back(),
              "28: error: FrameCount is 32769; the editor opens at most 32768 frames");
}

TEST_F(SpriteFileParser, OtherColourCountEndsParsing) {
    file.colour_count = 16;
    EXPECT_EQ(findings_of(file), Texts{"40: error: the palette has 16 colours instead of 256"});
    EXPECT_FALSE(opens(file.bytes()));
    EXPECT_TRUE(parse_sprite_file(file.bytes()).sprite.frames.empty());
}

TEST_F(SpriteFileParser, FrameOfImpossibleSize) {
    const std::pair<std::int32_t, std::int32_t> sizes[] = {{0, 16}, {16, -1}, {46341, 46341}};
    for (const auto& [width, height] : sizes) {
        file.frames[1].width = width;
        file.frames[1].height = height;
        EXPECT_EQ(findings_of(file), Texts{"1098: error: frame 1 has " + std::to_string(width) + " x " +
                                           std::to_string(height) + " pixels"})
            << width;
        EXPECT_FALSE(opens(file.bytes())) << width;
    }
}

TEST_F(SpriteFileParser, FrameOfNegativeSidesOpens) {
    file.frames[1].width = -16;
    file.frames[1].height = -16;
    EXPECT_EQ(findings_of(file), Texts{"1098: error: frame 1 has -16 x -16 pixels"});
    EXPECT_TRUE(opens(file.bytes()));
}

TEST_F(SpriteFileParser, FrameGroupIsReported) {
    file.frames[1].type = 1;
    EXPECT_EQ(findings_of(file),
              Texts{"1086: warning: frame 1 has type 1: a frame group, read as a single frame"});
    EXPECT_TRUE(opens(file.bytes()));
}

TEST_F(SpriteFileParser, FrameLargerThanTheSprite) {
    file.frames[1] = {32, 16, Bytes(512, 1)};
    EXPECT_EQ(findings_of(file), Texts{"1098: warning: frame 1 has 32 x 16 pixels, the sprite 16 x 16"});
}

TEST_F(SpriteFileParser, FrameOfAnotherShapeWithAsManyPixels) {
    file.frames[1] = {32, 8, Bytes(256, 1)};
    EXPECT_EQ(findings_of(file), Texts{"1098: warning: frame 1 has 32 x 8 pixels, the sprite 16 x 16"});
}

TEST_F(SpriteFileParser, FrameSmallerThanTheSprite) {
    file.frames[0] = {16, 15, Bytes(240, 1)};
    EXPECT_EQ(findings_of(file), Texts{"822: error: frame 0 has 16 x 15 pixels, the sprite 16 x 16: too few "
                                       "for the editor, which ends with an error"});
    EXPECT_TRUE(opens(file.bytes()));
}

TEST_F(SpriteFileParser, SidesThatAreNoMultipleOf16) {
    file = {};
    file.width = 17;
    file.height = 8;
    file.bounding_radius_bits = bits_of(9.394147F);
    file.add({17, 8, Bytes(136, 1)});
    EXPECT_EQ(findings_of(file), (Texts{"20: note: Width is 17, no multiple of 16",
                                        "24: note: Height is 8, no multiple of 16"}));
}

TEST_F(SpriteFileParser, SidesBelowOne) {
    file.width = 0;
    file.height = -16;
    file.bounding_radius_bits = bits_of(8);
    const Texts findings = findings_of(file);
    ASSERT_GE(findings.size(), 2U);
    EXPECT_EQ(findings[0], "20: error: Width is 0");
    EXPECT_EQ(findings[1], "24: error: Height is -16");
    EXPECT_TRUE(opens(file.bytes()));
}

TEST_F(SpriteFileParser, AlphaTestWithoutTransparentPixels) {
    file.render_mode = 3;
    EXPECT_EQ(
        findings_of(file),
        Texts{"12: warning: RenderMode is ALPHATEST, but no pixel has index 255: nothing is transparent"});
    file.frames[1].pixels[255] = 255;
    EXPECT_EQ(findings_of(file), Texts{});
}

TEST_F(SpriteFileParser, BytesAfterTheLastFrame) {
    Bytes bytes = file.bytes();
    bytes.resize(bytes.size() + 3);
    EXPECT_EQ(findings_of(bytes), Texts{"1362: note: 3 bytes after the last frame"});
    EXPECT_EQ(parse_sprite_file(bytes).trailing_bytes, 3U);
    EXPECT_TRUE(opens(bytes));
}

TEST_F(SpriteFileParser, ClaimedPixelsTakeNoMemoryUntilRead) {
    file.frames[1] = {20000, 20000, {1}};
    const SpriteParse parse = parse_sprite_file(file.bytes());
    ASSERT_EQ(parse.sprite.frames.size(), 2U);
    EXPECT_EQ(parse.sprite.frames[1].indices.size(), 20000U * 20000U);
}

TEST(SpriteFileWriter, WritesTheBytesThatWereRead) {
    test::SpriteFile file = faultless();
    file.frames[0] = {3, 2, {1, 2, 3, 4, 5, 6}, 1, -4, 5};
    EXPECT_EQ(write_sprite_file(parse_sprite_file(file.bytes()).sprite), file.bytes());
}

TEST(SpriteFileWriter, CountsTheFrames) {
    SpriteFile sprite = parse_sprite_file(faultless().bytes()).sprite;
    sprite.frames.pop_back();
    EXPECT_EQ(parse_sprite_file(write_sprite_file(sprite)).sprite.header.FrameCount, 1);
}

/// Sprite files with fields from a few interesting values, some of them damaged.
class RandomFiles {
  public:
    explicit RandomFiles(std::uint32_t seed) : random_(seed) {}

    Bytes next() {
        Bytes bytes = plausible().bytes();
        if (below(2) == 0) {
            damage(bytes);
        }
        return bytes;
    }

  private:
    std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(random_() % limit); }

    std::int32_t side() {
        constexpr std::int32_t odd_sides[] = {0, -1, -5, 46341, 65536};
        return below(40) == 0 ? odd_sides[below(5)] : static_cast<std::int32_t>(1 + below(9));
    }

    test::SpriteFile plausible() {
        test::SpriteFile file;
        file.width = side();
        file.height = side();
        for (std::uint32_t i = below(6); i > 0; --i) {
            test::FileFrame frame;
            frame.width = side();
            frame.height = side();
            const std::int64_t size = std::int64_t{frame.width} * frame.height;
            frame.pixels.assign(size > 0 && size < 100 ? static_cast<std::size_t>(size) : 9, 7);
            frame.type = below(8) == 0 ? 1 : 0;
            file.add(frame);
        }
        constexpr std::int32_t odd_counts[] = {-1, 0, 32768, 32769, 2147483647};
        if (below(20) == 0) {
            file.frame_count = odd_counts[below(5)];
        }
        if (below(20) == 0) {
            file.colour_count = static_cast<std::uint16_t>(random_());
        }
        return file;
    }

    void damage(Bytes& bytes) {
        constexpr std::uint8_t odd_bytes[] = {0, 1, 2, 255}; // few frames become huge
        if (below(2) == 0) {
            bytes.resize(below(static_cast<std::uint32_t>(bytes.size()) + 30));
        }
        constexpr std::size_t fields = first_frame + FrameHeaderRecord::file_size;
        for (std::uint32_t i = below(4); i > 0 && !bytes.empty(); --i) {
            const std::size_t end = below(2) == 0 ? bytes.size() : std::min(bytes.size(), fields);
            const std::size_t start = below(2) == 0 ? 0 : std::min(end - 1, first_frame);
            bytes[start + below(static_cast<std::uint32_t>(end - start))] = odd_bytes[below(4)];
        }
    }

    std::mt19937 random_;
};

TEST(SpriteFileProperty, OpensExactlyWhatTheEditorReads) {
    const test::TemporaryFolder folder;
    RandomFiles files(1);
    std::size_t opened = 0;
    const std::size_t count = test::cases(std::size_t{4000});
    for (std::size_t i = 0; i < count; ++i) {
        const Bytes bytes = files.next();
        SpriteDocument document;
        const std::string path = folder.write(std::to_string(i) + ".spr", bytes); // truncating is slow
        const bool read = !read_sprite(path, document);
        const SpriteParse parse = parse_sprite_file(bytes);
        ASSERT_EQ(parse.opens_in_editor, read) << "file " << i;
        if (!read) {
            continue;
        }
        ++opened;
        ASSERT_EQ(to_bytes(parse.sprite.header), to_bytes(document.SpriteHeader)) << "file " << i;
        ASSERT_EQ(to_bytes(parse.sprite.palette), to_bytes(document.Palette)) << "file " << i;
        ASSERT_EQ(parse.sprite.frames.size(), document.FrameStore.size()) << "file " << i;
        for (std::size_t k = 0; k < document.FrameStore.size(); ++k) {
            ASSERT_EQ(parse.sprite.frames[k].indices, document.FrameStore[k]) << "file " << i;
        }
    }
    // Both outcomes are common.
    EXPECT_GT(opened, count / 4);
    EXPECT_LT(opened, count * 3 / 4);
}

TEST(SpriteFileProperty, AnErrorForEveryFileThatDoesNotOpen) {
    RandomFiles files(2);
    for (std::size_t i = 0; i < test::cases(std::size_t{4000}); ++i) {
        const SpriteParse parse = parse_sprite_file(files.next());
        const bool has_error = std::ranges::any_of(
            parse.findings, [](const SpriteFinding& finding) { return finding.severity == Severity::Error; });
        ASSERT_TRUE(parse.opens_in_editor || has_error) << "file " << i;
        ASSERT_TRUE(std::ranges::is_sorted(parse.findings, {}, &SpriteFinding::offset)) << "file " << i;
    }
}

} // namespace
} // namespace varnoth
