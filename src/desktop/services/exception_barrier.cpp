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

void tell_and_exit(std::string_view /*name*/, std::string_view words) {
    show_message("Run-time error: " + std::string(words));
    std::fflush(nullptr);
    // Nothing is tidied up: there may be any number of event loops and half-done commands below.
    std::_Exit(exit_run_time_failure);
}

FatalEnd& installed_end() {
    static FatalEnd end = tell_and_exit;
    return end;
}

bool ending = false;

void end_with(std::string_view name, std::string_view words) {
    if (std::exchange(ending, true)) {
        return;
    }
    installed_end()(name, words);
    ending = false;
}

} // namespace

FatalEndInstallation::FatalEndInstallation(FatalEnd end)
    : before_(std::exchange(installed_end(), std::move(end))) {}

FatalEndInstallation::~FatalEndInstallation() {
    installed_end() = std::move(before_);
}

bool is_ending() {
    return ending;
}

void end_on_failure() noexcept {
    try {
        throw;
    } catch (const RunTimeFailure& failure) {
        end_with(failure.name(), failure.words());
    } catch (const std::bad_alloc&) {
        end_with(name_of(Failure::OutOfMemory), words_of(Failure::OutOfMemory));
    } catch (const std::length_error&) {
        end_with(name_of(Failure::OutOfMemory), words_of(Failure::OutOfMemory));
    } catch (const std::exception& exception) {
        end_with("Exception", exception.what());
    }
}

} // namespace varnoth
