// The truth value of the readers, writers, probes and control properties.
#pragma once

#include <cstdint>

namespace varnoth {

/// A signed 16-bit number: -1 is true, 0 is false. 1 does not equal True.
using Truth = std::int16_t;

inline constexpr Truth True = -1;
inline constexpr Truth False = 0;

/// A condition as a truth value.
constexpr Truth truth(bool condition) {
    return condition ? True : False;
}

} // namespace varnoth
