// Reads back, with the program's own reader, compressed TGA files that lost pixels.
#include <string>

#include <gtest/gtest.h>

#include "core/codecs/SaveTGA.h"
#include "support/readers.h"

namespace varnoth::test {
namespace {

Colours written_and_read(PictureSurface& picture) {
    const TemporaryFolder folder;
    const std::string path = folder.file("a.tga");
    SaveTGA().SaveTGAinFile(path, picture, True);
    LoadTGA reader;
    reader.Load(path);
    return drawn_by(reader);
}

TEST(WrittenAndRead, CompressedTgaWithLostPixelsIsShifted) {
    // From the bottom row up: 1 2 3 | 3 4 5 | 5 5 5, of which one 3 and one 5 are omitted.
    EXPECT_EQ(written_and_read(*surface_of(3, 3, {5, 5, 5, 3, 4, 5, 1, 2, 3})),
              (Colours{5, 0, 0, 4, 5, 5, 1, 2, 3}));
}

TEST(WrittenAndRead, LongRawPacketOfCompressedTgaIsReadAsARun) {
    // 201 pixels without equal neighbours: a raw packet of 200 with the length byte of a run of 72.
    const Colours colours = series(201, 0x404040);
    const Colours read = written_and_read(*surface_of(201, 1, colours));
    EXPECT_EQ((Colours{read.begin(), read.begin() + 72}), Colours(72, 0x404040));
    EXPECT_NE(read, colours);
}

} // namespace
} // namespace varnoth::test
