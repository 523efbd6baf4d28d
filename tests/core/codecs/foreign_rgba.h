// What tests of the command line's readers share: compares their pictures with those of other programs.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/codecs/ForeignPictures.h"
#include "core/image/RgbaPicture.h"
#include "support/pictures.h"

namespace varnoth::test {

inline Colours colours_of(const RgbaPicture& picture) {
    Colours colours;
    for (const std::uint32_t pixel : picture.pixels) {
        colours.push_back(make_colour(static_cast<std::uint8_t>(pixel >> 16),
                                      static_cast<std::uint8_t>(pixel >> 8),
                                      static_cast<std::uint8_t>(pixel)));
    }
    return colours;
}

inline Colours alphas_of(const RgbaPicture& picture) {
    Colours alphas;
    for (const std::uint32_t pixel : picture.pixels) {
        alphas.push_back(static_cast<Colour>(pixel >> 24));
    }
    return alphas;
}

inline Colours reds_of(const Colours& colours) {
    Colours reds;
    for (const Colour colour : colours) {
        reds.push_back(red_of(colour));
    }
    return reds;
}

inline std::vector<Colours> colours_of(const std::vector<ForeignPicture>& pictures) {
    std::vector<Colours> colours;
    for (const ForeignPicture& picture : pictures) {
        colours.push_back(picture.colours);
    }
    return colours;
}

using RgbaReader = RgbaPicture (*)(std::span<const std::uint8_t> file, std::int64_t max_pixels);

/// Compares a file as it is read with the expected colours; every pixel must be opaque.
inline void expect_opaque(const std::string& path, RgbaReader read, Size size, const Colours& expected) {
    SCOPED_TRACE(path);
    const RgbaPicture picture = read(read_file(path), 256 * 256);
    ASSERT_EQ(picture.width, size.width);
    ASSERT_EQ(picture.height, size.height);
    EXPECT_TRUE(same(colours_of(picture), expected, size.width));
    EXPECT_TRUE(same(alphas_of(picture), Colours(expected.size(), 255), size.width));
}

} // namespace varnoth::test
