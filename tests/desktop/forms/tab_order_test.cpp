// The tab order of every window.
#include <map>

#include <QApplication>
#include <QTest>
#include <QWindow>

#include "desktop/forms/EveryWindow.h"

namespace varnoth::test {
namespace {

/// The accessible name of the focused control.
std::string focused() {
    const QWidget* widget = QApplication::focusWidget();
    return widget == nullptr ? "nothing" : widget->accessibleName().toStdString();
}

void press(Form& window, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(window.windowHandle(), key, modifiers);
}

/// The focusable controls of every window in reading order. Windows without any are not listed.
const std::map<std::string, std::vector<std::string>>& orders() {
    static const std::vector<std::string> browser{"Drives", "Folders", "File type", "Files"};
    static const std::map<std::string, std::vector<std::string>> orders{
        {"main window at the start", {"Sprite file"}},
        {"main window with a sprite", {"Sprite file", "Frames"}},
        {"new sprite", {"Name", "Size, width", "Size, height", "Type", "Render"}},
        {"extract, BMP", {"Output Folder"}},
        {"extract, TGA", {"Output Folder"}},
        {"extract, TGA compressed", {"Output Folder"}},
        {"folder", {"Select Extracting Folder"}},
        {"add frames", browser},
        {"add frames, sizes differ", browser},
        {"add frames, picking", browser},
    };
    return orders;
}

std::vector<std::string> order_of(const std::string& state) {
    const auto found = orders().find(state);
    return found == orders().end() ? std::vector<std::string>() : found->second;
}

class TabOrderTest : public EveryWindowTest {
  protected:
    /// The focused controls after each of `count` presses.
    static std::vector<std::string> presses(Form& window, std::size_t count, Qt::Key key,
                                            Qt::KeyboardModifiers modifiers = {}) {
        std::vector<std::string> places;
        for (std::size_t i = 0; i < count; ++i) {
            press(window, key, modifiers);
            places.push_back(focused());
        }
        return places;
    }
};

TEST_F(TabOrderTest, FollowsTheReadingOrderAndWrapsAround) {
    std::size_t windows = 0;
    in_every_window([&](const std::string& state, Form& window) {
        const std::vector<std::string> order = order_of(state);
        if (order.empty()) {
            return;
        }
        ++windows;
        window.activateWindow();
        ui_driver::settle();
        // Tab on the last control moves to the first.
        for (std::size_t i = 0; i < order.size() && focused() != order.back(); ++i) {
            press(window, Qt::Key_Tab);
        }
        EXPECT_EQ(focused(), order.back()) << state;
        EXPECT_EQ(presses(window, order.size(), Qt::Key_Tab), order) << state;
        EXPECT_EQ(presses(window, order.size(), Qt::Key_Tab), order) << state << ", again";
        press(window, Qt::Key_Tab);
        EXPECT_EQ(presses(window, order.size(), Qt::Key_Backtab, Qt::ShiftModifier),
                  std::vector<std::string>(order.rbegin(), order.rend()))
            << state << ", back";
    });
    EXPECT_EQ(windows, orders().size());
}

TEST_F(TabOrderTest, FocusesNothingInAWindowWithoutFocusableControls) {
    std::vector<std::string> windows;
    in_every_window([&](const std::string& state, Form& window) {
        if (!order_of(state).empty()) {
            return;
        }
        windows.push_back(state);
        for (const QWidget* widget : window.findChildren<QWidget*>()) {
            EXPECT_FALSE(widget->isVisible() && (widget->focusPolicy() & Qt::TabFocus) != 0)
                << state << " " << text(widget->objectName());
        }
        press(window, Qt::Key_Tab);
        const QWidget* widget = QApplication::focusWidget();
        EXPECT_TRUE(widget == nullptr || widget == &window) << state;
    });
    EXPECT_EQ(windows, (std::vector<std::string>{"preview, stopped", "preview, playing", "progress",
                                                 "progress, aborting", "exit picture"}));
}

} // namespace
} // namespace varnoth::test
