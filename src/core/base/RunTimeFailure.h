// The one exception type of the program: a failure that nothing on the way is meant to repair.
// It is thrown where it arises and caught at the edge of an event handler, which ends the program.
#pragma once

#include <exception>
#include <string_view>

namespace varnoth {

enum class Failure {
    Overflow,             ///< a number does not fit its 8, 16 or 32 bits
    DivisionByZero,       ///< an integer or real division by zero
    SubscriptOutOfRange,  ///< an index outside its array, or an array that cannot have its bounds
    OutOfMemory,          ///< memory for an array or a picture cannot be had
    FileNotFound,         ///< no file of that name
    PathNotFound,         ///< a folder on the way to the file is missing
    PermissionDenied,     ///< the file may not be read, written or deleted, or is a folder
    DiskFull,             ///< no room for the bytes to be written
    DeviceIo,             ///< any other failure of the file system
    InvalidPicture,       ///< a picture file that does not decode
    InvalidPropertyValue, ///< a size or setting that a surface or control cannot take
    InvalidProcedureCall, ///< an argument that a routine cannot take
};

/// The failure's name as an identifier, "SubscriptOutOfRange".
std::string_view name_of(Failure failure);

/// The failure in words, "Subscript out of range", as the user sees it.
std::string_view words_of(Failure failure);

class RunTimeFailure : public std::exception {
  public:
    explicit RunTimeFailure(Failure failure) : failure_(failure) {}

    Failure failure() const { return failure_; }

    std::string_view name() const { return name_of(failure_); }

    std::string_view words() const { return words_of(failure_); }

    /// The same as name().
    const char* what() const noexcept override;

  private:
    Failure failure_;
};

[[noreturn]] void fail(Failure failure);

/// Throws SubscriptOutOfRange unless 0 <= index < count.
template <typename Index, typename Count>
constexpr void check_subscript(Index index, Count count) {
    if (index < 0 || static_cast<unsigned long long>(index) >= static_cast<unsigned long long>(count)) {
        fail(Failure::SubscriptOutOfRange);
    }
}

} // namespace varnoth
