// The yield on Qt: pumps the application's events, but only when some milliseconds have passed since the last
// time, so that a call at every row of a picture costs a look at the clock.
#pragma once

#include <chrono>

#include "core/services/Services.h"

namespace varnoth {

class QtEventQueue : public EventQueue {
  public:
    static constexpr std::chrono::milliseconds default_interval{15};

    /// Events are pumped at most once in an interval; the first yield always pumps. By default that is as
    /// often as a screen shows what they paint.
    explicit QtEventQueue(std::chrono::steady_clock::duration interval = default_interval)
        : interval_(interval) {}

    /// Needs a QCoreApplication. May be called from within an event that a yield pumps.
    void yield() override;

  private:
    std::chrono::steady_clock::duration interval_;
    std::chrono::steady_clock::time_point next_pump_{};
};

} // namespace varnoth
