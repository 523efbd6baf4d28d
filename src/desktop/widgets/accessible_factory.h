// How a kind of widget gets a description of its own in the tree that screen readers walk.
#pragma once

#include <memory>

#include <QAccessible>

namespace varnoth {

/// Lets every `Widget` be described by an `Interface`, which is made of a pointer to it. Further calls change
/// nothing.
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
