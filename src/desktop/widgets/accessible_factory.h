// Registers accessible interfaces for widget classes.
#pragma once

#include <memory>

#include <QAccessible>

namespace varnoth {

/// Makes `Interface` the accessible interface of every `Widget`; it is constructed from a pointer to the
/// widget. Further calls have no effect.
template <typename Widget, typename Interface>
void describe_to_screen_readers() {
    [[maybe_unused]] static const bool installed = [] {
        QAccessible::installFactory([](const QString&, QObject* object) -> QAccessibleInterface* {
            auto* const widget = qobject_cast<Widget*>(object);
            return widget == nullptr ? nullptr : std::make_unique<Interface>(widget).release(); // Qt owns it
        });
        return true;
    }();
}

} // namespace varnoth
