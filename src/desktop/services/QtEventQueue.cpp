#include "desktop/services/QtEventQueue.h"

#include <QCoreApplication>

namespace varnoth {

void QtEventQueue::yield() {
    using Clock = std::chrono::steady_clock;
    if (Clock::now() < next_pump_) {
        return;
    }
    // Set before and after: an event handler that yields must not process events again at once, nor must the
    // caller when the handlers took longer than the interval.
    next_pump_ = Clock::now() + interval_;
    QCoreApplication::processEvents();
    next_pump_ = Clock::now() + interval_;
}

} // namespace varnoth
