// How a control's properties are set by name or from a property bag: as values whose type is only known while
// the program runs.
#pragma once

#include <cstdint>
#include <type_traits>

#include <QFont>
#include <QString>
#include <QVariant>

namespace varnoth {

class SkinnedControl;

/// The value in a property's own type: std::int16_t, std::int32_t, double, bool, QString or QFont. A number
/// is rounded to the nearest whole one, ties to even, where the type asks for it. Overflow for a number that
/// does not fit the type, InvalidPropertyValue for what cannot be such a value at all.
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

    /// What it is when nothing is stored. `Font` is the host's font then, and the four properties that are
    /// parts of a font are what `Font` says; these five have no fallback of their own.
    QVariant fallback = {};

    bool stored = true;        ///< whether it is saved and loaded
    bool loaded_first = false; ///< before those that are saved before it
};

template <typename Control, typename Argument>
void set_property(SkinnedControl& control, const QVariant& value, void (Control::*setter)(Argument)) {
    (static_cast<Control&>(control).*setter)(property_value<std::remove_cvref_t<Argument>>(value));
}

/// A setter in the form that ControlProperty holds: sets<&elboton::SetCaption>.
template <auto Setter>
void sets(SkinnedControl& control, const QVariant& value) {
    set_property(control, value, Setter);
}

} // namespace varnoth
