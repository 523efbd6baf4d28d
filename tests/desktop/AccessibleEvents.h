// The accessibility events that Qt sends to assistive technology.
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include <QAccessible>

namespace varnoth::test {

/// Makes Qt send accessibility events as if assistive technology were running. Further calls have no effect.
void switch_accessibility_on();

/// Records the accessibility events during its lifetime. There can be only one at a time.
class AccessibleEvents {
  public:
    using Listener = std::function<void(QAccessibleEvent& event)>;

    /// `listener` is called at each event.
    explicit AccessibleEvents(Listener listener = {});
    ~AccessibleEvents();

    AccessibleEvents(const AccessibleEvents&) = delete;
    AccessibleEvents& operator=(const AccessibleEvents&) = delete;

    /// The number of events of a kind about an object.
    std::ptrdiff_t count(QAccessible::Event type, const QObject& about) const;

    /// Whether the checked or the disabled state of an object was reported as changed.
    bool checked_changed(const QObject& about) const;
    bool disabled_changed(const QObject& about) const;

  private:
    struct Entry {
        QAccessible::Event type;
        const QObject* object;
        QAccessible::State changed;
    };

    void add(QAccessibleEvent& event);

    std::vector<Entry> entries_;
    Listener listener_;
    QAccessible::UpdateHandler before_;
};

} // namespace varnoth::test
