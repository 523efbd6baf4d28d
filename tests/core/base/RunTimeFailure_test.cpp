#include "core/base/RunTimeFailure.h"

#include <cstddef>
#include <set>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "core/base/files.h"
#include "support/expect_failure.h"

namespace varnoth::test {
namespace {

TEST(RunTimeFailure, HasAnIdentifierAndATextForTheUser) {
    EXPECT_EQ(name_of(Failure::Overflow), "Overflow");
    EXPECT_EQ(words_of(Failure::SubscriptOutOfRange), "Subscript out of range");
    EXPECT_EQ(name_of(Failure::SubscriptOutOfRange), "SubscriptOutOfRange");
    EXPECT_EQ(name_of(Failure::InvalidPropertyValue), "InvalidPropertyValue");
    EXPECT_EQ(name_of(Failure::InvalidProcedureCall), "InvalidProcedureCall");
    EXPECT_EQ(words_of(Failure::DivisionByZero), "Division by zero");
    EXPECT_EQ(name_of(Failure::DeviceIo), "DeviceIo");
    EXPECT_EQ(name_of(Failure::InvalidPicture), "InvalidPicture");
}

TEST(RunTimeFailure, NamesAndTextsAreUnique) {
    std::set<std::string> names;
    std::set<std::string> words;
    constexpr int count = static_cast<int>(Failure::InvalidProcedureCall) + 1;
    for (int i = 0; i < count; ++i) {
        names.emplace(name_of(static_cast<Failure>(i)));
        words.emplace(words_of(static_cast<Failure>(i)));
    }
    EXPECT_EQ(names.size(), static_cast<std::size_t>(count));
    EXPECT_EQ(words.size(), static_cast<std::size_t>(count));
}

TEST(RunTimeFailure, IsThrownAsAnExceptionWithItsName) {
    EXPECT_FAILURE(fail(Failure::PathNotFound), PathNotFound);
    const RunTimeFailure failure(Failure::PathNotFound);
    EXPECT_STREQ(static_cast<const std::exception&>(failure).what(), "PathNotFound");
    EXPECT_EQ(failure.name(), "PathNotFound");
    EXPECT_EQ(failure.words(), "Path not found");
}

TEST(RunTimeFailure, CheckSubscriptChecksBothBounds) {
    check_subscript(0, 1);
    check_subscript(4, 5U);
    EXPECT_FAILURE(check_subscript(-1, 5), SubscriptOutOfRange);
    EXPECT_FAILURE(check_subscript(5, 5), SubscriptOutOfRange);
    EXPECT_FAILURE(check_subscript(0, 0), SubscriptOutOfRange);
    EXPECT_FAILURE(check_subscript(~0ULL, 5), SubscriptOutOfRange);
}

/// The location of the failure that an action throws.
template <typename Action>
SourceLocation location_of_failure(Action&& action) {
    try {
        action();
    } catch (const RunTimeFailure& failure) {
        return failure.location();
    }
    return SourceLocation::current();
}

TEST(RunTimeFailure, LocationIsThatOfTheCallToFail) {
    const unsigned line = __LINE__ + 1;
    const SourceLocation location = location_of_failure([] { fail(Failure::DiskFull); });
    EXPECT_EQ(location.line(), line);
    EXPECT_TRUE(std::string_view(location.file_name()).ends_with("RunTimeFailure_test.cpp"));
}

TEST(RunTimeFailure, SubscriptFailureIsLocatedAtTheCaller) {
    const unsigned line = __LINE__ + 1;
    const SourceLocation location = location_of_failure([] { check_subscript(1, 1); });
    EXPECT_EQ(location.line(), line);
    EXPECT_TRUE(std::string_view(location.file_name()).ends_with("RunTimeFailure_test.cpp"));
}

TEST(RunTimeFailure, FileFailureIsLocatedInTheCore) {
    const SourceLocation location = location_of_failure([] { InputFile file("missing/file"); });
    EXPECT_STREQ(location.function_name(), "fail_at");
    EXPECT_TRUE(std::string_view(location.file_name()).ends_with("core/base/files.cpp"))
        << location.file_name();
}

} // namespace
} // namespace varnoth::test
