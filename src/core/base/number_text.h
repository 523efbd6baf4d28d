// Numbers as the labels show them.
#pragma once

#include <charconv>
#include <string>

namespace varnoth {

/// The shortest decimal text of a real number, with a decimal point only when the value needs it: 16, -16.5.
inline std::string number_text(double value) {
    char text[352]; // the smallest real numbers of 64 bits take 327
    return {text, std::to_chars(text, text + sizeof text, value, std::chars_format::fixed).ptr};
}

} // namespace varnoth
