#include "core/jobs/PictureFormat.h"

#include <gtest/gtest.h>

namespace varnoth {
namespace {

TEST(PictureFormat, EachFormatHasItsExtension) {
    EXPECT_EQ(extension_of(PictureFormat::Bmp), ".bmp");
    EXPECT_EQ(extension_of(PictureFormat::Jpg), ".jpg");
    EXPECT_EQ(extension_of(PictureFormat::Tga), ".tga");
    EXPECT_EQ(extension_of(PictureFormat::Pcx), ".pcx");
}

} // namespace
} // namespace varnoth
