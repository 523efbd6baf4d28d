// The base of the program's windows: no system title bar, a fixed size, a position above the window that
// opened them, and moving by the panel's title.
#pragma once

#include <cstdint>
#include <vector>

#include <QWidget>

#include "desktop/forms/FormKeys.h"

namespace varnoth {

class elboton;
class elpanel;

/// A form is created when it is shown and destroyed when it closes. Sizes are in pixels.
class Form : public QWidget {
    Q_OBJECT

  public:
    /// The main window has no owner; a dialog stays above the window that opened it.
    enum class Kind { Main, Dialog };

    /// Enables or disables user input. A disabled form looks the same.
    void SetEnabled(bool enabled) { setEnabled(enabled); }

    const std::vector<FormKey>& keys() const { return keys_.keys(); }

    /// Shows the form above its owner, centred on it and moved to be entirely on the screen.
    void show_over(QWidget& owner);

    /// Shows the form centred on the screen.
    void show_first();

  signals:
    /// The window system asked the form to close, for example by the task bar or Alt+F4. Forms with a close
    /// box treat this as a click on it; the others ignore it.
    void closeRequested();

  protected:
    Form(const QString& name, const QString& title, Kind kind, int width, int height);

    /// Makes the panel the form's background: extends it over the whole form and lets the user move the form
    /// by the panel's title.
    void set_panel(elpanel& panel, const QString& title);

    /// Adds keys. To be called when all controls exist.
    void add_keys(const std::vector<FormKey>& keys) { keys_.add(keys); }

    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    void correct_window_place();
    void begin_drag(float x, float y);
    void drag(std::int16_t Button);

    int dragging_ = 0;
    float grab_x_ = 0; ///< relative to the title, in pixels
    float grab_y_ = 0;
    FormKeys keys_{*this};
};

/// Whether programs can move their windows and the pointer. Wayland reserves both for the compositor.
bool clients_place_windows();

/// The top left for a window of this size: `wanted`, adjusted so that the window is on the screen.
QPoint place_on_screen(const QPoint& wanted, const QSize& size, const QRect& screen);

/// The window's position during a drag, for a pointer position on the screen; all in pixels. Windows move in
/// units of a fifteenth of a pixel, and the grab offset is subtracted as units without conversion. The
/// corner therefore follows the pointer at a fifteenth of the offset.
QPoint dragged_place(const QPoint& pointer, float grab_x, float grab_y);

/// Change a button's state together with the colour of its caption.
void enable_button(elboton& button);
void disable_button(elboton& button);

} // namespace varnoth
