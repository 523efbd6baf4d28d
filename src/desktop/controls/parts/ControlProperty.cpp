#include "desktop/controls/parts/ControlProperty.h"

#include "core/base/RunTimeFailure.h"
#include "core/base/numbers.h"

namespace varnoth {

namespace {

template <typename Value>
Value converted(const QVariant& value) {
    if (!value.canConvert<Value>()) {
        fail(Failure::InvalidPropertyValue);
    }
    return value.value<Value>();
}

} // namespace

template <>
double property_value(const QVariant& value) {
    bool is_number = false;
    const double number = value.toDouble(&is_number);
    if (!is_number) {
        fail(Failure::InvalidPropertyValue);
    }
    return number;
}

// A double represents every 16-bit and 32-bit integer exactly, and converting to it cannot bring a number
// into range.
template <>
std::int16_t property_value(const QVariant& value) {
    return round_to_even<std::int16_t>(property_value<double>(value));
}

template <>
std::int32_t property_value(const QVariant& value) {
    return round_to_even<std::int32_t>(property_value<double>(value));
}

template <>
bool property_value(const QVariant& value) {
    return converted<bool>(value);
}

template <>
QString property_value(const QVariant& value) {
    return converted<QString>(value);
}

template <>
QFont property_value(const QVariant& value) {
    return converted<QFont>(value);
}

} // namespace varnoth
