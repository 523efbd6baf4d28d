// Reads the BMP files that cDIB writes with other programs.
#include <gtest/gtest.h>

#include "core/image/cDIB.h"
#include "support/TemporaryFolder.h"
#include "support/dibs.h"
#include "support/foreign_tools.h"
#include "support/pictures.h"

namespace varnoth::test {
namespace {

class ForeignBmp : public testing::TestWithParam<std::int32_t> {
  protected:
    // Saves a picture of that depth and an odd width.
    void SetUp() override {
        constexpr std::int32_t width = 37;
        constexpr std::int32_t height = 11;
        if (GetParam() > 8) {
            const auto surface = random_surface(width, height, Character::Noise, 5);
            ASSERT_TRUE(dib.CreateFromHdc(surface->hDC(), width, height));
        } else {
            ASSERT_TRUE(dib.Create(width, height, GetParam()));
            Bytes palette(std::size_t{4} << GetParam());
            for (std::size_t i = 0; i < palette.size(); ++i) {
                palette[i] = static_cast<std::uint8_t>(i % 4 == 3 ? 0 : i * 37 + i / 7);
            }
            dib.SetPalette(palette);
            for (std::int32_t i = 0; i < dib.Size(); ++i) {
                dib.lpBits()[i] = static_cast<std::uint8_t>(i * 29 + i / 40);
            }
        }
        dib.Save(path);
    }

    TemporaryFolder folder;
    std::string path = folder.file("a.bmp");
    cDIB dib;
};

TEST_P(ForeignBmp, ImageMagickReadsTheSamePixels) {
    EXPECT_EQ(picture_from_tool("convert '" + path + "' -alpha off -depth 8 ppm:-").colours, colours_of(dib));
}

TEST_P(ForeignBmp, NetpbmReadsTheSamePixels) {
    EXPECT_EQ(picture_from_tool("bmptopnm -quiet '" + path + "'").colours, colours_of(dib));
}

INSTANTIATE_TEST_SUITE_P(Depths, ForeignBmp, testing::Values(32, 8, 4),
                         [](const auto& depth) { return std::to_string(depth.param) + "Bits"; });

} // namespace
} // namespace varnoth::test
