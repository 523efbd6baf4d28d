// Arithmetic that fails instead of wrapping, and the program's one rounding of reals to integers. Code that
// narrows or rounds a number uses these functions, never a bare cast. A failure is located at the caller.
#pragma once

#include <cmath>
#include <concepts>
#include <cstdint>
#include <limits>

#include "core/base/RunTimeFailure.h"

namespace varnoth {

/// The value converted to another integer type; Overflow when it does not fit.
template <std::integral To, std::integral From>
constexpr To narrow(From value, SourceLocation location = SourceLocation::current()) {
    const To result = static_cast<To>(value);
    if (static_cast<From>(result) != value || ((result < To{}) != (value < From{}))) {
        fail(Failure::Overflow, location);
    }
    return result;
}

/// The sum; Overflow when it does not fit the type of the operands.
template <std::signed_integral T>
constexpr T checked_add(T a, std::type_identity_t<T> b, SourceLocation location = SourceLocation::current()) {
    T result{};
    if (__builtin_add_overflow(a, b, &result)) {
        fail(Failure::Overflow, location);
    }
    return result;
}

/// The difference, likewise.
template <std::signed_integral T>
constexpr T checked_subtract(T a, std::type_identity_t<T> b,
                             SourceLocation location = SourceLocation::current()) {
    T result{};
    if (__builtin_sub_overflow(a, b, &result)) {
        fail(Failure::Overflow, location);
    }
    return result;
}

/// The product, likewise.
template <std::signed_integral T>
constexpr T checked_multiply(T a, std::type_identity_t<T> b,
                             SourceLocation location = SourceLocation::current()) {
    T result{};
    if (__builtin_mul_overflow(a, b, &result)) {
        fail(Failure::Overflow, location);
    }
    return result;
}

/// The nearest integer, ties to even; Overflow when it does not fit or the value is NaN. Relies on the
/// default floating-point rounding mode, which the program never changes.
template <std::integral To>
To round_to_even(double value, SourceLocation location = SourceLocation::current()) {
    const double rounded = std::nearbyint(value);
    constexpr double lowest = static_cast<double>(std::numeric_limits<To>::min());
    constexpr double beyond = 2.0 * static_cast<double>(std::numeric_limits<To>::max() / 2 + 1);
    if (!(rounded >= lowest && rounded < beyond)) {
        fail(Failure::Overflow, location);
    }
    return static_cast<To>(rounded);
}

/// Real division; DivisionByZero for a zero divisor.
inline double divide(double dividend, double divisor, SourceLocation location = SourceLocation::current()) {
    if (divisor == 0.0) {
        fail(Failure::DivisionByZero, location);
    }
    return dividend / divisor;
}

} // namespace varnoth
