// The edge between Qt and the program's own code: what an event makes the program do runs inside it, so that
// no failure ever passes through Qt's frames. A failure that reaches the edge is fatal: it is told in one
// message box and ends the program, however deep in nested events it arose.
#pragma once

#include <functional>
#include <string_view>
#include <utility>

#include <QObject>

namespace varnoth {

/// Exit status of a program that a failure has ended.
inline constexpr int exit_run_time_failure = 70;

/// What is done about a fatal failure: its name as an identifier and its words.
using FatalErrorHandler = std::function<void(std::string_view name, std::string_view words)>;

/// Replaces, for its own lifetime, what is done about a fatal failure. Without one, the box "Run-time error:
/// " and the words is shown and the process ends with exit_run_time_failure.
class FatalErrorHandlerInstallation {
  public:
    explicit FatalErrorHandlerInstallation(FatalErrorHandler end);
    ~FatalErrorHandlerInstallation();

    FatalErrorHandlerInstallation(const FatalErrorHandlerInstallation&) = delete;
    FatalErrorHandlerInstallation& operator=(const FatalErrorHandlerInstallation&) = delete;

  private:
    FatalErrorHandler before_;
};

/// Whether a failure is being told right now. The program does nothing more then.
bool is_handling_fatal_error();

/// Ends on the exception in flight, or does nothing while another one is told; to be called in a catch block
/// alone.
void handle_current_exception() noexcept;

/// Runs the work of one event.
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

/// Runs the painting of one event, also while a failure is told: what lies behind its box stays to be seen.
template <typename Work>
void guard_paint(Work&& work) noexcept {
    try {
        std::forward<Work>(work)();
    } catch (...) {
        handle_current_exception();
    }
}

/// Connects a signal to a handler that runs at the edge. The handler takes as many of the signal's arguments
/// as it likes, from the first on.
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
