// Notifications to assistive technology when a control changes.
#include <vector>

#include <QAccessible>

#include "desktop/controls/elcheck.h"
#include "desktop/controls/elprogress.h"
#include "desktop/controls/elradio.h"
#include "desktop/controls/shown.h"
#include "desktop/forms/accessibility_on.h"

namespace varnoth {
namespace {

using test::Shown;

/// Records, during its lifetime, the objects whose checked state is reported as changed.
class Told {
  public:
    Told() {
        test::switch_accessibility_on();
        objects_.clear();
        handler_ = QAccessible::installUpdateHandler([](QAccessibleEvent* event) {
            const auto* change = event->type() == QAccessible::StateChanged
                                     ? static_cast<QAccessibleStateChangeEvent*>(event)
                                     : nullptr;
            if (change != nullptr && change->changedStates().checked) {
                objects_.push_back(event->object());
            }
        });
    }

    ~Told() { QAccessible::installUpdateHandler(handler_); }

    Told(const Told&) = delete;
    Told& operator=(const Told&) = delete;

    const std::vector<QObject*>& checked() const { return objects_; }

  private:
    static inline std::vector<QObject*> objects_;
    static inline QAccessible::UpdateHandler handler_ = nullptr;
};

TEST(Told, ClickOnACheckBoxIsAnnounced) {
    Shown<elcheck> shown(80);
    const Told told;
    QTest::mouseClick(&shown.control, Qt::LeftButton, {}, {6, 8});
    ASSERT_TRUE(shown->Value());
    EXPECT_EQ(told.checked(), std::vector<QObject*>{&shown.control});
}

TEST(Told, SettingValueIsAnnounced) {
    Shown<elcheck> check(80);
    Shown<elradio> radio(80);
    const Told told;
    check->SetValue(true);
    radio->SetValue(true);
    EXPECT_EQ(told.checked(), (std::vector<QObject*>{&check.control, &radio.control}));
}

TEST(Told, ProgressBarHasAStepSizeOf1) {
    elprogress progress("progress", nullptr);
    QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(&progress);
    ASSERT_NE(accessible, nullptr);
    ASSERT_NE(accessible->valueInterface(), nullptr);
    EXPECT_EQ(accessible->valueInterface()->minimumStepSize(), 1);
}

} // namespace
} // namespace varnoth
