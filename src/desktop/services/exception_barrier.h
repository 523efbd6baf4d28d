// The exception barrier between Qt and the program's own code. Event handlers run inside it, so that no
// exception ever propagates through Qt's stack frames. An exception that reaches the barrier is a fatal
// error: it is reported in one message box and terminates the program, however deeply event loops are nested.
// One line on standard error says what failed and, for a RunTimeFailure, where.
#pragma once

#include <functional>
#include <string_view>
#include <utility>

#include <QObject>

namespace varnoth {

/// The exit status of the program after a fatal error.
inline constexpr int exit_run_time_failure = 70;

/// Handles a fatal error, given its name as an identifier and its message for the user.
using FatalErrorHandler = std::function<void(std::string_view name, std::string_view message)>;

/// Installs a fatal error handler for its own lifetime; the destructor restores the previous one. The default
/// handler shows "Run-time error: " and the message in a box and exits with exit_run_time_failure.
class FatalErrorHandlerInstallation {
  public:
    explicit FatalErrorHandlerInstallation(FatalErrorHandler handler);
    ~FatalErrorHandlerInstallation();

    FatalErrorHandlerInstallation(const FatalErrorHandlerInstallation&) = delete;
    FatalErrorHandlerInstallation& operator=(const FatalErrorHandlerInstallation&) = delete;

  private:
    FatalErrorHandler previous_;
};

/// Whether the fatal error handler is running. Until it returns, events are ignored.
bool is_handling_fatal_error();

/// Passes the current exception to the fatal error handler, or drops it while the handler is running. Only
/// for use in a catch block.
void handle_current_exception() noexcept;

/// Runs the handler of one event inside the barrier. Does nothing while the fatal error handler is running.
template <typename Work>
void guard_event(Work&& work) noexcept {
    if (is_handling_fatal_error()) {
        return;
    }
    try {
        std::forward<Work>(work)();
    } catch (...) {
        handle_current_exception();
    }
}

/// Runs the handler of a paint event inside the barrier, also while the fatal error handler is running: the
/// windows behind its message box must still be drawn.
template <typename Work>
void guard_paint(Work&& work) noexcept {
    try {
        std::forward<Work>(work)();
    } catch (...) {
        handle_current_exception();
    }
}

/// Connects a signal to a handler that runs inside the barrier. The handler takes all of the signal's
/// arguments or none.
template <typename Sender, typename Signal, typename Handler>
QMetaObject::Connection on_event(const Sender* sender, Signal signal, const QObject* context,
                                 Handler handler) {
    if constexpr (std::is_invocable_v<Handler>) {
        return QObject::connect(sender, signal, context,
                                [handler = std::move(handler)]() mutable { guard_event(handler); });
    } else {
        return QObject::connect(sender, signal, context,
                                [handler = std::move(handler)](auto&&... arguments) mutable {
                                    guard_event([&] { handler(arguments...); });
                                });
    }
}

} // namespace varnoth
