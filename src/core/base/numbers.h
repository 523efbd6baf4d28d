// Arithmetic that fails instead of wrapping, and the one way in which reals become whole numbers.
// Nothing in the program narrows a number with a bare cast or rounds with anything else.
#pragma once

#include <cmath>
#include <concepts>
#include <cstdint>
#include <limits>

#include "core/base/RunTimeFailure.h"

namespace varnoth {

/// The value in a narrower type; Overflow when it does not fit.
template <std::integral To, std::integral From>
constexpr To narrow(From value) {
    const To result = static_cast<To>(value);
    if (static_cast<From>(result) != value || ((result < To{}) != (value < From{}))) {
        fail(Failure::Overflow);
    }
    return result;
}

/// The sum in the width of the operands; Overflow instead of a wrap.
template <std::signed_integral T>
constexpr T checked_add(T a, std::type_identity_t<T> b) {
    T result{};
    if (__builtin_add_overflow(a, b, &result)) {
        fail(Failure::Overflow);
    }
    return result;
}

/// The difference, likewise.
template <std::signed_integral T>
constexpr T checked_subtract(T a, std::type_identity_t<T> b) {
    T result{};
    if (__builtin_sub_overflow(a, b, &result)) {
        fail(Failure::Overflow);
    }
    return result;
}

/// The product, likewise.
template <std::signed_integral T>
constexpr T checked_multiply(T a, std::type_identity_t<T> b) {
    T result{};
    if (__builtin_mul_overflow(a, b, &result)) {
        fail(Failure::Overflow);
    }
    return result;
}

/// A real to the nearest whole number, ties to even; Overflow when it does not fit or is not a number.
/// Relies on the default rounding mode of the floating-point unit, which nothing here changes.
template <std::integral To>
To round_to_even(double value) {
    const double rounded = std::nearbyint(value);
    constexpr double lowest = static_cast<double>(std::numeric_limits<To>::min());
    constexpr double beyond = 2.0 * static_cast<double>(std::numeric_limits<To>::max() / 2 + 1);
    if (!(rounded >= lowest && rounded < beyond)) {
        fail(Failure::Overflow);
    }
    return static_cast<To>(rounded);
}

/// Real division as the formats use it; DivisionByZero for a zero divisor.
inline double divide(double dividend, double divisor) {
    if (divisor == 0.0) {
        fail(Failure::DivisionByZero);
    }
    return dividend / divisor;
}

} // namespace varnoth
