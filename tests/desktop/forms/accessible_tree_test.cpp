// The accessibility tree of every window, as assistive technology traverses it.
#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QApplication>
#include <QMessageBox>
#include <QMetaEnum>
#include <QTimer>

#include "desktop/forms/EveryWindow.h"
#include "desktop/services/QtMessageBoxes.h"

namespace varnoth::test {
namespace {

std::string role_name(QAccessible::Role role) {
    return QMetaEnum::fromType<QAccessible::Role>().valueToKey(role);
}

std::string name_of(QAccessibleInterface& interface) {
    return interface.text(QAccessible::Name).toStdString();
}

bool is_visible(QAccessibleInterface& interface) {
    return !interface.state().invisible;
}

/// Lines and plain containers, which screen readers skip.
bool is_plain_container(QAccessibleInterface& interface) {
    return interface.role() == QAccessible::Client || interface.role() == QAccessible::Grouping;
}

using Visit = std::function<void(QAccessibleInterface& interface, int depth)>;

/// Visits everything visible below a window in tree order, except the contents of lists.
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
    } else if (interface.role() == QAccessible::EditableText &&
               !interface.text(QAccessible::Value).contains(u'/')) {
        states += " = " + interface.text(QAccessible::Value).toStdString();
    }
    const QString description = interface.text(QAccessible::Description);
    return states + (description.isEmpty() ? "" : " (" + description.toStdString() + ")");
}

/// What a screen reader can say: one line per object with its role, name and states.
std::string spoken(QWidget& window) {
    std::ostringstream lines;
    walk(tree_of(window), [&](QAccessibleInterface& interface, int depth) {
        const bool says_nothing = name_of(interface).empty() && interface.role() == QAccessible::StaticText;
        if (!is_plain_container(interface) && !says_nothing) {
            // Drives differ between machines.
            const std::string name =
                name_of(interface).starts_with("Drives: ") ? "Drives: ..." : name_of(interface);
            lines << std::string(static_cast<std::size_t>(depth), ' ') << role_name(interface.role()) << " \""
                  << name << '"' << states_of(interface) << '\n';
        }
    });
    return lines.str();
}

/// The control that a label with a colon belongs to: the next one to the right, else the one directly below.
QWidget* labelled_by(const ellabel& label) {
    QWidget* const holder = label.parentWidget();
    const QRect place = label.geometry();
    const QPoint beside(place.right() + 16, place.center().y());
    const QPoint below(place.left() + 4, place.bottom() + 12);
    for (const QPoint& point : {beside, below}) {
        QWidget* found = holder->childAt(point);
        while (found != nullptr && found->focusPolicy() == Qt::NoFocus && found != holder &&
               qobject_cast<PictureBox*>(found) == nullptr) {
            found = found->parentWidget();
        }
        if (found != nullptr && found != holder && holder->isAncestorOf(found)) {
            return found;
        }
    }
    return nullptr;
}

class AccessibleTreeTest : public EveryWindowTest {};

// The file contains the tree of every window. After an intended change, replace it with this test's output.
TEST_F(AccessibleTreeTest, EveryWindowMatchesTheStoredTree) {
    std::ostringstream trees;
    in_every_window([&](const std::string& state, Form& window) {
        trees << "# " << state << '\n' << spoken(window) << '\n';
    });
    std::ifstream file(VARNOTH_SOURCE_DIR "/tests/desktop/forms/accessible_trees.txt");
    const std::string written((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    EXPECT_EQ(trees.str(), written) << trees.str();
}

TEST_F(AccessibleTreeTest, EveryControlHasAUniqueName) {
    in_every_window([&](const std::string& state, Form& window) {
        std::set<std::string> said;
        walk(tree_of(window), [&](QAccessibleInterface& interface, int /*depth*/) {
            const std::string name = name_of(interface);
            if (is_plain_container(interface)) {
                EXPECT_EQ(name, "") << state;
                EXPECT_FALSE(interface.state().focusable || interface.state().focused) << state;
                EXPECT_TRUE(interface.actionInterface()->actionNames().isEmpty()) << state;
            } else if (interface.role() != QAccessible::StaticText) {
                EXPECT_NE(name, "") << state << " " << role_name(interface.role());
                EXPECT_TRUE(said.insert(role_name(interface.role()) + " " + name).second)
                    << state << ": twice " << name;
            }
        });
    });
}

TEST_F(AccessibleTreeTest, LabelNamesTheControlNextToIt) {
    std::set<std::string> labels;
    in_every_window([&](const std::string& state, Form& window) {
        for (const ellabel* label : window.findChildren<ellabel*>()) {
            const QString caption = label->Caption();
            QWidget* const control = labelled_by(*label);
            if (label->isVisible() && caption.endsWith(u':') && control != nullptr) {
                labels.insert(text(caption));
                EXPECT_TRUE(tree_of(*control).text(QAccessible::Name).startsWith(caption.chopped(1)))
                    << state << " " << text(caption);
            }
        }
    });
    EXPECT_EQ(labels,
              (std::set<std::string>{"Name:", "Output Folder:", "Render:", "Select Extracting Folder:",
                                     "Size:", "Transparent Color:", "Type:"}));
}

TEST_F(AccessibleTreeTest, MessageBoxIsADialogWithTextAndButtons) {
    std::vector<std::string> seen;
    QTimer::singleShot(0, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        walk(tree_of(*box), [&](QAccessibleInterface& interface, int /*depth*/) {
            seen.push_back(role_name(interface.role()) + " " + name_of(interface));
        });
        box->reject();
    });
    EXPECT_FALSE(QtMessageBoxes().ask("File a.bmp Already Exists. Overwrite?"));
    for (const char* expected :
         {"AlertMessage Varnoth 1.0", "StaticText File a.bmp Already Exists. Overwrite?", "Button Yes",
          "Button No"}) {
        EXPECT_EQ(std::ranges::count(seen, expected), 1)
            << expected << " in " << testing::PrintToString(seen);
    }
}

} // namespace
} // namespace varnoth::test
