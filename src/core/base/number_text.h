// Conversion between numbers and the texts of text boxes and labels.
#pragma once

#include <string>
#include <string_view>

namespace varnoth {

/// The decimal number at the start of a text, after any blanks: "32.5 pixels" is 32.5, "-7" is -7. Ignores
/// what follows. 0 when the text does not start with a number; Overflow when a double cannot represent the
/// number.
double leading_number(std::string_view text);

/// The shortest decimal text of a real number, with a decimal point only when the value needs it: 16, -16.5.
std::string number_text(double value);

} // namespace varnoth
