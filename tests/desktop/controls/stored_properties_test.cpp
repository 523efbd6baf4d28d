// The common behaviour of the ten controls: properties by name, their types, defaults and order of saving,
// and setters that notify the host.
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <utility>

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
#include "desktop/theme/theme.h"
#include "support/expect_failure.h"

namespace varnoth::test {
namespace {

// A property, its default and another value for it. An invalid default means the host's value.
struct Stored {
    const char* name;
    QVariant fallback;
    QVariant other;
};

QFont other_font() {
    QFont font("Courier", 12);
    font.setUnderline(true);
    return font;
}

constexpr int system_window_text = static_cast<int>(0x80000008U);

Stored colour(const char* name, int fallback) {
    return {name, fallback, 0x123456};
}

Stored flag(const char* name, bool fallback) {
    return {name, fallback, !fallback};
}

Stored text(const char* name, const char* fallback) {
    return {name, QString(fallback), QString("other")};
}

Stored number(const char* name, int fallback, int other) {
    return {name, fallback, other};
}

// Font comes first; its stored parts override it.
const std::vector<Stored> font{
    {"Font", {}, other_font()},     {"FontName", QString("Tahoma"), QString("Times")},
    {"FontSize", 9.75, 8.1234},     {"FontItalic", false, true},
    {"FontUnderline", false, true},
};

std::vector<Stored> joined(std::initializer_list<std::vector<Stored>> lists) {
    std::vector<Stored> all;
    for (const std::vector<Stored>& list : lists) {
        all.insert(all.end(), list.begin(), list.end());
    }
    return all;
}

const std::vector<Stored> edges{colour("Color3DLight", 0x95AAA0), colour("Color3DDark", system_window_text)};
const Stored enabled = flag("Enabled", true);
const Stored shadow = flag("DropShadow", false);

const std::vector<Stored> mark =
    joined({{colour("BackColor", 0x44584C), colour("BackColor2", 0x37463E), colour("CheckedColor", 0x50B5C4),
             colour("UncheckedColor", 0xD3DED8), colour("OverColor", 0xFF0000), enabled,
             text("Caption", "Caption"), flag("Value", false)},
            edges,
            font,
            {shadow}});

struct Kind {
    const char* name;
    std::function<std::unique_ptr<SkinnedControl>(QWidget*)> make;
    std::vector<Stored> stored; ///< in the order of saving
};

const std::vector<Kind>& kinds() {
    static const std::vector<Kind> all{
        {"elboton", make_control<elboton>,
         joined({{colour("ForeColor", 0xFFFFFF), colour("BackColor", 0x44584C), enabled,
                  text("Caption", "Boton")},
                 edges,
                 font,
                 {shadow, flag("CenterCaption", false)}})},
        {"elcheck", make_control<elcheck>, mark},
        {"elradio", make_control<elradio>, mark},
        {"elcombo", make_control<elcombo>,
         joined({{colour("BackColor", 0x37463E), colour("ForeColor", 0xD3DED8), enabled, text("List", "")},
                 edges,
                 {colour("SymbolColor", 0x95AAA0), colour("SymbolOverColor", 0x95AAA0)},
                 font})},
        {"eltexto", make_control<eltexto>,
         joined({{{"MaxChars", QVariant::fromValue(std::int16_t{0}), QVariant::fromValue(std::int16_t{9})},
                  colour("BackColor", 0x37463E),
                  colour("ForeColor", 0xD3DED8),
                  enabled,
                  text("Text", "Text")},
                 edges,
                 font})},
        {"ellabel", make_control<ellabel>,
         joined({{colour("BackColor", 0x37463E), colour("ForeColor", 0xD3DED8), enabled,
                  text("Caption", "Caption")},
                 font,
                 {shadow}})},
        {"elprogress", make_control<elprogress>,
         joined({{colour("ForeColor", 0x50B5C4), colour("BackColor", 0x37463E), enabled, number("Min", 0, 1),
                  number("Max", 10, 20), number("Value", 0, 7)},
                 edges})},
        {"elframe", make_control<elframe>, joined({{colour("BackColor", 0x37463E), enabled}, edges})},
        {"elline3d",
         make_control<elline3d>,
         {colour("Color3DLight", 0x95AAA0), colour("Color3DDark", 0x222E28)}},
        {"elpanel", make_control<elpanel>,
         joined({{colour("BackColor", 0x44584C), colour("BackColor", 0x44584C), colour("ForeColor", 0xFFFFFF),
                  colour("CloseColor", 0x809188), enabled, text("Title", "Title"), flag("Icon", true),
                  flag("Cerrar", true)},
                 edges,
                 font,
                 {shadow}})},
    };
    return all;
}

// GoogleTest would print the bytes of a Kind.
void PrintTo(const Kind& kind, std::ostream* stream) {
    *stream << kind.name;
}

class StoredControl : public testing::TestWithParam<Kind> {
  protected:
    std::unique_ptr<SkinnedControl> control = GetParam().make(nullptr);

    const std::vector<Stored>& stored() const { return GetParam().stored; }

    void set_other_values() {
        for (const Stored& property : stored()) {
            control->setProperty(property.name, property.other);
        }
    }

    void expect_defaults() {
        for (const Stored& property : stored()) {
            if (property.fallback.isValid()) {
                EXPECT_EQ(control->property(property.name), property.fallback) << property.name;
            }
        }
    }
};

TEST_P(StoredControl, PropertiesAreSavedInOrderWithTheirTypes) {
    PropertyBag bag;
    control->WriteProperties(bag);
    ASSERT_EQ(bag.entries().size(), stored().size());
    for (std::size_t i = 0; i < stored().size(); ++i) {
        const auto& [name, value] = bag.entries().at(i);
        EXPECT_EQ(name, stored().at(i).name);
        EXPECT_EQ(value.typeId(), stored().at(i).other.typeId()) << stored().at(i).name;
    }
}

TEST_P(StoredControl, NewControlHasTheDefaults) {
    expect_defaults();
}

TEST_P(StoredControl, EverySetterNotifiesTheHostOnce) {
    ChangedProperties changed(*control);
    for (const Stored& property : stored()) {
        changed.names.clear();
        ASSERT_TRUE(control->setProperty(property.name, property.other)) << property.name;
        EXPECT_EQ(changed.names, QStringList{property.name});
        EXPECT_EQ(control->property(property.name), property.other) << property.name;
        changed.names.clear();
        control->setProperty(property.name, property.other);
        EXPECT_EQ(changed.names, QStringList{property.name}) << "also when nothing changes";
    }
}

TEST_P(StoredControl, LoadingRestoresPropertiesWithoutNotifying) {
    set_other_values();
    PropertyBag bag;
    control->WriteProperties(bag);
    const std::unique_ptr<SkinnedControl> other = GetParam().make(nullptr);
    const ChangedProperties changed(*other);
    other->ReadProperties(bag);
    for (const Stored& property : stored()) {
        EXPECT_EQ(other->property(property.name), control->property(property.name)) << property.name;
    }
    EXPECT_EQ(changed.names, QStringList());
    other->setFixedWidth(150);
    control->setFixedWidth(150);
    EXPECT_EQ(picture_of(*other), picture_of(*control));
}

TEST_P(StoredControl, PropertyMissingFromTheBagGetsItsDefault) {
    set_other_values();
    control->ReadProperties({});
    expect_defaults();
}

// Controls without a text have no font.
TEST_P(StoredControl, FontDefaultsToThatOfTheHostOrOfItsWindow) {
    QWidget window;
    window.setFont(other_font());
    elframe frame("frame", &window);
    for (QWidget* host : {&window, static_cast<QWidget*>(&frame)}) {
        const std::unique_ptr<SkinnedControl> hosted = GetParam().make(host);
        EXPECT_EQ(hosted->objectName(), "control");
        EXPECT_EQ(hosted->parentWidget(), host);
        if (hosted->property("Font").isValid()) {
            EXPECT_EQ(hosted->FontName(), "Courier");
            EXPECT_EQ(hosted->FontSize(), 12);
            EXPECT_TRUE(hosted->FontUnderline());
        }
    }
}

TEST_P(StoredControl, FontDefaultsToTheDesignFontWithoutAHostFont) {
    QWidget window;
    const std::unique_ptr<SkinnedControl> hosted = GetParam().make(&window);
    if (hosted->property("Font").isValid()) {
        EXPECT_EQ(hosted->Font(), theme::design_font());
    }
}

TEST_P(StoredControl, StoredFontPartsOverrideTheStoredFont) {
    if (!control->property("Font").isValid()) {
        return; // controls without text have no font
    }
    PropertyBag bag;
    bag.WriteProperty("Font", other_font());
    bag.WriteProperty("FontSize", 7.5);
    control->ReadProperties(bag);
    EXPECT_EQ(control->FontName(), "Courier");
    EXPECT_EQ(control->FontSize(), 7.5);
    EXPECT_TRUE(control->FontUnderline());
}

// For a 16-bit or 32-bit property, the nearest numbers out of range; empty for other types.
std::vector<qlonglong> beyond(const Stored& property) {
    switch (property.other.typeId()) {
    case QMetaType::Short:
        return {-0x8001, 0x8000, 70000};
    case QMetaType::Int:
        return {-0x80000001LL, 0x80000000LL, 0x100000001LL};
    default:
        return {};
    }
}

TEST_P(StoredControl, SettingANumberOutOfRangeIsAnOverflow) {
    for (const Stored& property : stored()) {
        const QVariant before = control->property(property.name);
        for (const qlonglong number : beyond(property)) {
            EXPECT_FAILURE(control->setProperty(property.name, number), Overflow) << property.name;
            EXPECT_FAILURE(control->setProperty(property.name, QString::number(number)), Overflow);
        }
        EXPECT_EQ(control->property(property.name), before) << property.name;
    }
}

TEST_P(StoredControl, LoadingANumberOutOfRangeIsAnOverflow) {
    for (const Stored& property : stored()) {
        for (const qlonglong number : beyond(property)) {
            PropertyBag bag;
            bag.WriteProperty(property.name, number);
            EXPECT_FAILURE(control->ReadProperties(bag), Overflow) << property.name;
        }
    }
}

TEST_P(StoredControl, HalvesRoundToEven) {
    for (const Stored& property : stored()) {
        if (beyond(property).empty()) {
            continue; // not an integer
        }
        for (const auto& [fraction, whole] : {std::pair{2.5, 2}, std::pair{3.5, 4}, std::pair{4.4, 4}}) {
            const std::unique_ptr<SkinnedControl> set = GetParam().make(nullptr);
            set->setProperty(property.name, fraction);
            EXPECT_EQ(set->property(property.name).toInt(), whole) << property.name;
            PropertyBag bag;
            bag.WriteProperty(property.name, fraction);
            const std::unique_ptr<SkinnedControl> loaded = GetParam().make(nullptr);
            loaded->ReadProperties(bag);
            EXPECT_EQ(loaded->property(property.name).toInt(), whole) << property.name;
        }
    }
}

TEST_P(StoredControl, ValueOfAnUnsuitableTypeIsRejected) {
    for (const Stored& property : stored()) {
        EXPECT_FAILURE(control->setProperty(property.name, QVariant()), InvalidPropertyValue)
            << property.name;
        EXPECT_FAILURE(control->setProperty(property.name, QVariant::fromValue(QSize(1, 1))),
                       InvalidPropertyValue)
            << property.name;
    }
}

// Qt would convert the value itself, and the setter's exception would pass through Qt's stack frames.
TEST_P(StoredControl, QtCannotSetTheProperties) {
    for (const Stored& property : stored()) {
        QObject& object = *control;
        const QVariant before = object.property(property.name);
        EXPECT_FALSE(object.setProperty(property.name, property.other)) << property.name;
        EXPECT_EQ(object.property(property.name), before) << property.name;
    }
}

TEST_P(StoredControl, SettersNotifyTheHostAgainAfterAFailedLoad) {
    const Stored& first = stored().front();
    PropertyBag bag;
    bag.WriteProperty(first.name, 0x100000000LL);
    EXPECT_FAILURE(control->ReadProperties(bag), Overflow);
    ChangedProperties changed(*control);
    control->setProperty(first.name, first.other);
    EXPECT_EQ(changed.names, QStringList{first.name});
}

INSTANTIATE_TEST_SUITE_P(AllTen, StoredControl, testing::ValuesIn(kinds()),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(StoredControls, FontSizeHasFourDecimalPlaces) {
    elboton button("b", nullptr);
    button.SetFontSize(9.123456);
    EXPECT_EQ(button.FontSize(), 9.1235);
}

TEST(StoredControls, FontSizeOutOfRangeIsAnOverflow) {
    elboton button("b", nullptr);
    EXPECT_FAILURE(button.setProperty("FontSize", 1e15), Overflow);
    EXPECT_FAILURE(button.setProperty("FontSize", std::numeric_limits<double>::quiet_NaN()), Overflow);
    EXPECT_EQ(button.FontSize(), 9.75);
}

TEST(StoredControls, FailedLoadKeepsThePropertiesLoadedBefore) {
    elboton button("b", nullptr);
    button.SetBackColor(0x111111);
    button.SetDropShadow(true);
    PropertyBag bag;
    bag.WriteProperty("BackColor", 0x222222);
    bag.WriteProperty("FontSize", 0);
    EXPECT_FAILURE(button.ReadProperties(bag), InvalidPropertyValue);
    EXPECT_EQ(button.BackColor(), 0x222222);
    EXPECT_EQ(button.FontSize(), 9.75);
    EXPECT_TRUE(button.DropShadow()); // it is loaded later
    EXPECT_EQ(colour_at(button, 20, 2), 0x222222);
}

// A failing property reveals its place in the order of loading.
TEST(StoredControls, ButtonLoadsCenterCaptionFirst) {
    elboton button("b", nullptr);
    PropertyBag bag;
    bag.WriteProperty("ForeColor", 0x80000000LL);
    bag.WriteProperty("CenterCaption", true);
    EXPECT_FAILURE(button.ReadProperties(bag), Overflow);
    EXPECT_TRUE(button.CenterCaption());
}

TEST(StoredControls, ButtonLoadsDropShadowLast) {
    elboton button("b", nullptr);
    PropertyBag bag;
    bag.WriteProperty("DropShadow", QVariant());
    for (const auto& [name, value] : {std::pair<const char*, QVariant>{"ForeColor", 0x111111},
                                      {"CenterCaption", true},
                                      {"FontUnderline", true}}) {
        bag.WriteProperty(name, value);
    }
    EXPECT_FAILURE(button.ReadProperties(bag), InvalidPropertyValue);
    EXPECT_EQ(button.ForeColor(), 0x111111);
    EXPECT_TRUE(button.CenterCaption());
    EXPECT_TRUE(button.FontUnderline());
}

TEST(StoredControls, UnstoredPropertiesCanBeSetByName) {
    elcombo combo("c", nullptr);
    const ChangedProperties changed(combo);
    EXPECT_TRUE(combo.setProperty("ListBackColor", 1));
    EXPECT_EQ(changed.names, QStringList{"ListBackColor"});
    EXPECT_FAILURE(combo.setProperty("ListForeColor", 0x80000000LL), Overflow);
}

TEST(StoredControls, UnknownPropertyNameIsPassedToQt) {
    elframe frame("f", nullptr);
    EXPECT_TRUE(frame.setProperty("objectName", "other"));
    EXPECT_EQ(frame.objectName(), "other");
}

TEST(StoredControls, UnknownPartNameFails) {
    elboton button("b", nullptr);
    EXPECT_FAILURE(button.part<TextPart>("nothing"), SubscriptOutOfRange);
}

} // namespace
} // namespace varnoth::test
