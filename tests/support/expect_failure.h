// EXPECT_FAILURE(statement, Name) expects a statement to fail with exactly that RunTimeFailure.
#pragma once

#include <optional>

#include <gtest/gtest.h>

#include "core/base/RunTimeFailure.h"

namespace varnoth::test {

/// The failure of the action, or nothing if it succeeds.
template <typename Action>
std::optional<Failure> failure_in(Action&& action) {
    try {
        action();
    } catch (const RunTimeFailure& failure) {
        return failure.failure();
    }
    return std::nullopt;
}

} // namespace varnoth::test

// A macro, so that a failed expectation shows the statement and its line.
#define EXPECT_FAILURE(statement, name)                                                                      \
    EXPECT_EQ(::varnoth::test::failure_in([&] { static_cast<void>(statement); }), ::varnoth::Failure::name)  \
        << #statement
