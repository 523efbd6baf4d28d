// Checks the contrast of every text with its actual background against the table in docs/access.md.
#include <algorithm>
#include <cmath>
#include <fstream>
#include <iomanip>
#include <iterator>
#include <map>
#include <set>
#include <sstream>

#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QToolTip>

#include "core/base/numbers.h"
#include "desktop/forms/EveryWindow.h"
#include "desktop/services/QtMessageBoxes.h"
#include "desktop/theme/theme.h"

namespace varnoth::test {
namespace {

constexpr double least_contrast = 4.5;

// Relative luminance and contrast as in WCAG 2.1, https://www.w3.org/TR/WCAG21/#dfn-contrast-ratio.

double linear(int channel) {
    const double part = channel / 255.0;
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double luminance(QRgb colour) {
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) + 0.0722 * linear(qBlue(colour));
}

double contrast(QRgb one, QRgb other) {
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QRgb rgb(Colour colour) {
    return theme::to_qcolor(colour).rgb();
}

/// A text on the screen: its kind, its colour and its position in the window.
struct Text {
    std::string kind;
    QRgb colour = 0;
    QRect place;
};

/// The background of a text: the most frequent colour in its area other than the text's own.
QRgb ground_of(const QImage& picture, const Text& text) {
    std::map<QRgb, int> counts;
    const QRect place = text.place & picture.rect();
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x) {
            ++counts[picture.pixel(x, y)];
        }
    }
    counts.erase(text.colour);
    const auto commonest = std::max_element(counts.begin(), counts.end(),
                                            [](const auto& a, const auto& b) { return a.second < b.second; });
    return commonest == counts.end() ? text.colour : commonest->first;
}

/// Whether the letters are painted in approximately this colour; antialiasing softens their edges.
bool is_painted(const QImage& picture, const Text& text) {
    constexpr int softened = 48;
    const auto near = [&](QRgb pixel) {
        return std::abs(qRed(pixel) - qRed(text.colour)) <= softened &&
               std::abs(qGreen(pixel) - qGreen(text.colour)) <= softened &&
               std::abs(qBlue(pixel) - qBlue(text.colour)) <= softened;
    };
    const QRect place = text.place & picture.rect();
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x) {
            if (near(picture.pixel(x, y))) {
                return true;
            }
        }
    }
    return false;
}

std::string state_of(const QWidget& widget) {
    return widget.testAttribute(Qt::WA_ForceDisabled) ? ", disabled" : "";
}

/// Collects the texts of a window from its widgets.
class Texts {
  public:
    explicit Texts(QWidget& window) : window_(window) {
        take(window);
        for (QWidget* widget : window.findChildren<QWidget*>()) {
            if (widget->isVisible()) {
                take(*widget);
            }
        }
    }

    std::vector<Text> all;

  private:
    void take(QWidget& widget) {
        if (auto* button = qobject_cast<elboton*>(&widget)) {
            const bool armed = button->ForeColor() == theme::highlight;
            add_part(*button, "label", "Button" + state_of(*button) + (armed ? ", armed" : ""));
        } else if (auto* label = qobject_cast<ellabel*>(&widget)) {
            const bool grey = label->ForeColor() == theme::disabled_text;
            add_part(*label, "Label2", grey ? "Label, grey" : "Label");
        } else if (auto* check = qobject_cast<elcheck*>(&widget)) {
            add_part(*check, "Label2", "Check box" + state_of(*check) + (check->Value() ? ", checked" : ""));
            if (check->Value()) {
                add(*check, "Check mark", rgb(check->part<TextPart>("Label1").ForeColor),
                    check->part<BoxPart>("Picture2").place().toRect().adjusted(1, 1, -1, -1));
            }
        } else if (auto* radio = qobject_cast<elradio*>(&widget)) {
            add_part(*radio, "Label1",
                     "Radio button" + state_of(*radio) + (radio->Value() ? ", chosen" : ""));
        } else if (auto* panel = qobject_cast<elpanel*>(&widget)) {
            const TextPart& title = panel->part<TextPart>("Label1");
            QRect place = title.place().toRect();
            place.setWidth(static_cast<int>(text_width(title.Font(), title.Caption())));
            add(*panel, "Title", rgb(title.ForeColor), place);
            if (panel->Cerrar()) {
                add(*panel, "Close box", rgb(panel->CloseColor()),
                    panel->part<BoxPart>("Picture2").place().toRect().adjusted(2, 2, -2, -2));
            }
        } else {
            take_platform_widget(widget);
        }
    }

    void take_platform_widget(QWidget& widget) {
        if (auto* field = qobject_cast<QLineEdit*>(&widget)) {
            take_field(*field);
        } else if (auto* list = qobject_cast<QListWidget*>(&widget)) {
            take_lines(*list);
        } else if (auto* drop_down = qobject_cast<DropDownList*>(&widget)) {
            const bool has_arrow = qobject_cast<elcombo*>(widget.parentWidget()->parentWidget()) == nullptr;
            add(*drop_down, "Drop-down list", drop_down->view()->palette().color(QPalette::Text).rgb(),
                drop_down->rect().adjusted(4, 4, -20, -4));
            if (has_arrow) {
                add(*drop_down, "Drop-down arrow", rgb(theme::edge_light),
                    QRect(drop_down->width() - 18, 2, 16, drop_down->height() - 4));
            }
        } else if (auto* combo = qobject_cast<elcombo*>(&widget)) {
            add(*combo, "Drop-down arrow", rgb(combo->SymbolColor()),
                QRect(combo->width() - 20, 2, 16, combo->height() - 4));
        } else if (auto* label = qobject_cast<Label*>(&widget)) {
            take_label(*label);
        } else if (auto* plain = qobject_cast<QLabel*>(&widget);
                   plain != nullptr && !plain->text().isEmpty()) {
            const bool tip = plain->isWindow();
            add(*plain, tip ? "Tool tip" : "Message",
                plain->palette().color(tip ? QPalette::ToolTipText : QPalette::WindowText).rgb(),
                plain->contentsRect());
        } else if (auto* push = qobject_cast<QPushButton*>(&widget)) {
            add(*push, "Button", push->palette().color(QPalette::ButtonText).rgb(),
                push->rect().adjusted(3, 3, -3, -3));
        }
    }

    void take_field(const QLineEdit& field) {
        const bool selected = field.hasSelectedText();
        const int width = field.fontMetrics().horizontalAdvance(field.text());
        if (width > 0) {
            add(field, selected ? "Text box, selected text" : "Text box",
                field.palette().color(selected ? QPalette::HighlightedText : QPalette::Text).rgb(),
                field.rect().adjusted(2, 2, 0, -2).intersected(QRect(2, 2, width, field.height())));
        }
    }

    void take_label(Label& label) {
        if (label.kind() == Label::Kind::Text) {
            add(label, "Label", rgb(label.ForeColor()), label.rect());
        } else if (label.property("checkedState").isValid()) {
            const bool checked = label.property("checkedState").toBool();
            add(label, checked ? "Stop or Play, active" : "Stop or Play, inactive", rgb(label.ForeColor()),
                label.rect());
        } else {
            add(label, "Arrow", rgb(label.ForeColor()), label.rect());
        }
    }

    void take_lines(QListWidget& list) {
        for (int line = 0; line < list.count(); ++line) {
            const QRect place = list.visualItemRect(list.item(line));
            if (!list.viewport()->rect().contains(place)) {
                continue;
            }
            const bool selected = list.item(line)->isSelected();
            const QPalette& palette = list.palette();
            const QColor colour = palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
            add(*list.viewport(), "Line of a list" + state_of(list) + (selected ? ", selected" : ""),
                colour.rgb(), place);
        }
    }

    void add_part(const SkinnedControl& control, const char* name, const std::string& kind) {
        const TextPart& part = control.part<TextPart>(name);
        if (!part.Caption().isEmpty()) {
            add(control, kind, rgb(part.ForeColor), part.place().toRect());
        }
    }

    void add(const QWidget& widget, const std::string& kind, QRgb colour, const QRect& place) {
        all.push_back({kind, colour, place.translated(widget.mapTo(&window_, QPoint(0, 0)))});
    }

    QWidget& window_;
};

/// The reason why a text may have a lower contrast. The theme's colours are fixed.
std::string reason_for(const std::string& kind) {
    if (kind.find("disabled") != std::string::npos || kind.find("grey") != std::string::npos) {
        return "fixed colour; grey means disabled";
    }
    static const std::map<std::string, std::string> reasons{
        {"Button, armed", "fixed colour; the state is also reported"},
        {"Close box", "a glyph of a fixed colour; its name is reported"},
        {"Drop-down arrow", "a glyph, which needs only 3"},
        {"Radio button, chosen", "fixed colour; the dot says it too"},
        {"Stop or Play, active", "fixed colour; the state is also reported"},
        {"Stop or Play, inactive", "fixed colour; the state is also reported"},
    };
    const auto found = reasons.find(kind);
    return found == reasons.end() ? "" : found->second;
}

std::string hex(QRgb colour) {
    return QColor(colour).name().toUpper().toStdString();
}

/// The lines of the table, one for each kind of text and pair of colours.
class Table {
  public:
    void add(QWidget& window, const std::string& state) {
        const QImage picture = window.grab().toImage();
        for (const Text& text : Texts(window).all) {
            const std::string what = state + ": " + text.kind;
            const QRgb ground = ground_of(picture, text);
            EXPECT_TRUE(is_painted(picture, text)) << what;
            const double ratio = contrast(text.colour, ground);
            const std::string reason = ratio < least_contrast ? reason_for(text.kind) : "";
            EXPECT_TRUE(ratio >= least_contrast || !reason.empty())
                << what << ": " << hex(text.colour) << " on " << hex(ground) << " is " << ratio;
            std::ostringstream line;
            line << "| " << text.kind << " | `" << hex(text.colour) << "` | `" << hex(ground) << "` | "
                 << std::fixed << std::setprecision(1) << std::floor(ratio * 10) / 10 << " | " << reason
                 << " |\n";
            lines_.insert(line.str());
        }
    }

    std::string text() const {
        std::string text =
            "| Text | Colour | On | Contrast | Why it is less than 4.5 |\n|---|---|---|---|---|\n";
        for (const std::string& line : lines_) {
            text += line;
        }
        return text;
    }

  private:
    std::set<std::string> lines_;
};

class ContrastTest : public EveryWindowTest {
  protected:
    /// Adds a message box and a tool tip, which Qt draws in the theme's colours.
    static void add_platform_windows(Table& table, QWidget& over) {
        QTimer::singleShot(0, [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            table.add(*box, "message");
            box->accept();
        });
        QtMessageBoxes().show("Frames Generated Successfully !");
        QToolTip::showText({10, 10}, "DblClick To Preview Animation", &over);
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->inherits("QTipLabel") && window->isVisible()) {
                table.add(*window, "tool tip");
            }
        }
        QToolTip::hideText();
    }
};

TEST(Contrast, RatioMatchesWcag) {
    EXPECT_DOUBLE_EQ(contrast(qRgb(255, 255, 255), qRgb(0, 0, 0)), 21);
    EXPECT_DOUBLE_EQ(contrast(qRgb(0, 0, 0), qRgb(255, 255, 255)), 21);
    EXPECT_DOUBLE_EQ(contrast(qRgb(9, 9, 9), qRgb(9, 9, 9)), 1);
    EXPECT_NEAR(contrast(qRgb(0x76, 0x76, 0x76), qRgb(255, 255, 255)), 4.54, 0.005);
}

TEST_F(ContrastTest, TableListsEveryTextAndReasonsForLowContrast) {
    Table table;
    in_every_window([&](const std::string& state, Form& window) {
        table.add(window, state);
        if (auto* field = window.findChild<QLineEdit*>(); field != nullptr && !field->text().isEmpty()) {
            field->selectAll();
            table.add(window, state + ", selected");
            field->deselect();
        }
    });
    add_platform_windows(table, main());
    std::ifstream file(VARNOTH_SOURCE_DIR "/docs/access.md");
    const std::string page((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    EXPECT_NE(page.find(table.text()), std::string::npos) << "docs/access.md must have\n" << table.text();
}

} // namespace
} // namespace varnoth::test
