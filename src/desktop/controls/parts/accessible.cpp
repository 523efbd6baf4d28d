#include "desktop/controls/parts/accessible.h"

#include <algorithm>
#include <array>
#include <memory>

#include <QAccessible>

#include "desktop/controls/parts/SkinnedControl.h"
#include "desktop/services/exception_barrier.h"
#include "desktop/widgets/accessible.h"
#include "desktop/widgets/checked_state.h"

namespace varnoth {

namespace {

// The action that a control offers to screen readers. Each acts like a click.
enum class Action { None, Press, Toggle };

struct Description {
    const char* class_name;
    QAccessible::Role role;
    const char* name_property; ///< supplies the name of a control without an accessible name
    Action action;
};

constexpr std::array descriptions{
    Description{"varnoth::elboton", QAccessible::Button, "Caption", Action::Press},
    Description{"varnoth::elcheck", QAccessible::CheckBox, "Caption", Action::Toggle},
    Description{"varnoth::elradio", QAccessible::RadioButton, "Caption", Action::Press},
    Description{"varnoth::ellabel", QAccessible::StaticText, "Caption", Action::None},
    Description{"varnoth::elprogress", QAccessible::ProgressBar, nullptr, Action::None},
    Description{"varnoth::elframe", QAccessible::Grouping, nullptr, Action::None},
    Description{"varnoth::elline3d", QAccessible::Separator, nullptr, Action::None},
    Description{"varnoth::eltexto", QAccessible::Client, nullptr, Action::None},
    Description{"varnoth::elcombo", QAccessible::Client, nullptr, Action::None},
    Description{"varnoth::elpanel", QAccessible::Pane, "Title", Action::None},
};

class AccessibleControl : public AccessibleWithKey {
  public:
    AccessibleControl(SkinnedControl& control, const Description& description)
        : AccessibleWithKey(&control, description.role), control_(control), description_(description) {}

    QString text(QAccessible::Text kind) const override {
        const QString given = AccessibleWithKey::text(kind);
        if (kind != QAccessible::Name || !given.isEmpty() || description_.name_property == nullptr) {
            return given;
        }
        return control_.property(description_.name_property).toString();
    }

    QAccessible::State state() const override {
        QAccessible::State state = AccessibleWithKey::state();
        add_checked_state(control_, state);
        if (role() == QAccessible::Client) {
            state.focused = false; // the inner widget has the focus
        }
        if (role() == QAccessible::CheckBox || role() == QAccessible::RadioButton) {
            state.checkable = true;
            state.checked = control_.property("Value").toBool();
        }
        return state;
    }

    QStringList actionNames() const override {
        const QString action = action_name();
        return control_.isEnabled() && !action.isEmpty() ? QStringList{action} : QStringList{};
    }

    void doAction(const QString& name) override {
        if (actionNames().contains(name)) {
            guard_event([this] { control_.perform_click(); });
        }
    }

  protected:
    SkinnedControl& control() const { return control_; }

  private:
    QString action_name() const {
        switch (description_.action) {
        case Action::Press:
            return pressAction();
        case Action::Toggle:
            return toggleAction();
        case Action::None:
            break;
        }
        return {};
    }

    SkinnedControl& control_;
    const Description& description_;
};

/// The progress bar also reports its value, which is read-only.
class AccessibleProgress final : public AccessibleControl, public QAccessibleValueInterface {
  public:
    using AccessibleControl::AccessibleControl;

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface) {
            return static_cast<QAccessibleValueInterface*>(this);
        }
        return AccessibleControl::interface_cast(type);
    }

    QAccessible::State state() const override {
        QAccessible::State state = AccessibleControl::state();
        state.readOnly = true;
        return state;
    }

    QVariant currentValue() const override { return object()->property("Value"); }

    void setCurrentValue(const QVariant& /*value*/) override {}

    QVariant maximumValue() const override { return object()->property("Max"); }

    QVariant minimumValue() const override { return object()->property("Min"); }

    QVariant minimumStepSize() const override { return 1; }
};

/// The close button of a panel. It is not a widget, so the panel's interface creates and deletes it.
class AccessibleCloseButton final : public QAccessibleInterface, public QAccessibleActionInterface {
  public:
    explicit AccessibleCloseButton(SkinnedControl& panel) : panel_(panel) {}

    bool isValid() const override { return true; }

    QObject* object() const override { return nullptr; }

    QWindow* window() const override { return panel_.window()->windowHandle(); }

    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(&panel_); }

    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }

    int childCount() const override { return 0; }

    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }

    QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }

    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Accelerator) {
            return accessible_key(panel_);
        }
        return kind == QAccessible::Name ? QStringLiteral("Close") : QString();
    }

    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}

    QRect rect() const override {
        const QRect place = panel_.part<BoxPart>("Picture2").place().toRect();
        return {panel_.mapToGlobal(place.topLeft()), place.size()};
    }

    QAccessible::Role role() const override { return QAccessible::Button; }

    QAccessible::State state() const override {
        QAccessible::State state;
        state.disabled = !panel_.isEnabled();
        state.invisible = !panel_.isVisible();
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }

    QStringList actionNames() const override {
        return panel_.isEnabled() ? QStringList{pressAction()} : QStringList{};
    }

    void doAction(const QString& name) override {
        if (actionNames().contains(name)) {
            guard_event([this] { panel_.perform_click(); });
        }
    }

    QStringList keyBindingsForAction(const QString& name) const override {
        const QString key = accessible_key(panel_);
        return actionNames().contains(name) && !key.isEmpty() ? QStringList{key} : QStringList{};
    }

  private:
    SkinnedControl& panel_;
};

/// The close button is a child of the panel while it is visible.
class AccessiblePanel final : public AccessibleControl {
  public:
    AccessiblePanel(SkinnedControl& panel, const Description& description)
        : AccessibleControl(panel, description),
          close_button_(QAccessible::registerAccessibleInterface(
              std::make_unique<AccessibleCloseButton>(panel).release())) {}

    ~AccessiblePanel() override { QAccessible::deleteAccessibleInterface(close_button_); }

    AccessiblePanel(const AccessiblePanel&) = delete;
    AccessiblePanel& operator=(const AccessiblePanel&) = delete;

    int childCount() const override { return control().property("Cerrar").toBool() ? 1 : 0; }

    QAccessibleInterface* child(int index) const override {
        return index >= 0 && index < childCount() ? QAccessible::accessibleInterface(close_button_) : nullptr;
    }

    int indexOfChild(const QAccessibleInterface* child) const override {
        return childCount() > 0 && child == QAccessible::accessibleInterface(close_button_) ? 0 : -1;
    }

  private:
    QAccessible::Id close_button_;
};

// Qt takes ownership of the interface.
QAccessibleInterface* make_interface(const QString& class_name, QObject* object) {
    auto* const control = qobject_cast<SkinnedControl*>(object);
    const auto description = std::ranges::find_if(
        descriptions, [&](const Description& each) { return class_name == QLatin1String(each.class_name); });
    if (control == nullptr || description == descriptions.end()) {
        return nullptr;
    }
    if (description->role == QAccessible::ProgressBar) {
        return new AccessibleProgress(*control, *description);
    }
    if (description->role == QAccessible::Pane) {
        return new AccessiblePanel(*control, *description);
    }
    return new AccessibleControl(*control, *description);
}

} // namespace

void install_accessible_controls() {
    QAccessible::installFactory(make_interface);
}

} // namespace varnoth
