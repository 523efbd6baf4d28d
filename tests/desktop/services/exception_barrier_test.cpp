#include "desktop/services/exception_barrier.h"

#include <cstdio>
#include <new>
#include <regex>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <QEventLoop>
#include <QLineEdit>
#include <QTimer>

#include <gtest/gtest.h>

#include "core/base/RunTimeFailure.h"
#include "core/services/Services.h"

namespace varnoth {
namespace {

using FatalErrors = std::vector<std::pair<std::string, std::string>>;

class ExceptionBarrier : public testing::Test {
  protected:
    FatalErrors errors_;
    FatalErrorHandlerInstallation installation_{
        [this](std::string_view name, std::string_view message) { errors_.emplace_back(name, message); }};
};

TEST_F(ExceptionBarrier, FailureReachesTheFatalErrorHandler) {
    QLineEdit field;
    on_event(&field, &QLineEdit::textChanged, &field, [] { fail(Failure::SubscriptOutOfRange); });
    field.setText("a");
    EXPECT_EQ(errors_, (FatalErrors{{"SubscriptOutOfRange", "Subscript out of range"}}));
}

TEST_F(ExceptionBarrier, FailureStaysInANestedEventLoop) {
    QLineEdit field;
    bool returned = false;
    on_event(&field, &QLineEdit::textChanged, &field, [&] {
        QEventLoop nested;
        QTimer timer;
        timer.setSingleShot(true);
        on_event(&timer, &QTimer::timeout, &nested, [&] {
            nested.quit();
            fail(Failure::DivisionByZero);
        });
        timer.start(0);
        nested.exec();
        EXPECT_EQ(errors_.size(), 1U);
        returned = true;
    });
    field.setText("a");
    EXPECT_EQ(errors_, (FatalErrors{{"DivisionByZero", std::string(words_of(Failure::DivisionByZero))}}));
    EXPECT_TRUE(returned);
}

TEST_F(ExceptionBarrier, FailedAllocationIsReportedAsOutOfMemory) {
    guard_event([] { throw std::bad_alloc(); });
    guard_event([] { throw std::length_error("too long"); });
    const std::pair<std::string, std::string> error{"OutOfMemory", words_of(Failure::OutOfMemory)};
    EXPECT_EQ(errors_, (FatalErrors{error, error}));
}

TEST_F(ExceptionBarrier, OtherExceptionIsReportedWithItsOwnMessage) {
    guard_event([] { throw std::runtime_error("the message"); });
    EXPECT_EQ(errors_, (FatalErrors{{"Exception", "the message"}}));
}

TEST_F(ExceptionBarrier, SuccessfulHandlerReportsNothing) {
    int runs = 0;
    guard_event([&] { ++runs; });
    EXPECT_EQ(runs, 1);
    EXPECT_TRUE(errors_.empty());
}

TEST_F(ExceptionBarrier, HandlerTakesAllArgumentsOrNone) {
    QLineEdit field;
    std::vector<std::string> taken;
    on_event(&field, &QLineEdit::textChanged, &field, [&] { taken.emplace_back("none"); });
    on_event(&field, &QLineEdit::textChanged, &field,
             [&](const QString& text) { taken.push_back(text.toStdString()); });
    field.setText("all");
    EXPECT_EQ(taken, (std::vector<std::string>{"none", "all"}));
}

TEST_F(ExceptionBarrier, HandlerIsDisconnectedWithItsContext) {
    QLineEdit field;
    int runs = 0;
    {
        const QObject context;
        on_event(&field, &QLineEdit::textChanged, &context, [&] { ++runs; });
        field.setText("a");
    }
    field.setText("b");
    EXPECT_EQ(runs, 1);
}

TEST(FatalErrorHandling, EventsAreIgnoredWhileAnErrorIsReported) {
    QLineEdit field;
    int later_runs = 0;
    on_event(&field, &QLineEdit::textChanged, &field, [&] { ++later_runs; });
    bool was_handling = false;
    const FatalErrorHandlerInstallation installation([&](std::string_view, std::string_view) {
        was_handling = is_handling_fatal_error();
        field.setText("changed"); // stands for an event that the message box's event loop delivers
    });
    EXPECT_FALSE(is_handling_fatal_error());
    guard_event([] { fail(Failure::Overflow); });
    EXPECT_TRUE(was_handling);
    EXPECT_EQ(later_runs, 0);
    EXPECT_FALSE(is_handling_fatal_error());
}

TEST(FatalErrorHandling, PaintingContinuesAndItsFailuresAreDropped) {
    int reports = 0;
    int painted = 0;
    const FatalErrorHandlerInstallation installation([&](std::string_view, std::string_view) {
        ++reports;
        guard_paint([&] { ++painted; });
        guard_paint([] { fail(Failure::DivisionByZero); });
    });
    guard_event([] { fail(Failure::Overflow); });
    EXPECT_EQ(painted, 1);
    EXPECT_EQ(reports, 1);
}

TEST(FatalErrorHandling, FailureWhilePaintingIsFatal) {
    std::string name;
    const FatalErrorHandlerInstallation installation(
        [&](std::string_view failure, std::string_view) { name = failure; });
    guard_paint([] { fail(Failure::DivisionByZero); });
    EXPECT_EQ(name, "DivisionByZero");
}

TEST(FatalErrorHandling, InstallationRestoresThePreviousHandler) {
    int outer = 0;
    int inner = 0;
    const FatalErrorHandlerInstallation first([&](std::string_view, std::string_view) { ++outer; });
    {
        const FatalErrorHandlerInstallation second([&](std::string_view, std::string_view) { ++inner; });
        guard_event([] { fail(Failure::Overflow); });
    }
    guard_event([] { fail(Failure::Overflow); });
    EXPECT_EQ(inner, 1);
    EXPECT_EQ(outer, 1);
}

/// Writes messages to standard error, where the death test checks them.
class BoxesOnErrorStream : public MessageBoxes {
  public:
    void show(std::string_view text) override {
        std::fprintf(stderr, "[%.*s]\n", static_cast<int>(text.size()), text.data());
    }

    bool ask(std::string_view /*question*/) override { return true; }
};

TEST(ExceptionBarrierDeathTest, DefaultHandlerShowsABoxAndExits) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    BoxesOnErrorStream boxes;
    const ServicesInstallation services({&boxes, nullptr, nullptr, nullptr});
    EXPECT_EXIT(guard_event([] { fail(Failure::DivisionByZero); }), testing::ExitedWithCode(70),
                "\\[Run-time error: Division by zero\\]\n$");
}

class ExceptionBarrierLog : public ExceptionBarrier {
  protected:
    /// What standard error shows of a handler that ends with an exception.
    template <typename Action>
    static std::string logged(Action&& action) {
        testing::internal::CaptureStderr();
        guard_event(action);
        return testing::internal::GetCapturedStderr();
    }
};

TEST_F(ExceptionBarrierLog, FailureIsOneLineWithItsPlace) {
    const std::string line = logged([] { fail(Failure::DivisionByZero); });
    EXPECT_TRUE(std::regex_match(
        line, std::regex("varnoth: run-time error: DivisionByZero, at "
                         "tests/desktop/services/exception_barrier_test\\.cpp:[0-9]+ in .+\n")))
        << line;
}

TEST_F(ExceptionBarrierLog, FailedAllocationIsOneLineWithoutAPlace) {
    EXPECT_EQ(logged([] { throw std::bad_alloc(); }), "varnoth: run-time error: OutOfMemory\n");
}

} // namespace
} // namespace varnoth
