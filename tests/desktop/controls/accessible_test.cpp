#include "desktop/controls/parts/accessible.h"

#include <memory>

#include <QAccessible>

#include "core/base/RunTimeFailure.h"
#include "desktop/AccessibleEvents.h"
#include "desktop/controls/elboton.h"
#include "desktop/controls/elcheck.h"
#include "desktop/controls/elcombo.h"
#include "desktop/controls/elframe.h"
#include "desktop/controls/ellabel.h"
#include "desktop/controls/elline3d.h"
#include "desktop/controls/elpanel.h"
#include "desktop/controls/elprogress.h"
#include "desktop/controls/elradio.h"
#include "desktop/controls/eltexto.h"
#include "desktop/controls/shown.h"

namespace varnoth::test {
namespace {

QAccessibleInterface& interface_of(QWidget& control) {
    install_accessible_controls();
    install_accessible_controls();
    return *QAccessible::queryAccessibleInterface(&control);
}

void act(QWidget& control, const QString& action) {
    interface_of(control).actionInterface()->doAction(action);
}

QStringList actions_of(QWidget& control) {
    return interface_of(control).actionInterface()->actionNames();
}

template <typename Control>
QAccessible::Role role_of() {
    Control control("c", nullptr);
    return interface_of(control).role();
}

TEST(Accessible, EachControlHasItsRole) {
    EXPECT_EQ(role_of<elboton>(), QAccessible::Button);
    EXPECT_EQ(role_of<elcheck>(), QAccessible::CheckBox);
    EXPECT_EQ(role_of<elradio>(), QAccessible::RadioButton);
    EXPECT_EQ(role_of<ellabel>(), QAccessible::StaticText);
    EXPECT_EQ(role_of<elprogress>(), QAccessible::ProgressBar);
    EXPECT_EQ(role_of<elframe>(), QAccessible::Grouping);
    EXPECT_EQ(role_of<elline3d>(), QAccessible::Separator);
    EXPECT_EQ(role_of<elpanel>(), QAccessible::Pane);
}

TEST(Accessible, NameDefaultsToTheCaption) {
    elboton button("b", nullptr);
    button.SetCaption("...");
    EXPECT_EQ(interface_of(button).text(QAccessible::Name), "...");
    button.setAccessibleName("Browse");
    button.SetCaption("....");
    EXPECT_EQ(interface_of(button).text(QAccessible::Name), "Browse");
    elpanel panel("p", nullptr);
    panel.SetTitle("New Sprite");
    EXPECT_EQ(interface_of(panel).text(QAccessible::Name), "New Sprite");
}

TEST(Accessible, PressActionClicksAButton) {
    elboton button("b", nullptr);
    int clicks = 0;
    on_event(&button, &elboton::Click, &button, [&] { ++clicks; });
    ASSERT_EQ(actions_of(button), QStringList{QAccessibleActionInterface::pressAction()});
    act(button, QAccessibleActionInterface::pressAction());
    EXPECT_EQ(clicks, 1);
    act(button, QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(clicks, 1);
    button.SetEnabled(false);
    EXPECT_TRUE(actions_of(button).isEmpty());
    act(button, QAccessibleActionInterface::pressAction());
    EXPECT_EQ(clicks, 1);
    EXPECT_TRUE(interface_of(button).state().disabled);
}

template <typename Control>
void expect_checked_by(const QString& action) {
    Control control("c", nullptr);
    int clicks = 0;
    on_event(&control, &Control::Click, &control, [&] { ++clicks; });
    EXPECT_TRUE(interface_of(control).state().checkable);
    EXPECT_FALSE(interface_of(control).state().checked);
    act(control, action);
    EXPECT_TRUE(control.Value());
    EXPECT_TRUE(interface_of(control).state().checked);
    EXPECT_EQ(clicks, 1);
}

TEST(Accessible, ToggleActionChecksACheckBox) {
    expect_checked_by<elcheck>(QAccessibleActionInterface::toggleAction());
}

TEST(Accessible, PressActionChecksARadioButton) {
    expect_checked_by<elradio>(QAccessibleActionInterface::pressAction());
}

TEST(Accessible, ClickOnACheckBoxIsAnnounced) {
    Shown<elcheck> check(80);
    const AccessibleEvents events;
    check.click({6, 8});
    ASSERT_TRUE(check->Value());
    EXPECT_EQ(events.count(QAccessible::StateChanged, check.control), 1);
    EXPECT_TRUE(events.checked_changed(check.control));
}

TEST(Accessible, SettingValueIsAnnounced) {
    Shown<elcheck> check(80);
    Shown<elradio> radio(80);
    const AccessibleEvents events;
    check->SetValue(true);
    radio->SetValue(true);
    EXPECT_EQ(events.count(QAccessible::StateChanged, check.control), 1);
    EXPECT_EQ(events.count(QAccessible::StateChanged, radio.control), 1);
    EXPECT_TRUE(events.checked_changed(check.control) && events.checked_changed(radio.control));
}

TEST(Accessible, FailureInAHandlerStopsAtTheExceptionBarrier) {
    elboton button("b", nullptr);
    QObject::connect(&button, &elboton::Click, &button, [] { fail(Failure::DeviceIo); });
    std::vector<std::string> ends;
    const FatalErrorHandlerInstallation recording(
        [&](std::string_view name, std::string_view) { ends.emplace_back(name); });
    act(button, QAccessibleActionInterface::pressAction());
    EXPECT_EQ(ends, std::vector<std::string>{"DeviceIo"});
}

TEST(Accessible, PressActionOfTheCloseButtonClosesAPanel) {
    elpanel panel("p", nullptr);
    int closes = 0;
    on_event(&panel, &elpanel::CloseClick, &panel, [&] { ++closes; });
    EXPECT_TRUE(actions_of(panel).isEmpty());
    QAccessibleInterface& shown = interface_of(panel);
    ASSERT_EQ(shown.childCount(), 1);
    QAccessibleInterface* button = shown.child(0);
    EXPECT_EQ(button->role(), QAccessible::Button);
    EXPECT_EQ(button->text(QAccessible::Name), "Close");
    EXPECT_EQ(shown.indexOfChild(button), 0);
    EXPECT_EQ(button->parent(), &shown);
    EXPECT_EQ(button->indexOfChild(&shown), -1);
    EXPECT_EQ(shown.indexOfChild(&shown), -1);
    EXPECT_EQ(button->actionInterface()->actionNames(),
              QStringList{QAccessibleActionInterface::pressAction()});
    button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(closes, 1);
    panel.SetEnabled(false);
    EXPECT_TRUE(button->state().disabled);
    button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(closes, 1);
    panel.SetCerrar(false);
    EXPECT_EQ(shown.childCount(), 0);
    EXPECT_EQ(shown.child(0), nullptr);
}

TEST(Accessible, CloseButtonIsUnregisteredWithItsPanel) {
    auto panel = std::make_unique<elpanel>("p", nullptr);
    const QAccessible::Id button = QAccessible::uniqueId(interface_of(*panel).child(0));
    EXPECT_NE(QAccessible::accessibleInterface(button), nullptr);
    panel.reset();
    EXPECT_EQ(QAccessible::accessibleInterface(button), nullptr);
}

TEST(Accessible, ProgressBarReportsItsValueAsReadOnly) {
    elprogress progress("p", nullptr);
    EXPECT_NE(interface_of(progress).actionInterface(), nullptr);
    progress.SetMax(40);
    progress.SetMin(2);
    progress.SetValue(7);
    QAccessibleValueInterface* value = interface_of(progress).valueInterface();
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->currentValue().toInt(), 7);
    EXPECT_EQ(value->minimumValue().toInt(), 2);
    EXPECT_EQ(value->maximumValue().toInt(), 40);
    EXPECT_EQ(value->minimumStepSize(), 1);
    value->setCurrentValue(9);
    EXPECT_EQ(progress.Value(), 7);
    EXPECT_TRUE(interface_of(progress).state().readOnly);
}

template <typename Control>
void expect_inner_widget_named(QWidget& (*inner_of)(Control&), QAccessible::Role role) {
    Control control("c", nullptr);
    control.setAccessibleName("Width");
    EXPECT_EQ(inner_of(control).accessibleName(), "Width");
    EXPECT_EQ(interface_of(control).text(QAccessible::Name), "");
    EXPECT_EQ(interface_of(control).role(), QAccessible::Client);
    EXPECT_EQ(interface_of(inner_of(control)).role(), role);
}

TEST(Accessible, NameOfAFieldIsSetOnItsInnerWidget) {
    expect_inner_widget_named<eltexto>([](eltexto& text) -> QWidget& { return text.Text1(); },
                                       QAccessible::EditableText);
    expect_inner_widget_named<elcombo>([](elcombo& combo) -> QWidget& { return combo.Combo1(); },
                                       QAccessible::ComboBox);
}

} // namespace
} // namespace varnoth::test
