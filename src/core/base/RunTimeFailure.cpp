#include "core/base/RunTimeFailure.h"

#include <array>
#include <cstddef>

namespace varnoth {

namespace {

struct Naming {
    const char* name;
    const char* words;
};

// In the order of the enumeration.
constexpr std::array<Naming, 12> namings{{
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

static_assert(namings.size() == static_cast<std::size_t>(Failure::InvalidProcedureCall) + 1);

const Naming& naming(Failure failure) {
    return namings[static_cast<std::size_t>(failure)];
}

} // namespace

std::string_view name_of(Failure failure) {
    return naming(failure).name;
}

std::string_view words_of(Failure failure) {
    return naming(failure).words;
}

const char* RunTimeFailure::what() const noexcept {
    return naming(failure_).name;
}

void fail(Failure failure, SourceLocation location) {
    throw RunTimeFailure(failure, location);
}

} // namespace varnoth
