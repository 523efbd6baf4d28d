// The one exception type of the program. A failure that nothing handles propagates to the exception barrier
// of the event handler, which terminates the program.
#pragma once

#include <exception>
#include <string_view>

#include "core/base/SourceLocation.h"

namespace varnoth {

enum class Failure {
    Overflow,             ///< a number does not fit its 8, 16 or 32 bits
    DivisionByZero,       ///< an integer or real division by zero
    SubscriptOutOfRange,  ///< an index outside its array, or invalid bounds for a new array
    OutOfMemory,          ///< no memory for an array or a picture
    FileNotFound,         ///< no file of that name
    PathNotFound,         ///< a folder in the path of the file is missing
    PermissionDenied,     ///< the file may not be read, written or deleted, or is a folder
    DiskFull,             ///< no space for the bytes to be written
    DeviceIo,             ///< any other failure of the file system
    InvalidPicture,       ///< a picture file that cannot be decoded
    InvalidPropertyValue, ///< a size or setting that a surface or control does not accept
    InvalidProcedureCall, ///< an argument that a routine does not accept
};

/// The failure's name as an identifier, "SubscriptOutOfRange".
std::string_view name_of(Failure failure);

/// The failure in words, "Subscript out of range", as the user sees it.
std::string_view words_of(Failure failure);

class RunTimeFailure : public std::exception {
  public:
    explicit RunTimeFailure(Failure failure, SourceLocation location = SourceLocation::current())
        : failure_(failure), location_(location) {}

    Failure failure() const { return failure_; }

    /// Where the failure arose; the file is relative to the source root. For people who debug: nothing shows
    /// it to the user.
    const SourceLocation& location() const { return location_; }

    std::string_view name() const { return name_of(failure_); }

    std::string_view words() const { return words_of(failure_); }

    /// The same as name().
    const char* what() const noexcept override;

  private:
    Failure failure_;
    SourceLocation location_;
};

[[noreturn]] void fail(Failure failure, SourceLocation location = SourceLocation::current());

/// Throws SubscriptOutOfRange, located at the caller, unless 0 <= index < count.
template <typename Index, typename Count>
constexpr void check_subscript(Index index, Count count,
                               SourceLocation location = SourceLocation::current()) {
    if (index < 0 || static_cast<unsigned long long>(index) >= static_cast<unsigned long long>(count)) {
        fail(Failure::SubscriptOutOfRange, location);
    }
}

} // namespace varnoth
