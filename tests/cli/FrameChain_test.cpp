#include "cli/FrameChain.h"

#include <chrono>
#include <future>

#include <gtest/gtest.h>

namespace varnoth::cli {
namespace {

using Pixels = std::shared_ptr<const FramePixels>;

Pixels some_pixels() {
    return std::make_shared<const FramePixels>();
}

TEST(FrameChain, FrameGetsThePixelsOfTheOneBefore) {
    FrameChain chain(3);
    const Pixels second = some_pixels();
    auto third = std::async(std::launch::async, [&] { return chain.begin(2, some_pixels()); });
    EXPECT_EQ(chain.begin(0, some_pixels()), nullptr);
    EXPECT_NE(chain.begin(1, second), nullptr);
    EXPECT_EQ(third.get(), second);
}

TEST(FrameChain, FrameAfterAFailedOneGetsNoPixels) {
    FrameChain chain(2);
    auto second = std::async(std::launch::async, [&] { return chain.begin(1, some_pixels()); });
    chain.finish(0);
    EXPECT_EQ(second.get(), nullptr);
}

TEST(FrameChain, WaitsForABand) {
    FrameChain chain(1);
    chain.begin(0, some_pixels());
    chain.add_band(0);
    chain.wait_for_band(0, 0);
    auto second = std::async(std::launch::async, [&] { chain.wait_for_band(0, 1); });
    EXPECT_EQ(second.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    chain.add_band(0);
    second.get();
}

TEST(FrameChain, FinishedFrameHasEveryBand) {
    FrameChain chain(1);
    chain.begin(0, some_pixels());
    auto last = std::async(std::launch::async, [&] { chain.wait_for_band(0, 1000); });
    chain.finish(0);
    last.get();
}

TEST(FrameChain, KeepsNoPixelsOfFramesThatHaveASuccessor) {
    FrameChain chain(2);
    Pixels first = some_pixels();
    const std::weak_ptr<const FramePixels> watched = first;
    chain.begin(0, std::move(first));
    EXPECT_FALSE(watched.expired());
    chain.begin(1, some_pixels());
    EXPECT_TRUE(watched.expired());
}

} // namespace
} // namespace varnoth::cli
