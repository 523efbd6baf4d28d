#include "desktop/controls/elcombo.h"

#include <QStringList>

#include "core/base/numbers.h"
#include "core/image/PictureSurface.h"
#include "desktop/theme/theme.h"

namespace varnoth {

namespace {

constexpr double height_in_twips = 300;
constexpr double least_width_in_twips = 1425;
constexpr double arrow_from_right_in_twips = 280;
constexpr int clip_height = 18;

// Its line of text and its own edge. With the list at top -3, the text is centred in the clip.
constexpr int list_height = 24;

const std::vector<ControlProperty>& persisted() {
    static const std::vector<ControlProperty> properties{
        {"BackColor", sets<&SkinnedControl::SetBackColor>, theme::field_background},
        {"ForeColor", sets<&SkinnedControl::SetForeColor>, theme::light_text},
        {"Enabled", sets<&SkinnedControl::SetEnabled>, true},
        {"List", sets<static_cast<void (elcombo::*)(const QString&)>(&elcombo::SetList)>, QString()},
        {"Color3DLight", sets<&SkinnedControl::SetColor3DLight>, theme::edge_light},
        {"Color3DDark", sets<&SkinnedControl::SetColor3DDark>, theme::window_text},
        {"SymbolColor", sets<&elcombo::SetSymbolColor>, theme::edge_light},
        {"SymbolOverColor", sets<&elcombo::SetSymbolOverColor>, theme::edge_light},
        {"Font", sets<&SkinnedControl::SetFont>},
        {"FontName", sets<&SkinnedControl::SetFontName>},
        {"FontSize", sets<&SkinnedControl::SetFontSize>},
        {"FontItalic", sets<&SkinnedControl::SetFontItalic>},
        {"FontUnderline", sets<&SkinnedControl::SetFontUnderline>},
        {.name = "DropShadow", .set = sets<&elcombo::SetDropShadow>, .stored = false},
        {.name = "ListBackColor", .set = sets<&elcombo::SetListBackColor>, .stored = false},
        {.name = "ListForeColor", .set = sets<&elcombo::SetListForeColor>, .stored = false},
    };
    return properties;
}

} // namespace

elcombo::elcombo(const QString& name, QWidget* parent)
    : SkinnedControl(name, parent, persisted()),
      picture2_("Picture2", this),
      combo1_("Combo1", &picture2_),
      picture1_("Picture1", &picture2_) {
    picture2_.setGeometry(1, 1, width() - 2, clip_height);
    combo1_.setGeometry(-1, -1, width(), list_height);
    picture1_.resize(20, clip_height);
    // Presses on the arrow go to the list.
    picture1_.setAttribute(Qt::WA_TransparentForMouseEvents);
    picture1_.contents = {&label2_};
    label2_.Width = 20;
    label2_.Height = clip_height;
    label2_.Enabled = false;
    label2_.set_symbol();
    label2_.SetCaption("6");
    name_part("Label2", label2_);
    add_part("lineA(0)", edges_.top);
    add_part("lineA(1)", edges_.left);
    add_part("lineB(0)", edges_.right);
    add_part("lineB(1)", edges_.bottom);
    setFocusProxy(&combo1_);
    on_event(&combo1_, &DropDownList::Click, this, [this] { emit Click(); });
    fix_height(height_in_twips);
    set_minimum_width(least_width_in_twips);
    ReadProperties({});
}

// Properties.

QString elcombo::List() const {
    QStringList lines;
    for (std::int32_t line = 0; line < combo1_.ListCount(); ++line) {
        lines.append(combo1_.List(line));
    }
    return lines.join('\n');
}

void elcombo::SetList(const QString& lines) {
    combo1_.clear();
    if (!lines.isEmpty()) {
        for (const QString& line : lines.split('\n')) {
            combo1_.AddItem(line);
        }
    }
    changed("List");
}

void elcombo::SetSymbolColor(Colour colour) {
    symbol_colour_ = colour;
    set_normal_state();
    changed("SymbolColor");
}

void elcombo::SetSymbolOverColor(Colour colour) {
    symbol_over_colour_ = colour;
    changed("SymbolOverColor");
}

void elcombo::SetDropShadow(bool /*shadow*/) {
    changed("DropShadow");
}

void elcombo::SetListBackColor(Colour /*colour*/) {
    changed("ListBackColor");
}

void elcombo::SetListForeColor(Colour /*colour*/) {
    changed("ListForeColor");
}

// Items.

void elcombo::Clear() {
    combo1_.clear();
}

void elcombo::AddItem(const QString& item) {
    combo1_.AddItem(item);
}

void elcombo::RemoveItem(std::int16_t donde) {
    if (!has_item(donde)) {
        return;
    }
    const bool selected = combo1_.currentIndex() == donde;
    combo1_.removeItem(donde);
    if (selected) {
        combo1_.setCurrentIndex(-1); // otherwise Qt selects a neighbour
    }
}

void elcombo::SetListIndex(std::int16_t donde) {
    if (has_item(donde)) {
        combo1_.SetListIndex(donde);
    }
}

std::int16_t elcombo::GetListIndex() const {
    return narrow<std::int16_t>(combo1_.ListIndex());
}

std::int16_t elcombo::ListCount() const {
    return narrow<std::int16_t>(combo1_.ListCount());
}

void elcombo::SetList(std::int16_t donde, const QString& item) {
    combo1_.SetList(donde, item);
}

QString elcombo::GetList(std::int16_t donde) const {
    return combo1_.List(donde);
}

// Appearance.

void elcombo::set_over_state() {
    if (label2_.ForeColor != symbol_over_colour_) {
        label2_.ForeColor = symbol_over_colour_;
        picture1_.update();
    }
}

void elcombo::set_normal_state() {
    label2_.ForeColor = symbol_colour_;
    picture1_.update();
}

void elcombo::setAccessibleName(const QString& name) {
    combo1_.setAccessibleName(name);
}

void elcombo::resized() {
    const auto inner_width = round_to_even<int>(ScaleWidth());
    combo1_.move(-1, -3);
    picture2_.resize(inner_width - 2, clip_height);
    const double arrow_left = (Width() - arrow_from_right_in_twips) / varnoth::screen().TwipsPerPixelX - 2;
    picture1_.move(round_to_even<int>(arrow_left), 0);
    edges_.set_width(width_in_pixels());
    combo1_.resize(inner_width, list_height);
}

void elcombo::show_back_colour() {
    picture2_.BackColor = BackColor();
    picture1_.BackColor = BackColor();
    picture2_.update();
    picture1_.update();
    combo1_.SetColours(BackColor(), ForeColor());
}

void elcombo::show_fore_colour() {
    combo1_.SetColours(BackColor(), ForeColor());
}

void elcombo::show_light() {
    edges_.colour_bottom_right(Color3DLight());
}

void elcombo::show_dark() {
    edges_.colour_top_left(Color3DDark());
}

void elcombo::show_font() {
    combo1_.setFont(theme::display_font(Font()));
}

} // namespace varnoth
