// A plain text label, or a clickable symbol, without a skin.
#pragma once

#include <QWidget>

#include "core/image/Colour.h"

namespace varnoth {

class Label : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString Caption READ Caption WRITE SetCaption)
    Q_PROPERTY(int ForeColor READ ForeColor WRITE SetForeColor)

  public:
    /// Assistive technology presents a text as static text and a symbol as a button.
    enum class Kind { Text, Symbol };

    /// A symbol's caption is one character of the symbol font; `spoken` is its accessible name.
    Label(const QString& name, QWidget* parent, Kind kind, const QString& caption,
          const QString& spoken = {});

    Kind kind() const { return kind_; }

    const QString& Caption() const { return caption_; }

    void SetCaption(const QString& caption);

    Colour ForeColor() const { return fore_colour_; }

    void SetForeColor(Colour colour);

    /// Raises Click, as the mouse does.
    void perform_click() { emit Click(); }

  signals:
    /// Pressed and released on the label with the left button. A double click counts as two clicks.
    void Click();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    Kind kind_;
    QString caption_;
    QString spoken_;
    Colour fore_colour_;
    bool click_due_ = false; ///< the next release completes a click
};

} // namespace varnoth
