// The event queue on Qt. It processes events at most once per interval, so that a yield at every row of a
// picture usually costs no more than reading the clock.
#pragma once

#include <chrono>

#include "core/services/Services.h"

namespace varnoth {

class QtEventQueue : public EventQueue {
  public:
    static constexpr std::chrono::milliseconds default_interval{15};

    /// Events are processed at most once per interval; the first yield always processes them. The default is
    /// about one refresh of the screen.
    explicit QtEventQueue(std::chrono::steady_clock::duration interval = default_interval)
        : interval_(interval) {}

    /// Requires a QCoreApplication. Reentrant: an event handler that a yield runs may yield too.
    void yield() override;

  private:
    std::chrono::steady_clock::duration interval_;
    std::chrono::steady_clock::time_point next_pump_{};
};

} // namespace varnoth
