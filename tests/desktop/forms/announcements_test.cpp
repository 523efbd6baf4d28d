// Notifications to assistive technology when a control changes, and the actions that it can perform.

#include <QAbstractItemView>
#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QApplication>
#include <QTest>
#include <QWindow>

#include "desktop/AccessibleEvents.h"
#include "desktop/forms/EveryWindow.h"

namespace varnoth::test {
namespace {

using ui_driver::click;

QAccessibleInterface& tree_of(QWidget& widget) {
    return *QAccessible::queryAccessibleInterface(&widget);
}

QAccessible::State state_of(QWidget& widget) {
    return tree_of(widget).state();
}

QString name_of(QWidget& widget) {
    return tree_of(widget).text(QAccessible::Name);
}

/// The first descendant with this role and name, or null.
QAccessibleInterface* find(QAccessibleInterface& interface, QAccessible::Role role, const QString& name) {
    if (interface.role() == role && interface.text(QAccessible::Name) == name) {
        return &interface;
    }
    for (int i = 0; i < interface.childCount(); ++i) {
        if (QAccessibleInterface* found = find(*interface.child(i), role, name)) {
            return found;
        }
    }
    return nullptr;
}

QStringList actions_of(QAccessibleInterface& interface) {
    QAccessibleActionInterface* actions = interface.actionInterface();
    return actions == nullptr ? QStringList() : actions->actionNames();
}

/// Performs an action on a control found by role and name, as a screen reader's user does.
void act(QWidget& window, QAccessible::Role role, const QString& name, const QString& action) {
    QAccessibleInterface* control = find(tree_of(window), role, name);
    ASSERT_NE(control, nullptr) << name.toStdString();
    ASSERT_TRUE(actions_of(*control).contains(action)) << name.toStdString();
    control->actionInterface()->doAction(action);
    ui_driver::settle();
}

void press(QWidget& window, const QString& button) {
    act(window, QAccessible::Button, button, QAccessibleActionInterface::pressAction());
}

class AnnouncementTest : public EveryWindowTest {};

TEST_F(AnnouncementTest, EnablingButtonsAndTheListIsAnnounced) {
    EXPECT_TRUE(state_of(main().elboton6).disabled);
    EXPECT_TRUE(state_of(main().List1).disabled);
    const AccessibleEvents events;
    open_sprite(3);
    EXPECT_FALSE(state_of(main().elboton6).disabled);
    EXPECT_FALSE(state_of(main().List1).disabled);
    EXPECT_TRUE(events.disabled_changed(main().elboton6));
    EXPECT_TRUE(events.disabled_changed(main().List1));
    EXPECT_FALSE(events.disabled_changed(main().elboton1));
    click(main().elboton2);
    EXPECT_TRUE(state_of(main().elboton6).disabled); // together with its window
    EXPECT_TRUE(state_of(main()).disabled);
    EXPECT_TRUE(events.disabled_changed(main()));
}

TEST_F(AnnouncementTest, SelectionInTheFrameListIsAnnounced) {
    open_sprite(3);
    QAccessibleInterface& list = tree_of(main().List1);
    ASSERT_EQ(list.childCount(), 3);
    EXPECT_TRUE(list.child(0)->state().selected);
    EXPECT_FALSE(list.child(2)->state().selected);
    EXPECT_EQ(list.child(2)->text(QAccessible::Name), "Frame 2");
    EXPECT_EQ(list.child(2)->role(), QAccessible::ListItem);
    const AccessibleEvents events;
    ui_driver::click_line(main().List1, 2);
    EXPECT_FALSE(list.child(0)->state().selected);
    EXPECT_TRUE(list.child(2)->state().selected);
    EXPECT_TRUE(list.child(2)->state().focused);
    EXPECT_GE(events.count(QAccessible::Selection, main().List1) +
                  events.count(QAccessible::SelectionAdd, main().List1),
              1);
}

TEST_F(AnnouncementTest, RadioButtonsAndCheckBoxAreAnnounced) {
    open_sprite(1);
    click(main().elboton6);
    Form3& dialog = *coordinator_->form3();
    const AccessibleEvents events;
    click(dialog.elradio1[1]);
    EXPECT_FALSE(state_of(dialog.elradio1[0]).checked);
    EXPECT_TRUE(state_of(dialog.elradio1[1]).checked);
    EXPECT_TRUE(events.checked_changed(dialog.elradio1[0]));
    EXPECT_TRUE(events.checked_changed(dialog.elradio1[1]));
    EXPECT_EQ(events.count(QAccessible::ObjectShow, dialog.elframe2), 1);
    EXPECT_EQ(events.count(QAccessible::ObjectHide, dialog.elframe1), 1);
    EXPECT_FALSE(state_of(dialog.elcheck1).checked);
    click(dialog.elcheck1);
    EXPECT_TRUE(state_of(dialog.elcheck1).checked);
    EXPECT_GE(events.count(QAccessible::StateChanged, dialog.elcheck1), 1);
}

TEST_F(AnnouncementTest, StopPlayAndSpeedAreAnnounced) {
    open_sprite(2);
    ui_driver::double_click(main().Picture1);
    Form7& dialog = *coordinator_->form7();
    EXPECT_TRUE(state_of(dialog.Label1).checked);
    EXPECT_TRUE(state_of(dialog.Label2).checkable);
    EXPECT_FALSE(state_of(dialog.Label2).checked);
    EXPECT_FALSE(state_of(dialog.Label3).checkable);
    const AccessibleEvents events;
    click(dialog.Label2);
    EXPECT_FALSE(state_of(dialog.Label1).checked);
    EXPECT_TRUE(state_of(dialog.Label2).checked);
    EXPECT_TRUE(events.checked_changed(dialog.Label1));
    EXPECT_TRUE(events.checked_changed(dialog.Label2));
    click(dialog.Label3);
    EXPECT_EQ(name_of(dialog.Label5), "16 fps");
    EXPECT_EQ(events.count(QAccessible::NameChanged, dialog.Label5), 1);
}

TEST_F(AnnouncementTest, ArmedPickerAndPickedColourAreAnnounced) {
    open_import(3);
    Form4& dialog = *coordinator_->form4();
    EXPECT_TRUE(state_of(dialog.elboton1).checkable);
    EXPECT_FALSE(state_of(dialog.elboton1).checked);
    EXPECT_EQ(tree_of(dialog.elboton1).text(QAccessible::Description), "Pick Transparent Color From Picture");
    pictures_.add_plain_bmp("a.bmp", 8, 6, make_colour(10, 20, 30));
    ASSERT_TRUE(ui_driver::walk_to(dialog.Dir1, QString::fromStdString(pictures_.path())));
    const AccessibleEvents events;
    ui_driver::click_line(dialog.File1, 0);
    EXPECT_EQ(tree_of(dialog.Picture2).text(QAccessible::Description), "Red 10, green 20, blue 30");
    EXPECT_EQ(events.count(QAccessible::DescriptionChanged, dialog.Picture2), 1);
    EXPECT_EQ(tree_of(dialog.Picture1).text(QAccessible::Description), "8 x 6 pixels");
    EXPECT_EQ(events.count(QAccessible::DescriptionChanged, dialog.Picture1), 1);
    EXPECT_EQ(tree_of(dialog.Picture1).imageInterface()->imageSize(), QSize(8, 6));
    click(dialog.elboton1);
    EXPECT_TRUE(state_of(dialog.elboton1).checked);
    EXPECT_TRUE(events.checked_changed(dialog.elboton1));
    ui_driver::click_at(dialog.Picture1, {1, 1});
    EXPECT_FALSE(state_of(dialog.elboton1).checked);
}

TEST_F(AnnouncementTest, TextOfFieldsAndChoiceOfListsAreReported) {
    click(main().elboton2);
    Form2& dialog = *coordinator_->form2();
    QAccessibleInterface& name = tree_of(dialog.eltexto1.Text1());
    EXPECT_EQ(name.text(QAccessible::Value), "Untitled");
    const AccessibleEvents events;
    ui_driver::type_into(dialog.eltexto1, "spark");
    EXPECT_EQ(name.text(QAccessible::Value), "spark");
    EXPECT_GE(events.count(QAccessible::TextInserted, dialog.eltexto1.Text1()) +
                  events.count(QAccessible::TextUpdated, dialog.eltexto1.Text1()),
              5);
    QAccessibleInterface& type = tree_of(dialog.elcombo1.Combo1());
    EXPECT_EQ(type.text(QAccessible::Value), "VP_PARALLEL");
    ui_driver::choose(dialog.elcombo1.Combo1(), 3);
    EXPECT_EQ(type.text(QAccessible::Value), "ORIENTED");
    EXPECT_EQ(type.text(QAccessible::Name), "Type: ORIENTED");
    EXPECT_GE(events.count(QAccessible::NameChanged, dialog.elcombo1.Combo1()), 1);
}

TEST_F(AnnouncementTest, DropDownListOpensAndClosesByItsAction) {
    click(main().elboton2);
    DropDownList& list = coordinator_->form2()->elcombo1.Combo1();
    QAccessibleInterface& type = tree_of(list);
    ASSERT_EQ(type.childCount(), 1);
    EXPECT_EQ(type.child(0)->role(), QAccessible::List);
    EXPECT_EQ(type.indexOfChild(type.child(0)), 0);
    EXPECT_EQ(type.child(0)->parent(), &type);
    EXPECT_FALSE(type.state().expanded);
    type.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(type.state().expanded);
    EXPECT_TRUE(list.view()->isVisible());
    EXPECT_EQ(type.child(0)->text(QAccessible::Name), "Type");
    type.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_FALSE(type.state().expanded);
}

TEST_F(AnnouncementTest, WholeEditorCanBeOperatedThroughTheTree) {
    press(main(), "New");
    ASSERT_NE(coordinator_->form2(), nullptr);
    EXPECT_EQ(actions_of(*find(tree_of(main()), QAccessible::Button, "New")), QStringList()); // disabled
    press(*coordinator_->form2(), "Cancel");
    EXPECT_EQ(coordinator_->form2(), nullptr);
    services_.next_open = write_sprite("sprite.spr", 3);
    press(main(), "Open");
    EXPECT_EQ(lines().size(), 3U);
    press(main(), "Move frame down");
    EXPECT_EQ(hlspr::document().FrameOrder, (std::vector<std::int16_t>{1, 0, 2}));
    press(main(), "Export");
    act(*coordinator_->form3(), QAccessible::RadioButton, "Tga", QAccessibleActionInterface::pressAction());
    act(*coordinator_->form3(), QAccessible::CheckBox, "Compressed",
        QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(coordinator_->form3()->elcheck1.Value());
    press(*coordinator_->form3(), "Choose the output folder");
    press(*coordinator_->form5(), "Cancel");
    press(*coordinator_->form3(), "Cancel");
    act(main(), QAccessible::Graphic, "Selected frame", QAccessibleActionInterface::pressAction());
    ASSERT_NE(coordinator_->form7(), nullptr);
    press(*coordinator_->form7(), "Play");
    EXPECT_TRUE(coordinator_->form7()->Timer1.isActive());
    press(*coordinator_->form7(), "Close");
    EXPECT_EQ(coordinator_->form7(), nullptr);
    EXPECT_FALSE(ended_);
    press(main(), "Close");
    EXPECT_TRUE(ended_);
}

TEST_F(AnnouncementTest, PressActionOfTheExitPictureEndsTheProgram) {
    Form9 form;
    const auto press_picture = [&] {
        tree_of(form.Picture1).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    };
    EXPECT_EQ(status_after(press_picture), 0);
}

} // namespace
} // namespace varnoth::test
