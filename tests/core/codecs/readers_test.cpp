// What the PCX and the TGA reader share.
#include "core/codecs/LoadPcxTest.h"
#include "core/codecs/LoadTgaTest.h"
#include "support/expect_failure.h"

namespace varnoth::test {
namespace {

// A valid file of 24 bits, and one whose header ends after the picture's size.
struct Pcx {
    using Reader = LoadPCX;
    static constexpr const char* name = "Pcx";

    static Bytes file(int width, int height) {
        return joined({bytes_of(pcx::header_of(8, 3, width, width, height)), counting(999)});
    }
};

struct Tga {
    using Reader = LoadTGA;
    static constexpr const char* name = "Tga";

    static Bytes file(int width, int height) {
        return joined({bytes_of(tga::header_of(2, 24, width, height)), counting(999)});
    }
};

template <typename Format>
class Readers : public testing::Test {
  protected:
    void load(int width, int height) { reader.Load(folder.write("picture", Format::file(width, height))); }

    TemporaryFolder folder;
    typename Format::Reader reader;
};

using Formats = testing::Types<Pcx, Tga>;
TYPED_TEST_SUITE(Readers, Formats, FormatName);

TYPED_TEST(Readers, NewObjectUsesTwipsAutoscalesAndHasNoSize) {
    EXPECT_EQ(this->reader.ScaleMode(), 1);
    EXPECT_EQ(this->reader.Autoscale(), -1);
    EXPECT_EQ(size_of(this->reader), Size());
    EXPECT_EQ(is_valid(this->reader), False);
    EXPECT_EQ(this->reader.Compressed(), False);
    EXPECT_EQ(this->reader.Bpp(), 0);
    using Header = std::remove_cvref_t<decltype(this->reader.Header())>;
    EXPECT_EQ(this->reader.Header(), Header::from_bytes(std::array<std::uint8_t, Header::size>{}));
}

TYPED_TEST(Readers, ScaleMode0IsPixels1And5TwipsAndMinus1NoSize) {
    this->load(2, 1);
    this->reader.SetScaleMode(5);
    EXPECT_EQ(this->reader.ScaleMode(), 1);
    EXPECT_EQ(size_of(this->reader), (Size{30, 15}));
    this->reader.SetScaleMode(0);
    EXPECT_EQ(size_of(this->reader), (Size{2, 1}));
    this->reader.SetScaleMode(-1);
    EXPECT_EQ(this->reader.ScaleMode(), -1);
    EXPECT_EQ(size_of(this->reader), Size());
}

TYPED_TEST(Readers, MissingFileAndFolderFailAndTheProbeReturnsFalse) {
    const std::string missing = this->folder.file("none");
    EXPECT_EQ(probe(this->reader, missing), (Info{False, 77, 77, 77}));
    EXPECT_EQ(probe(this->reader, this->folder.path()), (Info{False, 77, 77, 77}));
    EXPECT_FAILURE(this->reader.Load(missing), FileNotFound);
}

TYPED_TEST(Readers, ProbeDoesNotChangeTheObject) {
    const auto header = this->reader.Header();
    probe(this->reader, this->folder.write("picture", TypeParam::file(9, 4)));
    EXPECT_EQ(this->reader.Width(), 0);
    EXPECT_EQ(this->reader.Header(), header);
}

TYPED_TEST(Readers, EarlierReaderDrawsTheLaterPictureInItsOwnSize) {
    this->load(2, 1);
    typename TypeParam::Reader later;
    later.Load(this->folder.write("picture", TypeParam::file(1, 2)));
    const Colours picture = drawn_by(later);
    ASSERT_EQ(picture.size(), 2U);
    EXPECT_EQ(drawn_by(this->reader), (Colours{picture[0], 0}));
    // The size of 2 by 1 is stretched to 4 by 1; its right half is outside the picture.
    TestSurface target(4, 1);
    this->reader.SetAutoscale(0);
    EXPECT_EQ(this->reader.Autoscale(), 0);
    draw(this->reader, target);
    EXPECT_EQ(colours_of(target), (Colours{picture[0], picture[0], 0, 0}));
}

} // namespace
} // namespace varnoth::test
