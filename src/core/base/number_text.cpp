#include "core/base/number_text.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>

#include "core/base/RunTimeFailure.h"

namespace varnoth {

namespace {

constexpr bool is_number_start(char character) {
    return (character >= '0' && character <= '9') || character == '.';
}

// The exponent of a number, 0 without one. An exponent that does not fit 64 bits is clamped: no text has
// enough digits to compensate for it.
std::int64_t exponent_of(std::string_view number, std::size_t mark) {
    if (mark == std::string_view::npos) {
        return 0;
    }
    std::string_view digits = number.substr(mark + 1);
    if (digits.starts_with('+')) {
        digits.remove_prefix(1);
    }
    std::int64_t exponent = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
    if (error == std::errc::result_out_of_range) {
        using Limits = std::numeric_limits<std::int64_t>;
        return digits.starts_with('-') ? Limits::min() : Limits::max();
    }
    return exponent;
}

// Whether a number that a double cannot represent is too small rather than too large. Such a number has a
// digit other than 0.
bool is_tiny(std::string_view number) {
    const std::size_t mark = number.find_first_of("eE");
    const std::string_view mantissa = number.substr(0, mark);
    const std::size_t first = mantissa.find_first_of("123456789");
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    // The position of the first significant digit, counted from the decimal point to the left; below 1 it is
    // after the point.
    const auto place = static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first);
    return exponent_of(number, mark) < -place;
}

} // namespace

double leading_number(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    text.remove_prefix(first == std::string_view::npos ? text.size() : first);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    // from_chars also accepts "inf" and "nan".
    if (text.empty() || !is_number_start(text.front())) {
        return 0;
    }
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range && !is_tiny({text.data(), end})) {
        fail(Failure::Overflow);
    }
    return negative && value != 0 ? -value : value;
}

std::string number_text(double value) {
    char text[352]; // the smallest doubles need 327
    return {text, std::to_chars(text, text + sizeof text, value, std::chars_format::fixed).ptr};
}

} // namespace varnoth
