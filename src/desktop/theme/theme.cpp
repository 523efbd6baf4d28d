#include "desktop/theme/theme.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <utility>
#include <vector>

#include <QApplication>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QFrame>
#include <QHash>
#include <QIcon>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QProxyStyle>
#include <QResource>
#include <QStyleFactory>
#include <QStyleOption>
#include <QToolTip>
#include <QWidget>

#include "core/image/PictureSurface.h"
#include "desktop/theme/edges.h"
#include "desktop/theme/symbols.h"

namespace varnoth::theme {

namespace {

constexpr const char* design_family = "Tahoma";
constexpr double twips_per_point = 20;

// Fonts.

/// A text and its width in Tahoma, as a multiple of the font size.
struct Reference {
    const char* text;
    double width;
};

// The program's captions in mixed case and in capitals, because families differ in the ratio of the two. The
// last caption is the one with the least space to spare.
constexpr std::array references{
    Reference{
        "Set Sprite To 256x256 Resize Pictures Transparent Color: Select Extracting Folder Name Overwrite",
        43.16},
    Reference{"VP_PARALLEL_UPRIGHT FACING_UPRIGHT VP_PARALLEL ORIENTED VP_PARALLEL_ORIENTED", 42.32},
    Reference{"VP_PARALLEL_ORIENTED", 11.39}};

constexpr int plain_stretch = 100;
constexpr int narrowest_stretch = 60;

/// A sans-serif family that can replace Tahoma, and the stretch that it needs; 0 when that must be measured.
struct Substitute {
    const char* family;
    int stretch;
};

// In order of preference.
constexpr std::array substitutes{Substitute{"DejaVu Sans Condensed", 85},
                                 Substitute{"Liberation Sans", 0},
                                 Substitute{"Noto Sans", 0},
                                 Substitute{"Arial", 0},
                                 Substitute{"Nimbus Sans", 90},
                                 Substitute{"DejaVu Sans", 88}};

// Searches the list of families. Asking Qt for a missing family is slow, because it then searches all
// aliases.
bool is_installed(const QString& family) {
    const QStringList families = QFontDatabase::families();
    return families.contains(family, Qt::CaseInsensitive) ||
           std::ranges::any_of(families, [&](const QString& listed) {
               return listed.startsWith(family + " [", Qt::CaseInsensitive); // one of several foundries
           });
}

/// The width of the reference texts as a multiple of their width in Tahoma; the greatest of the ratios.
double relative_width(const QFont& font) {
    const QFontMetricsF metrics(font);
    double greatest = 0;
    for (const Reference& reference : references) {
        const double width = metrics.horizontalAdvance(QLatin1String(reference.text));
        greatest = std::max(greatest, width / (reference.width * font.pixelSize()));
    }
    return greatest;
}

int likely_stretch(const QFont& font) {
    const double plain_width = relative_width(font);
    return plain_width <= 1 ? plain_stretch : static_cast<int>(plain_stretch / plain_width) + 1;
}

// The effect of a stretch depends on the faces that the family has, so candidates are measured, starting from
// the likely one.
void narrow(QFont& font, int stretch) {
    for (font.setStretch(stretch); relative_width(font) > 1 && stretch > narrowest_stretch;) {
        font.setStretch(--stretch);
    }
}

void substitute_family(QFont& font) {
    font.setStyleHint(QFont::SansSerif);
    for (const Substitute& stand_in : substitutes) {
        const QString family = QString::fromLatin1(stand_in.family);
        if (is_installed(family)) {
            font.setFamily(family);
            narrow(font, stand_in.stretch != 0 ? stand_in.stretch : likely_stretch(font));
            return;
        }
    }
    font.setFamily(QFontDatabase::systemFont(QFontDatabase::GeneralFont).family());
    narrow(font, likely_stretch(font));
}

QFont find_display_font(const QFont& font) {
    QFont found = font;
    if (font.pointSizeF() > 0) {
        const double pixels = font.pointSizeF() * twips_per_point / varnoth::screen().TwipsPerPixelY;
        found.setPixelSize(std::max(1, static_cast<int>(std::nearbyint(pixels))));
    }
    if (!is_installed(font.family())) {
        substitute_family(found);
    }
    return found;
}

/// The display fonts found so far. Valid until fonts are installed or removed.
struct FontCache {
    QHash<QFont, QFont> fonts;
    double twips_per_pixel = 0;
};

FontCache& font_cache() {
    static FontCache cache;
    return cache;
}

// Palette.

// Sets a role in all colour groups: inactive and disabled windows look like active ones.
void set_role(QPalette& palette, QPalette::ColorRole role, Colour colour) {
    palette.setColor(QPalette::All, role, to_qcolor(colour));
}

// Style.

/// Whether a widget or one of its ancestors below the window was itself disabled, not just the window.
bool is_itself_disabled(const QWidget* widget) {
    for (; widget != nullptr && !widget->isWindow(); widget = widget->parentWidget()) {
        if (widget->testAttribute(Qt::WA_ForceDisabled)) {
            return true;
        }
    }
    return false;
}

/// The first palette seen with the same colours as the given one. Fusion caches what it paints under the
/// palette's cache key. The widgets of every dialog would have new keys: nothing would be found in the cache,
/// and its keys would accumulate for ever.
QPalette known_palette(const QPalette& palette) {
    static std::vector<QPalette> known;
    auto found = std::ranges::find(known, palette);
    if (found == known.end()) {
        found = known.insert(known.end(), palette);
    }
    QPalette same = *found;
    same.setCurrentColorGroup(palette.currentColorGroup());
    return same;
}

/// For its own lifetime, makes an option look enabled if only the widget's window is disabled, and replaces
/// its palette by the known one.
class EnabledLook {
  public:
    EnabledLook(const QStyleOption* option, const QWidget* widget)
        : option_(const_cast<QStyleOption*>(option)) {
        if (option_ == nullptr) {
            return;
        }
        palette_ = option_->palette;
        option_->palette = known_palette(palette_);
        state_ = option_->state;
        // In an enabled widget, disabled items must stay grey.
        if (widget != nullptr && !widget->isEnabled() && !is_itself_disabled(widget)) {
            option_->state |= QStyle::State_Enabled;
        }
    }

    ~EnabledLook() {
        if (option_ != nullptr) {
            option_->state = state_;
            option_->palette = palette_;
        }
    }

    EnabledLook(const EnabledLook&) = delete;
    EnabledLook& operator=(const EnabledLook&) = delete;

  private:
    QStyleOption* option_;
    QStyle::State state_;
    QPalette palette_;
};

constexpr int least_line_height = 16;

void draw_raised(QPainter& painter, const QRect& box, bool sunken) {
    painter.fillRect(box, to_qcolor(window_background));
    draw_edges(painter, box, sunken ? edge_dark : edge_light, sunken ? edge_light : edge_dark);
}

/// Whether an option is the frame of a list.
bool is_sunken_panel(const QStyleOption* option) {
    const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
    return frame != nullptr && frame->frameShape == QFrame::Panel &&
           frame->state.testFlag(QStyle::State_Sunken);
}

class ThemeStyle : public QProxyStyle {
  public:
    ThemeStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

    using QProxyStyle::polish;

    void polish(QPalette& palette) override { palette = theme::palette(); }

    QPalette standardPalette() const override { return theme::palette(); }

    // The same icon every time, so that its scaled pixmaps are found in the cache.
    QIcon standardIcon(StandardPixmap picture, const QStyleOption* option,
                       const QWidget* widget) const override {
        auto found = icons_.find(picture);
        if (found == icons_.end()) {
            found = icons_.insert(picture, QProxyStyle::standardIcon(picture, option, widget));
        }
        return *found;
    }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        if (hint == SH_ComboBox_Popup) {
            return 0; // opens a list below the field
        }
        if (hint == SH_DialogButtonBox_ButtonsHaveIcons) {
            return 0; // the desktop's setting could bring coloured icons
        }
        return QProxyStyle::styleHint(hint, option, widget, data);
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        const EnabledLook look(option, widget);
        const auto* focus = qstyleoption_cast<const QStyleOptionFocusRect*>(option);
        if (element == PE_FrameFocusRect && focus != nullptr) {
            const bool on_mark = focus->backgroundColor == to_qcolor(highlight);
            const Colour line = on_mark ? edge_dark : edge_light;
            draw_edges(*painter, option->rect, line, line);
        } else {
            QProxyStyle::drawPrimitive(element, option, painter, widget);
        }
    }

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
        const EnabledLook look(option, widget);
        const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(option);
        if (element == CE_PushButtonBevel) {
            draw_raised(*painter, option->rect, option->state.testFlag(State_Sunken));
        } else if (element == CE_ShapedFrame && is_sunken_panel(option)) {
            painter->fillRect(option->rect, option->palette.color(QPalette::Base));
            draw_edges(*painter, option->rect, edge_dark, edge_light);
        } else if (element == CE_HeaderLabel && header != nullptr) {
            draw_header_label(const_cast<QStyleOptionHeader&>(*header), *painter, widget);
        } else {
            QProxyStyle::drawControl(element, option, painter, widget);
        }
    }

    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override {
        const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
        if (type != CT_ItemViewItem) {
            return size;
        }
        // All lists have the same line height, with an icon before the text or without. The minimum separates
        // the lines of fonts with a small line height.
        return {size.width(), std::max(least_line_height, option->fontMetrics.height())};
    }

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override {
        const EnabledLook look(option, widget);
        const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
        if (control == CC_ScrollBar && slider != nullptr) {
            draw_scroll_bar(*slider, *painter, widget);
        } else {
            QProxyStyle::drawComplexControl(control, option, painter, widget);
        }
    }

  private:
    // The file dialog's header has a new, empty icon each time it is painted, which is never found in the
    // pixmap cache.
    void draw_header_label(QStyleOptionHeader& header, QPainter& painter, const QWidget* widget) const {
        const QIcon icon = std::exchange(header.icon, QIcon());
        QProxyStyle::drawControl(CE_HeaderLabel, &header, &painter, widget);
        header.icon = icon;
    }

    void draw_scroll_bar(const QStyleOptionSlider& bar, QPainter& painter, const QWidget* widget) const {
        const bool upright = bar.orientation == Qt::Vertical;
        painter.fillRect(bar.rect, to_qcolor(edge_dark));
        draw_scroll_arrow(bar, painter, widget, SC_ScrollBarSubLine, upright ? u'5' : u'3');
        draw_scroll_arrow(bar, painter, widget, SC_ScrollBarAddLine, upright ? u'6' : u'4');
        if (bar.minimum < bar.maximum) {
            draw_raised(painter, proxy()->subControlRect(CC_ScrollBar, &bar, SC_ScrollBarSlider, widget),
                        false);
        }
    }

    void draw_scroll_arrow(const QStyleOptionSlider& bar, QPainter& painter, const QWidget* widget,
                           SubControl arrow, QChar symbol) const {
        const QRect box = proxy()->subControlRect(CC_ScrollBar, &bar, arrow, widget);
        const bool pressed = bar.state.testFlag(State_Sunken) && bar.activeSubControls.testFlag(arrow);
        draw_raised(painter, box, pressed);
        const bool grey = !bar.state.testFlag(State_Enabled) || bar.minimum == bar.maximum;
        draw_symbol(painter, symbol, box, to_qcolor(grey ? disabled_text : light_text));
    }

    mutable QHash<StandardPixmap, QIcon> icons_;
};

// Larger sizes are only for menus, which use icon files. These are raw pixels: reading an image file would
// make Qt load its plugins for all formats and delay the first window.
QIcon program_icon() {
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64}) {
        const QByteArray pixels =
            QResource(QStringLiteral(":/icons/varnoth-%1.rgba").arg(size)).uncompressedData();
        QImage image(size, size, QImage::Format_RGBA8888);
        std::ranges::copy(pixels, image.bits());
        icon.addPixmap(QPixmap::fromImage(image));
    }
    return icon;
}

} // namespace

QColor to_qcolor(Colour colour) {
    const Colour plain = translate_colour(colour);
    return {red_of(plain), green_of(plain), blue_of(plain)};
}

QFont design_font() {
    constexpr double points = 9.75;
    QFont font(QString::fromLatin1(design_family));
    font.setPointSizeF(points);
    font.setWeight(QFont::Normal);
    return font;
}

QFont display_font(const QFont& font) {
    FontCache& cache = font_cache();
    if (cache.twips_per_pixel != varnoth::screen().TwipsPerPixelY) {
        cache = {{}, varnoth::screen().TwipsPerPixelY};
    }
    auto found = cache.fonts.find(font);
    if (found == cache.fonts.end()) {
        found = cache.fonts.insert(font, find_display_font(font));
    }
    return *found;
}

QPalette palette(bool enabled) {
    const Colour text = enabled ? light_text : disabled_text;
    QPalette palette;
    set_role(palette, QPalette::Window, window_background);
    set_role(palette, QPalette::WindowText, text);
    set_role(palette, QPalette::Base, field_background);
    set_role(palette, QPalette::AlternateBase, field_background);
    set_role(palette, QPalette::Text, text);
    set_role(palette, QPalette::PlaceholderText, disabled_text);
    set_role(palette, QPalette::Button, window_background);
    set_role(palette, QPalette::ButtonText, enabled ? white : disabled_text);
    set_role(palette, QPalette::BrightText, white);
    set_role(palette, QPalette::Light, edge_light);
    set_role(palette, QPalette::Midlight, close_glyph);
    set_role(palette, QPalette::Mid, field_background);
    set_role(palette, QPalette::Dark, edge_dark);
    set_role(palette, QPalette::Shadow, edge_dark);
    set_role(palette, QPalette::Highlight, enabled ? highlight : edge_dark);
    set_role(palette, QPalette::HighlightedText, enabled ? black : disabled_text);
    set_role(palette, QPalette::Link, highlight);
    set_role(palette, QPalette::LinkVisited, highlight);
    set_role(palette, QPalette::ToolTipBase, field_background);
    set_role(palette, QPalette::ToolTipText, light_text);
    return palette;
}

void apply_palette(QWidget& widget, bool enabled) {
    widget.setPalette(palette(enabled));
}

void apply(QApplication& application) {
    QObject::connect(&application, &QGuiApplication::fontDatabaseChanged, &application,
                     [] { font_cache().fonts.clear(); });
    QApplication::setStyle(std::make_unique<ThemeStyle>().release()); // the application owns it
    QApplication::setPalette(palette());
    QApplication::setFont(display_font(design_font()));
    QToolTip::setPalette(palette());
    QToolTip::setFont(display_font(design_font()));
    QApplication::setApplicationDisplayName(QString::fromLatin1(application_title));
    QApplication::setWindowIcon(program_icon());
}

} // namespace varnoth::theme
