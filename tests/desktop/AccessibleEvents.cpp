#include "desktop/AccessibleEvents.h"

#include <algorithm>
#include <utility>

// Accessibility is enabled through the platform integration, which only Qt's private headers expose.
#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

namespace varnoth::test {

namespace {

// Qt calls a plain function.
AccessibleEvents* current = nullptr;

} // namespace

void switch_accessibility_on() {
    QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(true);
}

AccessibleEvents::AccessibleEvents(Listener listener) : listener_(std::move(listener)) {
    switch_accessibility_on();
    current = this;
    before_ = QAccessible::installUpdateHandler([](QAccessibleEvent* event) { current->add(*event); });
}

AccessibleEvents::~AccessibleEvents() {
    QAccessible::installUpdateHandler(before_);
}

std::ptrdiff_t AccessibleEvents::count(QAccessible::Event type, const QObject& about) const {
    return std::ranges::count_if(
        entries_, [&](const Entry& entry) { return entry.type == type && entry.object == &about; });
}

bool AccessibleEvents::checked_changed(const QObject& about) const {
    return std::ranges::any_of(
        entries_, [&](const Entry& entry) { return entry.object == &about && entry.changed.checked != 0U; });
}

bool AccessibleEvents::disabled_changed(const QObject& about) const {
    return std::ranges::any_of(
        entries_, [&](const Entry& entry) { return entry.object == &about && entry.changed.disabled != 0U; });
}

void AccessibleEvents::add(QAccessibleEvent& event) {
    const bool is_state = event.type() == QAccessible::StateChanged;
    entries_.push_back(
        {event.type(), event.object(),
         is_state ? static_cast<QAccessibleStateChangeEvent&>(event).changedStates() : QAccessible::State()});
    if (listener_) {
        listener_(event);
    }
}

} // namespace varnoth::test
