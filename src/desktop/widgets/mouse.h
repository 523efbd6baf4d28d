// The arguments of the controls' mouse events.
#pragma once

#include <cstdint>

#include <QPointF>
#include <Qt>

namespace varnoth {

inline constexpr std::int16_t left_button = 1;
inline constexpr std::int16_t right_button = 2;
inline constexpr std::int16_t middle_button = 4;

/// `Button` is one button for a press or release, and the sum of all held buttons for a move. `Shift` is the
/// sum of 1 for the shift key, 2 for control and 4 for alt. `x` and `y` are in pixels, relative to the part
/// of the control that raises the event.
struct MouseArguments {
    std::int16_t Button = 0;
    std::int16_t Shift = 0;
    float x = 0;
    float y = 0;
};

/// The sum of the numbers of the buttons. Buttons other than these three have no number and raise no events.
inline std::int16_t button_number(Qt::MouseButtons buttons) {
    return static_cast<std::int16_t>((buttons.testFlag(Qt::LeftButton) ? left_button : 0) |
                                     (buttons.testFlag(Qt::RightButton) ? right_button : 0) |
                                     (buttons.testFlag(Qt::MiddleButton) ? middle_button : 0));
}

/// Whether a press or release of that button raises an event.
inline bool has_number(Qt::MouseButton button) {
    return button_number(button) != 0;
}

/// The sum of the numbers of the keys.
inline std::int16_t shift_number(Qt::KeyboardModifiers modifiers) {
    return static_cast<std::int16_t>((modifiers.testFlag(Qt::ShiftModifier) ? 1 : 0) |
                                     (modifiers.testFlag(Qt::ControlModifier) ? 2 : 0) |
                                     (modifiers.testFlag(Qt::AltModifier) ? 4 : 0));
}

/// The arguments of an event.
inline MouseArguments mouse_arguments(Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers,
                                      const QPointF& position) {
    return {button_number(buttons), shift_number(modifiers), static_cast<float>(position.x()),
            static_cast<float>(position.y())};
}

} // namespace varnoth
