#include "desktop/controls/elpanel.h"

#include <algorithm>

#include "core/base/numbers.h"
#include "core/image/PictureSurface.h"
#include "core/image/alpha_blend.h"
#include "desktop/controls/parts/panel_icon.h"
#include "desktop/theme/theme.h"

namespace varnoth {

namespace {

constexpr double close_button_from_right = 26;
constexpr double close_button_size = 18;
constexpr double title_margins = 55;
constexpr double title_height = 18;
constexpr std::int32_t icon_bits_per_pixel = 24;

const std::vector<ControlProperty>& persisted() {
    static const std::vector<ControlProperty> properties{
        {"BackColor", sets<&SkinnedControl::SetBackColor>, theme::window_background},
        {"BackColor", sets<&SkinnedControl::SetBackColor>,
         theme::window_background}, // stored twice: the stored format requires it
        {"ForeColor", sets<&SkinnedControl::SetForeColor>, theme::white},
        {"CloseColor", sets<&elpanel::SetCloseColor>, theme::close_glyph},
        {"Enabled", sets<&SkinnedControl::SetEnabled>, true},
        {"Title", sets<&elpanel::SetTitle>, QStringLiteral("Title")},
        {"Icon", sets<&elpanel::SetIcon>, true},
        {"Cerrar", sets<&elpanel::SetCerrar>, true},
        {"Color3DLight", sets<&SkinnedControl::SetColor3DLight>, theme::edge_light},
        {"Color3DDark", sets<&SkinnedControl::SetColor3DDark>, theme::window_text},
        {"Font", sets<&SkinnedControl::SetFont>},
        {"FontName", sets<&SkinnedControl::SetFontName>},
        {"FontSize", sets<&SkinnedControl::SetFontSize>},
        {"FontItalic", sets<&SkinnedControl::SetFontItalic>},
        {"FontUnderline", sets<&SkinnedControl::SetFontUnderline>},
        {"DropShadow", sets<&SkinnedControl::SetDropShadow>, false},
    };
    return properties;
}

} // namespace

elpanel::elpanel(const QString& name, QWidget* parent) : SkinnedControl(name, parent, persisted()) {
    picture1_.Left = 9;
    picture1_.Top = 10;
    picture1_.Width = panel_icon_size;
    picture1_.Height = panel_icon_size;
    picture1_.bits_per_pixel = icon_bits_per_pixel;
    picture1_.BackColor = theme::window_background;
    draw_panel_icon(picture1_.surface());
    picture1_.surface().on_change = [this] { update(); };
    picture2_.Top = 8;
    picture2_.Width = close_button_size;
    picture2_.Height = close_button_size;
    close_edges_.set_width(close_button_size);
    picture2_.contents = {&close_edges_.right, &close_edges_.bottom, &close_edges_.top, &close_edges_.left,
                          &label2_};
    label2_.Left = 2;
    label2_.Top = 2;
    label2_.Width = 14;
    label2_.Height = 14;
    label2_.set_symbol();
    label2_.SetCaption("r");
    title_.text.Height = title_.shadow.Height = title_height;
    add_part("Picture1", picture1_);
    add_part("Picture2", picture2_);
    name_part("Line1B(1)", close_edges_.right);
    name_part("Line1B(0)", close_edges_.bottom);
    name_part("Line1A(1)", close_edges_.top);
    name_part("Line1A(0)", close_edges_.left);
    name_part("Label2", label2_);
    add_part("LineA(0)", edges_.top);
    add_part("LineA(1)", edges_.left);
    add_part("LineB(0)", edges_.right);
    add_part("LineB(1)", edges_.bottom);
    add_part("shadow1", title_.shadow);
    add_part("Label1", title_.text);
    set_background_edge(1);
    ReadProperties({});
}

// Properties.

void elpanel::SetCloseColor(Colour colour) {
    label2_.ForeColor = colour;
    changed("CloseColor");
}

void elpanel::SetTitle(const QString& title) {
    title_.SetCaption(title);
    changed("Title");
}

void elpanel::SetIcon(bool visible) {
    picture1_.Visible = visible;
    icon_ = visible;
    changed("Icon");
}

void elpanel::SetCerrar(bool visible) {
    picture2_.Visible = visible;
    cerrar_ = visible;
    changed("Cerrar");
}

// Pixels.

void elpanel::set_icon(const DrawingContext& context) {
    bit_blt(picture1_.surface().hDC(), 0, 0, panel_icon_size, panel_icon_size, context, 0, 0, SRCCOPY);
    picture1_.surface().Refresh();
}

DrawingContext& elpanel::get_icon_hdc() {
    return picture1_.surface().hDC();
}

std::int32_t elpanel::set_the_hdc(const DrawingContext& context) {
    bit_blt(surface().hDC(), 0, 0, round_to_even<std::int32_t>(ScaleWidth()),
            round_to_even<std::int32_t>(ScaleHeight()), context, 0, 0, SRCCOPY);
    update();
    return 0;
}

void elpanel::obtener_imagen_fondo(const DrawingContext& origen, std::int32_t x, std::int32_t y,
                                   std::int16_t cantidad) {
    // Unlike in the other controls, an invalid alpha fails before anything is cleared.
    const BLENDFUNCTION blend{.SourceConstantAlpha = narrow<std::uint8_t>(cantidad)};
    surface().Cls();
    blend_background(origen, x, y, blend);
    alpha_blend(picture2_.surface().hDC(),
                {1, 1, round_to_even<std::int32_t>(picture2_.Width) - 2,
                 round_to_even<std::int32_t>(picture2_.Height) - 2},
                origen, checked_add(x, round_to_even<std::int32_t>(picture2_.Left)),
                checked_add(y, round_to_even<std::int32_t>(picture2_.Top)), packed(blend));
    update();
}

// Appearance.

void elpanel::resized() {
    const double width = width_in_pixels();
    // The horizontal twips per pixel apply to both directions.
    const double height = Height() / varnoth::screen().TwipsPerPixelX;
    edges_.set_width(width);
    edges_.set_height(height);
    picture2_.Left = width - close_button_from_right;
    title_.text.Width = title_.shadow.Width = std::max(width - title_margins, 0.0);
}

void elpanel::show_back_colour() {
    picture2_.set_back_colour(BackColor());
}

void elpanel::show_fore_colour() {
    title_.text.ForeColor = ForeColor();
}

void elpanel::show_light() {
    edges_.colour_top_left(Color3DLight());
    close_edges_.colour_top_left(Color3DLight());
}

void elpanel::show_dark() {
    edges_.colour_bottom_right(Color3DDark());
    close_edges_.colour_bottom_right(Color3DDark());
}

void elpanel::show_font() {
    title_.SetFont(Font());
}

void elpanel::show_shadow() {
    title_.set_shadow(DropShadow());
}

void elpanel::sink_close_button() {
    close_edges_.left.BorderColor = edges_.right.BorderColor;
    close_edges_.top.BorderColor = edges_.bottom.BorderColor;
    close_edges_.bottom.BorderColor = edges_.left.BorderColor;
    close_edges_.right.BorderColor = edges_.top.BorderColor;
    update();
}

void elpanel::raise_close_button() {
    close_edges_.left.BorderColor = edges_.top.BorderColor;
    close_edges_.top.BorderColor = edges_.left.BorderColor;
    close_edges_.bottom.BorderColor = edges_.right.BorderColor;
    close_edges_.right.BorderColor = edges_.bottom.BorderColor;
    update();
}

// Events.

void elpanel::part_pressed(Part* part, const MouseArguments& mouse) {
    if (is_close_button(part)) {
        if (mouse.Button == left_button) {
            sink_close_button();
        }
    } else if (part == &title_.text) {
        emit TitleMouseDown(mouse.Button, mouse.Shift, mouse.x, mouse.y);
    } else if (part == &picture1_) {
        emit IconMouseDown(mouse.Button, mouse.Shift, mouse.x, mouse.y);
    } else {
        emit MouseDown(mouse.Button, mouse.Shift, mouse.x, mouse.y);
    }
}

void elpanel::part_moved(Part* part, const MouseArguments& mouse) {
    if (part == &title_.text) {
        emit TitleMouseMove(mouse.Button, mouse.Shift, mouse.x, mouse.y);
    } else if (part == &picture1_) {
        emit IconMouseMove(mouse.Button, mouse.Shift, mouse.x, mouse.y);
    } else if (part == nullptr) {
        emit MouseMove(mouse.Button, mouse.Shift, mouse.x, mouse.y);
    }
}

void elpanel::part_released(Part* part, const MouseArguments& mouse) {
    if (is_close_button(part)) {
        if (mouse.Button == left_button) {
            raise_close_button();
        }
    } else if (part == &title_.text) {
        emit TitleMouseUp(mouse.Button, mouse.Shift, mouse.x, mouse.y);
    } else if (part == &picture1_) {
        emit IconMouseUp(mouse.Button, mouse.Shift, mouse.x, mouse.y);
    } else {
        emit MouseUp(mouse.Button, mouse.Shift, mouse.x, mouse.y);
    }
}

void elpanel::part_abandoned(Part* part) {
    if (is_close_button(part)) {
        raise_close_button();
    }
}

void elpanel::part_clicked(Part* part) {
    if (is_close_button(part)) {
        emit CloseClick();
    } else if (part != &picture1_) {
        emit Click();
    }
}

bool elpanel::part_double_clicked(Part* part) {
    if (part != nullptr && part != &title_.text) {
        return false;
    }
    emit DblClick();
    return true;
}

void elpanel::perform_click() {
    if (cerrar_) {
        emit CloseClick();
    }
}

} // namespace varnoth
