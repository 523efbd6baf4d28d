// The truth value that file formats, probes and control properties of this program exchange.
#pragma once

#include <cstdint>

namespace varnoth {

/// A signed 16-bit number, -1 for true and 0 for false. 1 is not True.
using Truth = std::int16_t;

inline constexpr Truth True = -1;
inline constexpr Truth False = 0;

/// A condition as a truth value.
constexpr Truth truth(bool condition) {
    return condition ? True : False;
}

} // namespace varnoth
