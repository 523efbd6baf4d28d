#include "base/leading_number.h"

#include <charconv>

#include "base/RunTimeFailure.h"

namespace varnoth {

namespace {

constexpr bool is_number_start(char character) {
    return (character >= '0' && character <= '9') || character == '.';
}

// Of a number that a double cannot hold: whether it is too small, not too large.
bool is_tiny(std::string_view number) {
    const std::size_t exponent = number.find_first_of("eE");
    return exponent == std::string_view::npos ? number.find_first_of("123456789.") == number.find('.')
                                              : number[exponent + 1] == '-';
}

} // namespace

double leading_number(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    text.remove_prefix(first == std::string_view::npos ? text.size() : first);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    // Without this, the words that stand for infinity would count.
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

} // namespace varnoth
