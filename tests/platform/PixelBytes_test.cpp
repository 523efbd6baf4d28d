#include "platform/PixelBytes.h"

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Bitmap.h"

namespace varnoth {
namespace {

using Bytes = std::vector<std::uint8_t>;

PixelBytes pixel_bytes(const Bytes& bytes) {
    ByteArray array(bytes.size());
    std::ranges::copy(bytes, array.data());
    return PixelBytes(std::move(array));
}

Bytes bytes_of(const PixelBytes& bytes) {
    return {bytes.bytes().begin(), bytes.bytes().end()};
}

std::shared_ptr<const Bitmap> some_indices() {
    return std::make_shared<const Bitmap>(1, 1, 8, Bitmap::Rows::Section);
}

TEST(PixelBytes, NoneHaveNeitherAPlaceNorAnOrigin) {
    PixelBytes none;
    EXPECT_EQ(none.size(), 0U);
    EXPECT_EQ(none.data(), nullptr);
    EXPECT_EQ(none.own(), nullptr);
    EXPECT_EQ(none.origin(), nullptr);
    none.forget();
    EXPECT_EQ(none.size(), 0U);
}

TEST(PixelBytes, CopiesShareUntilOneIsWrittenTo) {
    const PixelBytes first = pixel_bytes({1, 2, 3});
    PixelBytes second = first;
    EXPECT_EQ(second.data(), first.data());
    second.own()[1] = 9;
    EXPECT_EQ(bytes_of(first), (Bytes{1, 2, 3}));
    EXPECT_EQ(bytes_of(second), (Bytes{1, 9, 3}));
    const std::uint8_t* const place = second.data();
    second.own()[2] = 8;
    EXPECT_EQ(second.data(), place) << "nobody else has these";
    EXPECT_EQ(bytes_of(second), (Bytes{1, 9, 8}));
}

TEST(PixelBytes, TheLastCopyIsWrittenToInPlace) {
    PixelBytes last = pixel_bytes({1});
    const std::uint8_t* const place = last.data();
    { const PixelBytes other = last; }
    last.own()[0] = 2;
    EXPECT_EQ(last.data(), place);
}

TEST(PixelBytes, WhatOneCopyForgetsTheOthersKeep) {
    const PixelBytes first = pixel_bytes({1, 2, 3});
    PixelBytes second = first;
    second.forget();
    EXPECT_NE(second.data(), first.data());
    EXPECT_EQ(second.size(), 3U);
    second.own()[0] = 7;
    EXPECT_EQ(bytes_of(first), (Bytes{1, 2, 3}));
    const std::uint8_t* const place = second.data();
    second.forget();
    EXPECT_EQ(second.data(), place) << "nobody else has these";
}

TEST(PixelBytes, CopiesKnowTheOriginAndAWriteForgetsItThere) {
    PixelBytes first = pixel_bytes({1, 2, 3, 4});
    EXPECT_EQ(first.origin(), nullptr);
    const std::shared_ptr<const Bitmap> indices = some_indices();
    first.set_origin(indices);
    PixelBytes second = first;
    EXPECT_EQ(second.origin(), indices);
    second.own();
    EXPECT_EQ(second.origin(), nullptr);
    EXPECT_EQ(first.origin(), indices);
    first.own();
    EXPECT_EQ(first.origin(), nullptr) << "also where nobody shares it";
}

TEST(PixelBytes, ForgottenPixelsHaveNoOrigin) {
    PixelBytes first = pixel_bytes({1, 2, 3, 4});
    first.set_origin(some_indices());
    PixelBytes second = first;
    second.forget();
    EXPECT_EQ(second.origin(), nullptr);
    EXPECT_NE(first.origin(), nullptr);
    first.forget();
    EXPECT_EQ(first.origin(), nullptr);
}

} // namespace
} // namespace varnoth
