// Sets the properties of controls by name or from a property bag, from values whose type is only known at run
// time.
#pragma once

#include <cstdint>
#include <type_traits>

#include <QFont>
#include <QString>
#include <QVariant>

namespace varnoth {

class SkinnedControl;

/// Converts a value to the type of a property: std::int16_t, std::int32_t, double, bool, QString or QFont.
/// Numbers are rounded to the nearest integer, ties to even, for integer types. Fails with Overflow for a
/// number out of the type's range and with InvalidPropertyValue for a value that cannot be converted.
template <typename Value>
Value property_value(const QVariant& value);

template <>
std::int16_t property_value(const QVariant& value);
template <>
std::int32_t property_value(const QVariant& value);
template <>
double property_value(const QVariant& value);
template <>
bool property_value(const QVariant& value);
template <>
QString property_value(const QVariant& value);
template <>
QFont property_value(const QVariant& value);

/// A property that can be set by its name.
struct ControlProperty {
    const char* name;
    void (*set)(SkinnedControl& control, const QVariant& value);

    /// The value when none is stored. Invalid for `Font`, which falls back to the host's font, and for the
    /// four properties that are parts of a font, which fall back to `Font`.
    QVariant fallback = {};

    bool stored = true;        ///< whether it is saved and loaded
    bool loaded_first = false; ///< whether it is loaded before all others
};

template <typename Control, typename Argument>
void set_property(SkinnedControl& control, const QVariant& value, void (Control::*setter)(Argument)) {
    (static_cast<Control&>(control).*setter)(property_value<std::remove_cvref_t<Argument>>(value));
}

/// Adapts a setter to ControlProperty::set: sets<&elboton::SetCaption>.
template <auto Setter>
void sets(SkinnedControl& control, const QVariant& value) {
    set_property(control, value, Setter);
}

} // namespace varnoth
