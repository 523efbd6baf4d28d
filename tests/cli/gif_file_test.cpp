#include "cli/gif_file.h"

#include <gtest/gtest.h>

#include "cli/made_gif.h"
#include "support/expect_failure.h"

namespace varnoth::cli {
namespace {

using test::Bytes;
using test::gif_colours;
using test::gif_file;
using test::GifFrame;
using Pixels = std::vector<std::uint32_t>;

constexpr std::int64_t most_pixels = 100;
constexpr int do_not_dispose = 1;
constexpr int to_background = 2;
constexpr int to_previous = 3;

/// The pixels of all frames; red alone, 0 for transparent.
std::vector<Bytes> reds_of(const Bytes& file) {
    std::vector<Bytes> frames;
    GifReader reader(file, most_pixels);
    for (std::size_t i = 0; i < count_gif_frames(file); ++i) {
        Bytes& reds = frames.emplace_back();
        for (const std::uint32_t pixel : reader.read().pixels) {
            reds.push_back(static_cast<std::uint8_t>(pixel >> 16));
        }
    }
    return frames;
}

GifFrame frame_of(std::int16_t width, const Bytes& indices) {
    GifFrame frame;
    frame.width = width;
    frame.height = static_cast<std::int16_t>(indices.size() / static_cast<std::size_t>(width));
    frame.indices = indices;
    return frame;
}

/// A frame of one pixel.
GifFrame dot(std::int16_t left, std::uint8_t index) {
    GifFrame frame = frame_of(1, {index});
    frame.left = left;
    return frame;
}

GifFrame with_disposal(GifFrame frame, int disposal) {
    frame.disposal = disposal;
    return frame;
}

GifFrame with_transparent(GifFrame frame, int index) {
    frame.transparent = index;
    return frame;
}

GifFrame with_colours(GifFrame frame, const Bytes& colours) {
    frame.local_colours = colours;
    return frame;
}

std::vector<Bytes> indices_of(const IndexedGif& gif) {
    std::vector<Bytes> frames;
    for (const IndexedGif::Frame& frame : gif.frames) {
        frames.push_back(frame.indices);
    }
    return frames;
}

TEST(GifReader, OneFrame) {
    const Bytes file = gif_file(2, 1, {frame_of(2, {0, 3})});
    EXPECT_EQ(count_gif_frames(file), 1U);
    GifReader reader(file, most_pixels);
    const RgbaPicture picture = reader.read();
    EXPECT_EQ(picture.width, 2);
    EXPECT_EQ(picture.height, 1);
    EXPECT_EQ(picture.pixels, (Pixels{0xFF640000, 0xFF670000}));
    EXPECT_FAILURE(reader.read(), InvalidPicture);
}

TEST(GifReader, ChannelsAreInOrder) {
    const Bytes file = gif_file(1, 1, {with_colours(frame_of(1, {0}), {1, 2, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0})});
    EXPECT_EQ(GifReader(file, most_pixels).read().pixels, Pixels{0xFF010203});
}

TEST(GifReader, FramesAddToTheCanvas) {
    const std::vector<Bytes> expected{{100, 0, 0}, {100, 101, 0}, {100, 101, 102}};
    EXPECT_EQ(reds_of(gif_file(3, 1, {dot(0, 0), with_disposal(dot(1, 1), do_not_dispose), dot(2, 2)})),
              expected);
}

TEST(GifReader, PixelsWithoutAFrameAreTransparent) {
    EXPECT_EQ(GifReader(gif_file(2, 1, {dot(1, 0)}), most_pixels).read().pixels, (Pixels{0, 0xFF640000}));
}

TEST(GifReader, TransparentPixelsShowThePreviousFrame) {
    EXPECT_EQ(reds_of(gif_file(2, 1, {frame_of(2, {0, 1}), with_transparent(frame_of(2, {2, 3}), 3)})),
              (std::vector<Bytes>{{100, 101}, {102, 101}}));
}

TEST(GifReader, DisposalToTheBackgroundClearsTheFrame) {
    EXPECT_EQ(
        reds_of(gif_file(3, 1, {frame_of(3, {0, 0, 0}), with_disposal(dot(1, 1), to_background), dot(2, 2)})),
        (std::vector<Bytes>{{100, 100, 100}, {100, 101, 100}, {100, 0, 102}}));
}

TEST(GifReader, DisposalToThePreviousFrameRestoresIt) {
    EXPECT_EQ(
        reds_of(gif_file(3, 1, {frame_of(3, {0, 0, 0}), with_disposal(dot(1, 1), to_previous), dot(2, 2)})),
        (std::vector<Bytes>{{100, 100, 100}, {100, 101, 100}, {100, 100, 102}}));
}

TEST(GifReader, LocalColoursTakePrecedence) {
    EXPECT_EQ(reds_of(gif_file(2, 1, {with_colours(dot(0, 1), gif_colours(200)), dot(1, 1)})),
              (std::vector<Bytes>{{201, 0}, {201, 101}}));
}

TEST(GifReader, InterlacedRows) {
    GifFrame frame = frame_of(1, {0, 0, 1, 2, 2, 3, 3, 3, 3}); // rows 0, 8, 4, 2, 6, 1, 3, 5, 7
    frame.is_interlaced = true;
    EXPECT_EQ(reds_of(gif_file(1, 9, {frame})),
              (std::vector<Bytes>{{100, 103, 102, 103, 101, 103, 102, 103, 100}}));
}

TEST(GifReader, FrameOutsideTheCanvasIsCut) {
    GifFrame frame = frame_of(2, {0, 1, 2, 3});
    frame.left = 1;
    EXPECT_EQ(reds_of(gif_file(2, 1, {frame})), (std::vector<Bytes>{{0, 100}}));
    frame.left = 5;
    EXPECT_EQ(reds_of(gif_file(2, 1, {with_disposal(frame, to_background), dot(0, 1)})),
              (std::vector<Bytes>{{0, 0}, {101, 0}}));
}

TEST(GifReader, EmptyCanvasGetsTheSizeOfTheFirstFrame) {
    EXPECT_EQ(reds_of(gif_file(0, 0, {dot(1, 1), dot(0, 2)})), (std::vector<Bytes>{{0, 101}, {102, 101}}));
}

TEST(GifReader, EmptyFrameDrawsNothing) {
    EXPECT_EQ(reds_of(gif_file(1, 1, {dot(0, 1), GifFrame{}, dot(0, 2)})),
              (std::vector<Bytes>{{101}, {101}, {102}}));
}

TEST(GifReader, IndexBeyondTheColoursIsBlack) {
    Bytes file = gif_file(1, 1, {frame_of(1, {3})});
    file[10] = 0x80; // two colours
    file.erase(file.begin() + 13, file.begin() + 19);
    EXPECT_EQ(GifReader(file, most_pixels).read().pixels, Pixels{0xFF000000});
}

TEST(GifReader, DelayIsThatOfTheFrame) {
    GifFrame slow = dot(0, 0);
    slow.delay = 7;
    const Bytes file = gif_file(1, 1, {slow, dot(0, 0)});
    GifReader reader(file, most_pixels);
    reader.read();
    EXPECT_EQ(reader.delay_milliseconds(), 70);
    reader.read();
    EXPECT_EQ(reader.delay_milliseconds(), 0);
}

TEST(GifReader, EndMarkMayBeMissing) {
    Bytes file = gif_file(1, 1, {dot(0, 1)});
    file.pop_back();
    EXPECT_EQ(reds_of(file), (std::vector<Bytes>{{101}}));
}

TEST(GifReader, BytesAfterTheEndMarkAreIgnored) {
    EXPECT_EQ(reds_of(test::joined({gif_file(1, 1, {dot(0, 1)}), {1, 2, 3}})), (std::vector<Bytes>{{101}}));
}

TEST(GifReader, TruncatedFilesAreInvalid) {
    const Bytes file = gif_file(1, 1, {dot(0, 1)});
    for (std::size_t size = 0; size < file.size() - 1; ++size) {
        const Bytes truncated(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_FAILURE(count_gif_frames(truncated), InvalidPicture) << size;
        EXPECT_FAILURE(GifReader(truncated, most_pixels).read(), InvalidPicture) << size;
    }
}

TEST(GifReader, FileWithoutFramesIsInvalid) {
    EXPECT_FAILURE(count_gif_frames(gif_file(1, 1, {})), InvalidPicture);
}

TEST(GifReader, FileWithoutColoursIsInvalid) {
    EXPECT_FAILURE(count_gif_frames(gif_file(1, 1, {dot(0, 1)}, false)), InvalidPicture);
}

TEST(GifReader, TooManyPixelsAreOutOfMemory) {
    const Bytes file = gif_file(101, 1, {dot(0, 1)});
    EXPECT_FAILURE(GifReader(file, most_pixels).read(), OutOfMemory);
    GifFrame wide = dot(0, 1);
    wide.width = 101;
    const Bytes wide_frame = gif_file(1, 1, {wide});
    EXPECT_FAILURE(GifReader(wide_frame, most_pixels).read(), OutOfMemory);
}

TEST(IndexedGif, KeepsIndicesAndPalette) {
    const auto gif =
        read_indexed_gif(gif_file(2, 1, {frame_of(2, {0, 3}), frame_of(2, {1, 2})}), most_pixels);
    ASSERT_TRUE(gif.has_value());
    EXPECT_EQ(gif->width, 2);
    EXPECT_EQ(gif->height, 1);
    EXPECT_EQ(gif->palette,
              (std::vector<RGBQUAD>{{0, 0, 100, 0}, {0, 0, 101, 0}, {0, 0, 102, 0}, {0, 0, 103, 0}}));
    EXPECT_FALSE(gif->transparent);
    EXPECT_EQ(indices_of(*gif), (std::vector<Bytes>{{0, 3}, {1, 2}}));
}

TEST(IndexedGif, ComposesFrames) {
    const auto gif = read_indexed_gif(gif_file(2, 1, {frame_of(2, {0, 3}), dot(1, 2)}), most_pixels);
    ASSERT_TRUE(gif.has_value());
    EXPECT_EQ(indices_of(*gif), (std::vector<Bytes>{{0, 3}, {0, 2}}));
}

TEST(IndexedGif, PixelsWithoutAFrameAreTheTransparentIndex) {
    const auto gif = read_indexed_gif(gif_file(2, 1,
                                               {with_transparent(with_disposal(dot(0, 1), to_background), 3),
                                                with_transparent(dot(1, 2), 3)}),
                                      most_pixels);
    ASSERT_TRUE(gif.has_value());
    EXPECT_EQ(gif->transparent, 3);
    EXPECT_EQ(indices_of(*gif), (std::vector<Bytes>{{1, 3}, {3, 2}}));
}

TEST(IndexedGif, EqualLocalColoursAreOneTable) {
    const Bytes colours = gif_colours(50);
    EXPECT_TRUE(read_indexed_gif(
        gif_file(1, 1, {with_colours(dot(0, 1), colours), with_colours(dot(0, 1), colours)}), most_pixels));
    EXPECT_FALSE(
        read_indexed_gif(gif_file(1, 1, {with_colours(dot(0, 1), colours), dot(0, 1)}), most_pixels));
}

TEST(IndexedGif, OnlyOneTransparentIndex) {
    EXPECT_FALSE(read_indexed_gif(
        gif_file(1, 1, {with_transparent(dot(0, 0), 1), with_transparent(dot(0, 0), 2)}), most_pixels));
}

TEST(IndexedGif, TransparentIndexMayNotBeOpaqueElsewhere) {
    EXPECT_FALSE(read_indexed_gif(gif_file(1, 1, {with_transparent(dot(0, 0), 1), dot(0, 1)}), most_pixels));
    EXPECT_FALSE(read_indexed_gif(gif_file(1, 1, {dot(0, 1), with_transparent(dot(0, 0), 1)}), most_pixels));
}

TEST(IndexedGif, PixelsWithoutAFrameNeedATransparentIndex) {
    EXPECT_FALSE(read_indexed_gif(gif_file(2, 1, {dot(0, 0)}), most_pixels));
    EXPECT_FALSE(read_indexed_gif(gif_file(2, 1, {with_transparent(dot(0, 0), 4)}), most_pixels));
}

TEST(IndexedGif, IndicesBeyondThePaletteHaveNoColour) {
    Bytes file = gif_file(1, 1, {frame_of(1, {3})});
    file[10] = 0x80; // two colours
    file.erase(file.begin() + 13, file.begin() + 19);
    EXPECT_FALSE(read_indexed_gif(file, most_pixels));
}

TEST(IndexedGif, FailsAsTheReaderDoes) {
    EXPECT_FAILURE(read_indexed_gif(gif_file(1, 1, {}), most_pixels), InvalidPicture);
    EXPECT_FAILURE(read_indexed_gif(gif_file(101, 1, {dot(0, 1)}), most_pixels), OutOfMemory);
}

TEST(GifColourTable, IsTheGlobalOneElseThatOfTheFirstFrame) {
    const GifFrame local = with_colours(dot(0, 1), gif_colours(50));
    EXPECT_EQ(gif_colour_table(gif_file(1, 1, {local})).at(0), (RGBQUAD{0, 0, 100, 0}));
    EXPECT_EQ(gif_colour_table(gif_file(1, 1, {local}, false)).at(0), (RGBQUAD{0, 0, 50, 0}));
}

} // namespace
} // namespace varnoth::cli
