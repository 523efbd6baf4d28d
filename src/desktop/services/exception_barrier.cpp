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

void show_and_exit(std::string_view /*name*/, std::string_view words) {
    show_message("Run-time error: " + std::string(words));
    std::fflush(nullptr);
    // Nothing is tidied up: there may be any number of event loops and half-done commands below.
    std::_Exit(exit_run_time_failure);
}

FatalErrorHandler& installed_handler() {
    static FatalErrorHandler end = show_and_exit;
    return end;
}

bool ending = false;

void handle_fatal_error(std::string_view name, std::string_view words) {
    if (std::exchange(ending, true)) {
        return;
    }
    installed_handler()(name, words);
    ending = false;
}

} // namespace

FatalErrorHandlerInstallation::FatalErrorHandlerInstallation(FatalErrorHandler end)
    : before_(std::exchange(installed_handler(), std::move(end))) {}

FatalErrorHandlerInstallation::~FatalErrorHandlerInstallation() {
    installed_handler() = std::move(before_);
}

bool is_handling_fatal_error() {
    return ending;
}

void handle_current_exception() noexcept {
    try {
        throw;
    } catch (const RunTimeFailure& failure) {
        handle_fatal_error(failure.name(), failure.words());
    } catch (const std::bad_alloc&) {
        handle_fatal_error(name_of(Failure::OutOfMemory), words_of(Failure::OutOfMemory));
    } catch (const std::length_error&) {
        handle_fatal_error(name_of(Failure::OutOfMemory), words_of(Failure::OutOfMemory));
    } catch (const std::exception& exception) {
        handle_fatal_error("Exception", exception.what());
    }
}

} // namespace varnoth
