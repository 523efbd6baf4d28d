#include "desktop/services/exception_barrier.h"

#include <cstdio>
#include <new>
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

using Ends = std::vector<std::pair<std::string, std::string>>;

class ExceptionBarrier : public testing::Test {
  protected:
    Ends ends_;
    FatalErrorHandlerInstallation installation_{
        [this](std::string_view name, std::string_view words) { ends_.emplace_back(name, words); }};
};

TEST_F(ExceptionBarrier, AFailureInAHandlerReachesTheInstalledEndWithItsNameAndWords) {
    QLineEdit field;
    on_event(&field, &QLineEdit::textChanged, &field, [] { fail(Failure::SubscriptOutOfRange); });
    field.setText("a");
    EXPECT_EQ(ends_, (Ends{{"SubscriptOutOfRange", "Subscript out of range"}}));
}

TEST_F(ExceptionBarrier, AFailureInANestedEventLoopReachesTheEndThereAndPassesNoLoop) {
    QLineEdit field;
    bool went_on = false;
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
        EXPECT_EQ(ends_.size(), 1U);
        went_on = true;
    });
    field.setText("a");
    EXPECT_EQ(ends_, (Ends{{"DivisionByZero", std::string(words_of(Failure::DivisionByZero))}}));
    EXPECT_TRUE(went_on);
}

TEST_F(ExceptionBarrier, MemoryThatCannotBeHadIsOutOfMemory) {
    guard_event([] { throw std::bad_alloc(); });
    guard_event([] { throw std::length_error("too long"); });
    const std::pair<std::string, std::string> end{"OutOfMemory", words_of(Failure::OutOfMemory)};
    EXPECT_EQ(ends_, (Ends{end, end}));
}

TEST_F(ExceptionBarrier, AnyOtherExceptionIsToldInItsOwnWords) {
    guard_event([] { throw std::runtime_error("the words"); });
    EXPECT_EQ(ends_, (Ends{{"Exception", "the words"}}));
}

TEST_F(ExceptionBarrier, WorkThatGoesThroughEndsNothing) {
    int runs = 0;
    guard_event([&] { ++runs; });
    EXPECT_EQ(runs, 1);
    EXPECT_TRUE(ends_.empty());
}

TEST_F(ExceptionBarrier, AHandlerTakesAsManyArgumentsAsItLikes) {
    QLineEdit field;
    std::vector<std::string> taken;
    on_event(&field, &QLineEdit::textChanged, &field, [&] { taken.emplace_back("none"); });
    on_event(&field, &QLineEdit::textChanged, &field,
             [&](const QString& text) { taken.push_back(text.toStdString()); });
    field.setText("all");
    EXPECT_EQ(taken, (std::vector<std::string>{"none", "all"}));
}

TEST_F(ExceptionBarrier, AHandlerIsGoneWithItsContext) {
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

TEST(FatalErrorHandling, NothingMoreRunsWhileAFailureIsTold) {
    QLineEdit field;
    int later_runs = 0;
    on_event(&field, &QLineEdit::textChanged, &field, [&] { ++later_runs; });
    bool was_ending = false;
    const FatalErrorHandlerInstallation installation([&](std::string_view, std::string_view) {
        was_ending = is_handling_fatal_error();
        field.setText("while it is told"); // as a message box's event loop would
    });
    EXPECT_FALSE(is_handling_fatal_error());
    guard_event([] { fail(Failure::Overflow); });
    EXPECT_TRUE(was_ending);
    EXPECT_EQ(later_runs, 0);
    EXPECT_FALSE(is_handling_fatal_error());
}

TEST(FatalErrorHandling, WhileAFailureIsToldWindowsArePaintedAndAFurtherFailureIsPassedOver) {
    int told = 0;
    int painted = 0;
    const FatalErrorHandlerInstallation installation([&](std::string_view, std::string_view) {
        ++told;
        guard_paint([&] { ++painted; });
        guard_paint([] { fail(Failure::DivisionByZero); });
    });
    guard_event([] { fail(Failure::Overflow); });
    EXPECT_EQ(painted, 1);
    EXPECT_EQ(told, 1);
}

TEST(FatalErrorHandling, AFailureWhilePaintingIsFatalToo) {
    std::string name;
    const FatalErrorHandlerInstallation installation(
        [&](std::string_view failure, std::string_view) { name = failure; });
    guard_paint([] { fail(Failure::DivisionByZero); });
    EXPECT_EQ(name, "DivisionByZero");
}

TEST(FatalErrorHandling, TheEndBeforeComesBackAfterAnInstallation) {
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

/// Writes what it is to show where the parent of a process that dies can see it.
class BoxesOnErrorStream : public MessageBoxes {
  public:
    void show(std::string_view text) override {
        std::fprintf(stderr, "[%.*s]\n", static_cast<int>(text.size()), text.data());
    }

    bool ask(std::string_view /*question*/) override { return true; }
};

TEST(ExceptionBarrierDeathTest, WithoutAnInstallationTheFailureIsToldInABoxAndTheProgramEnds) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    BoxesOnErrorStream boxes;
    const ServicesInstallation services({&boxes, nullptr, nullptr, nullptr});
    EXPECT_EXIT(guard_event([] { fail(Failure::DivisionByZero); }), testing::ExitedWithCode(70),
                "\\[Run-time error: Division by zero\\]\n$");
}

} // namespace
} // namespace varnoth
