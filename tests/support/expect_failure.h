// EXPECT_FAILURE(statement, Name): the statement must end in exactly that run-time failure.
#pragma once

#include <optional>

#include <gtest/gtest.h>

#include "base/RunTimeFailure.h"

namespace varnoth::test {

/// The failure in which the action ends, or nothing when it goes through.
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

// A macro, because a failed expectation should name the statement and its line.
#define EXPECT_FAILURE(statement, name)                                                                      \
    EXPECT_EQ(::varnoth::test::failure_in([&] { static_cast<void>(statement); }), ::varnoth::Failure::name)  \
        << #statement
