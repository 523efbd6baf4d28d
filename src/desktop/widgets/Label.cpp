#include "desktop/widgets/Label.h"

#include <utility>

#include <QMouseEvent>
#include <QPainter>

#include "desktop/services/exception_barrier.h"
#include "desktop/theme/symbols.h"
#include "desktop/theme/theme.h"
#include "desktop/widgets/accessible.h"
#include "desktop/widgets/checked_state.h"

namespace varnoth {

namespace {

/// The accessible interface: a button for a symbol, static text otherwise.
class AccessibleLabel : public AccessibleWithKey {
  public:
    explicit AccessibleLabel(Label* label)
        : AccessibleWithKey(label, label->kind() == Label::Kind::Symbol ? QAccessible::Button
                                                                        : QAccessible::StaticText),
          label_(label) {}

    QAccessible::State state() const override {
        QAccessible::State state = AccessibleWithKey::state();
        add_checked_state(*label_, state);
        return state;
    }

    QStringList actionNames() const override {
        return is_button() && label_->isEnabled() ? QStringList{pressAction()} : QStringList{};
    }

    void doAction(const QString& action) override {
        guard_event([&] {
            if (actionNames().contains(action)) {
                label_->perform_click();
            }
        });
    }

  private:
    bool is_button() const { return label_->kind() == Label::Kind::Symbol; }

    Label* label_;
};

} // namespace

Label::Label(const QString& name, QWidget* parent, Kind kind, const QString& caption, const QString& spoken)
    : QWidget(parent),
      kind_(kind),
      spoken_(spoken),
      fore_colour_(kind == Kind::Symbol ? theme::black : theme::light_text) {
    install_accessible<Label, AccessibleLabel>();
    setObjectName(name);
    setAttribute(Qt::WA_NoMousePropagation);
    SetCaption(caption);
}

void Label::SetCaption(const QString& caption) {
    caption_ = caption;
    setAccessibleName(spoken_.isEmpty() ? caption : spoken_);
    update();
}

void Label::SetForeColor(Colour colour) {
    fore_colour_ = colour;
    update();
}

void Label::paintEvent(QPaintEvent* /*event*/) {
    guard_paint([&] {
        QPainter painter(this);
        const QColor colour = theme::to_qcolor(fore_colour_);
        if (kind_ == Kind::Symbol) {
            draw_symbol(painter, caption_.isEmpty() ? QChar() : caption_.front(), rect(), colour);
            return;
        }
        painter.setFont(theme::display_font(theme::design_font()));
        painter.setPen(colour);
        painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, caption_);
    });
}

void Label::mousePressEvent(QMouseEvent* event) {
    guard_event([&] { click_due_ = event->button() == Qt::LeftButton; });
}

void Label::mouseReleaseEvent(QMouseEvent* event) {
    guard_event([&] {
        const bool clicked = event->button() == Qt::LeftButton && std::exchange(click_due_, false);
        if (clicked && rect().contains(event->position().toPoint())) {
            emit Click();
        }
    });
}

} // namespace varnoth
