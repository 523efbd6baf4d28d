#include "cli/FrameChain.h"

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
    chain.finish(0, false);
    EXPECT_EQ(second.get(), nullptr);
}

TEST(FrameChain, WaitsUntilAFrameIsDoneOrHasFailed) {
    FrameChain chain(2);
    for (const std::size_t frame : {0U, 1U}) {
        chain.begin(frame, some_pixels());
        auto done = std::async(std::launch::async, [&] { return chain.wait_for(frame); });
        chain.finish(frame, frame == 0);
        EXPECT_EQ(done.get(), frame == 0);
    }
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
