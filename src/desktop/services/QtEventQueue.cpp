#include "desktop/services/QtEventQueue.h"

#include <QCoreApplication>

namespace varnoth {

void QtEventQueue::yield() {
    using Clock = std::chrono::steady_clock;
    if (Clock::now() < next_pump_) {
        return;
    }
    // Set before and after: an event's handler that yields must not pump at once, and neither must the caller
    // after events that took long.
    next_pump_ = Clock::now() + interval_;
    QCoreApplication::processEvents();
    next_pump_ = Clock::now() + interval_;
}

} // namespace varnoth
