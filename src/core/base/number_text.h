// Numbers as users type them and as labels show them.
#pragma once

#include <string>
#include <string_view>

namespace varnoth {

/// The decimal number that a text starts with, blanks before it aside: "32.5 pixels" is 32.5, "-7" is -7.
/// What follows it does not matter. 0 when the text starts with no number; Overflow when the number is beyond
/// a double.
double leading_number(std::string_view text);

/// The shortest decimal text of a real number, with a decimal point only when the value needs it: 16, -16.5.
std::string number_text(double value);

} // namespace varnoth
