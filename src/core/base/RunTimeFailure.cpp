#include "core/base/RunTimeFailure.h"

#include <array>
#include <cstddef>

namespace varnoth {

namespace {

struct FailureTexts {
    const char* name;
    const char* words;
};

// In the order of the enumeration.
constexpr std::array<FailureTexts, 12> texts{{
    {"Overflow", "Overflow"},
    {"DivisionByZero", "Division by zero"},
    {"SubscriptOutOfRange", "Subscript out of range"},
    {"OutOfMemory", "Out of memory"},
    {"FileNotFound", "File not found"},
    {"PathNotFound", "Path not found"},
    {"PermissionDenied", "Permission denied"},
    {"DiskFull", "Disk full"},
    {"DeviceIo", "Device input/output error"},
    {"InvalidPicture", "Invalid picture"},
    {"InvalidPropertyValue", "Invalid property value"},
    {"InvalidProcedureCall", "Invalid procedure call"},
}};

static_assert(texts.size() == static_cast<std::size_t>(Failure::InvalidProcedureCall) + 1);

const FailureTexts& texts_of(Failure failure) {
    return texts[static_cast<std::size_t>(failure)];
}

} // namespace

std::string_view name_of(Failure failure) {
    return texts_of(failure).name;
}

std::string_view words_of(Failure failure) {
    return texts_of(failure).words;
}

const char* RunTimeFailure::what() const noexcept {
    return texts_of(failure_).name;
}

void fail(Failure failure, SourceLocation location) {
    throw RunTimeFailure(failure, location);
}

} // namespace varnoth
