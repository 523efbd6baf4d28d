// What assistive technology sees of every window, walked as it walks it.
#include <set>
#include <sstream>

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QMetaEnum>
#include <QTest>

#include "desktop/EveryWindow.h"

namespace varnoth {
namespace {

using test::EveryWindowTest;

std::string role_name(QAccessible::Role role) {
    return QMetaEnum::fromType<QAccessible::Role>().valueToKey(role);
}

std::string name_of(QAccessibleInterface& interface) {
    return interface.text(QAccessible::Name).toStdString();
}

bool is_visible(QAccessibleInterface& interface) {
    return !interface.state().invisible;
}

/// Lines and panels that only hold others: a screen reader passes over them.
bool is_plain_container(QAccessibleInterface& interface) {
    return interface.role() == QAccessible::Client || interface.role() == QAccessible::Grouping;
}

using Visit = std::function<void(QAccessibleInterface& interface, int depth)>;

/// Everything visible below a window, in the order of the tree. The inside of lists is left to them.
void walk(QAccessibleInterface& interface, const Visit& visit, int depth = 0) {
    visit(interface, depth);
    if (interface.role() == QAccessible::List || interface.role() == QAccessible::ComboBox) {
        return;
    }
    for (int i = 0; i < interface.childCount(); ++i) {
        QAccessibleInterface* child = interface.child(i);
        ASSERT_NE(child, nullptr) << name_of(interface) << " " << i;
        EXPECT_EQ(child->parent(), &interface) << name_of(*child);
        EXPECT_EQ(interface.indexOfChild(child), i) << name_of(*child);
        if (is_visible(*child)) {
            walk(*child, visit, is_plain_container(interface) ? depth : depth + 1);
        }
    }
}

QAccessibleInterface& tree_of(QWidget& widget) {
    return *QAccessible::queryAccessibleInterface(&widget);
}

std::string states_of(QAccessibleInterface& interface) {
    const QAccessible::State state = interface.state();
    std::string states;
    const auto add = [&](bool is, const char* word) { states += is ? std::string(" ") + word : ""; };
    add(state.modal, "modal");
    add(state.disabled, "disabled");
    add(state.checkable, state.checked ? "checked" : "unchecked");
    add(state.focusable, "focusable");
    add(state.focused, "focused");
    add(state.readOnly, "read-only");
    add(state.editable, "editable");
    if (QAccessibleValueInterface* value = interface.valueInterface()) {
        states += " " + value->currentValue().toString().toStdString() + " of " +
                  value->maximumValue().toString().toStdString();
    } else if (interface.role() != QAccessible::List && !interface.text(QAccessible::Value).isEmpty()) {
        states += " = " + interface.text(QAccessible::Value).toStdString();
    }
    return states;
}

/// What a screen reader can say: one line for each object, its role, name and states.
std::string spoken(QWidget& window) {
    std::ostringstream lines;
    walk(tree_of(window), [&](QAccessibleInterface& interface, int depth) {
        const bool says_nothing = name_of(interface).empty() && interface.role() == QAccessible::StaticText;
        if (!is_plain_container(interface) && !says_nothing) {
            lines << std::string(static_cast<std::size_t>(depth), ' ') << role_name(interface.role()) << " \""
                  << name_of(interface) << '"' << states_of(interface) << '\n';
        }
    });
    return lines.str();
}

class AccessibleTreeTest : public EveryWindowTest {};

TEST_F(AccessibleTreeTest, Dump) {
    in_every_window([&](const std::string& state, Form& window) {
        std::cout << "== " << state << "\n" << spoken(window);
    });
}

} // namespace
} // namespace varnoth
