#include "desktop/services/exception_barrier.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>

#include "core/base/RunTimeFailure.h"
#include "core/services/Services.h"

namespace varnoth {

namespace {

void show_and_exit(std::string_view /*name*/, std::string_view message) {
    show_message("Run-time error: " + std::string(message));
    std::fflush(nullptr);
    // No clean-up: nested event loops and half-done commands may still be on the stack.
    std::_Exit(exit_run_time_failure);
}

FatalErrorHandler& installed_handler() {
    static FatalErrorHandler handler = show_and_exit;
    return handler;
}

bool handling_fatal_error = false;

// One line, whatever the handler does. Without allocating: memory may have run out.
void log_error(std::string_view name, const SourceLocation* location) {
    std::fprintf(stderr, "varnoth: run-time error: %.*s", static_cast<int>(name.size()), name.data());
    if (location != nullptr) {
        std::fprintf(stderr, ", at %s:%u in %s", location->file_name(),
                     static_cast<unsigned>(location->line()), location->function_name());
    }
    std::fputc('\n', stderr);
}

void handle_fatal_error(std::string_view name, std::string_view message,
                        const SourceLocation* location = nullptr) {
    if (std::exchange(handling_fatal_error, true)) {
        return;
    }
    log_error(name, location);
    installed_handler()(name, message);
    handling_fatal_error = false;
}

} // namespace

FatalErrorHandlerInstallation::FatalErrorHandlerInstallation(FatalErrorHandler handler)
    : previous_(std::exchange(installed_handler(), std::move(handler))) {}

FatalErrorHandlerInstallation::~FatalErrorHandlerInstallation() {
    installed_handler() = std::move(previous_);
}

bool is_handling_fatal_error() {
    return handling_fatal_error;
}

void handle_current_exception() noexcept {
    try {
        throw;
    } catch (const RunTimeFailure& failure) {
        handle_fatal_error(failure.name(), failure.words(), &failure.location());
    } catch (const std::bad_alloc&) {
        handle_fatal_error(name_of(Failure::OutOfMemory), words_of(Failure::OutOfMemory));
    } catch (const std::length_error&) {
        handle_fatal_error(name_of(Failure::OutOfMemory), words_of(Failure::OutOfMemory));
    } catch (const std::exception& exception) {
        handle_fatal_error("Exception", exception.what());
    }
}

} // namespace varnoth
