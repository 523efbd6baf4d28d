#include "desktop/services/QtEventQueue.h"

#include <chrono>
#include <thread>

#include <QCoreApplication>
#include <QMetaObject>

#include <gtest/gtest.h>

namespace varnoth {
namespace {

using namespace std::chrono_literals;

/// Posts an event whose handler increments `count`.
void post(int& count) {
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [&count] { ++count; }, Qt::QueuedConnection);
}

/// Drains the event queue after each test, so that no event of one test runs in the next.
class QtEventQueueTest : public testing::Test {
  protected:
    void TearDown() override { QCoreApplication::processEvents(); }
};

TEST_F(QtEventQueueTest, FirstYieldProcessesEvents) {
    QtEventQueue queue(1h);
    int count = 0;
    post(count);
    queue.yield();
    EXPECT_EQ(count, 1);
}

TEST_F(QtEventQueueTest, YieldWithinTheIntervalProcessesNothing) {
    static int count;
    count = 0;
    QtEventQueue queue(1h);
    queue.yield();
    post(count);
    for (int i = 0; i < 1000; ++i) {
        queue.yield();
    }
    EXPECT_EQ(count, 0);
}

TEST_F(QtEventQueueTest, YieldAfterTheIntervalProcessesEvents) {
    QtEventQueue queue;
    queue.yield();
    int count = 0;
    post(count);
    std::this_thread::sleep_for(QtEventQueue::default_interval + 1ms);
    queue.yield();
    EXPECT_EQ(count, 1);
}

TEST_F(QtEventQueueTest, YieldInAnEventHandlerProcessesNothing) {
    QtEventQueue queue(1h);
    int inner = 0;
    int inner_seen = -1;
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [&] {
            post(inner);
            queue.yield();
            inner_seen = inner;
        },
        Qt::QueuedConnection);
    queue.yield();
    EXPECT_EQ(inner_seen, 0);
    QCoreApplication::processEvents();
}

TEST_F(QtEventQueueTest, IntervalStartsWhenProcessingEnds) {
    QtEventQueue queue(50ms);
    std::chrono::steady_clock::time_point event_ended;
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [&] {
            std::this_thread::sleep_for(60ms);
            event_ended = std::chrono::steady_clock::now();
        },
        Qt::QueuedConnection);
    queue.yield();
    static int count;
    count = 0;
    post(count);
    queue.yield();
    // The event may run only if the machine stalled for the whole interval.
    const bool stalled = std::chrono::steady_clock::now() - event_ended >= 50ms;
    EXPECT_TRUE(count == 0 || stalled);
}

TEST_F(QtEventQueueTest, MillionYieldsProcessEventsOncePerInterval) {
    QtEventQueue queue;
    int pumps = 0;
    std::function<void()> again = [&] {
        ++pumps;
        if (pumps < 1'000'000) {
            QMetaObject::invokeMethod(QCoreApplication::instance(), again, Qt::QueuedConnection);
        }
    };
    again();
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 1'000'000; ++i) {
        queue.yield();
    }
    const auto intervals = (std::chrono::steady_clock::now() - start) / QtEventQueue::default_interval;
    EXPECT_LE(pumps, intervals + 2);
    pumps = 1'000'000;
    QCoreApplication::processEvents();
}

} // namespace
} // namespace varnoth
