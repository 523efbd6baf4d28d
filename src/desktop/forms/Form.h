// What the program's windows share: no system title bar, a fixed size, a place above the window that opened
// them, and the drag by the panel's title.
#pragma once

#include <cstdint>
#include <vector>

#include <QWidget>

#include "desktop/forms/FormKeys.h"

namespace varnoth {

class elboton;
class elpanel;

/// A form is made when it is shown and ends with its dialog. Sizes are in pixels.
class Form : public QWidget {
    Q_OBJECT

  public:
    /// The main window stands by itself, a dialog above the window that opened it.
    enum class Kind { Main, Dialog };

    /// Whether the form takes the user's input. A form that does not looks as before.
    void SetEnabled(bool enabled) { setEnabled(enabled); }

    const std::vector<FormKey>& keys() const { return keys_.keys(); }

    /// Shows the form above its owner, centred on it, and wholly on the screen.
    void show_over(QWidget& owner);

    /// Shows the form in the middle of the screen.
    void show_first();

  signals:
    /// The window system asked the form to close, as by a task bar or a key of the window manager. Who has a
    /// close box takes it for a click on it; for the others it means nothing.
    void closeRequested();

  protected:
    Form(const QString& name, const QString& title, Kind kind, int width, int height);

    /// Lays the panel over the whole form and lets its title move the form.
    void wear(elpanel& panel, const QString& title);

    /// Gives the form its keys, once it has all its controls.
    void add_keys(const std::vector<FormKey>& keys) { keys_.add(keys); }

    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    void correct_window_place();
    void begin_drag(float x, float y);
    void drag(std::int16_t Button);

    int dragging_ = 0;
    float grab_x_ = 0; ///< in the title, in pixels
    float grab_y_ = 0;
    FormKeys keys_{*this};
};

/// Whether a program may move its windows and the pointer. Wayland leaves both to the compositor.
bool clients_place_windows();

/// The corner of a window of that size that is to stand at `wanted`, moved so far that it lies on the screen.
QPoint place_on_screen(const QPoint& wanted, const QSize& size, const QRect& screen);

/// The window's place for a pointer on the screen, all in pixels: windows move in units of 15 to a pixel, and
/// the grab's offset is subtracted in those units, so the corner follows the pointer less a fifteenth of the
/// offset.
QPoint dragged_place(const QPoint& pointer, float grab_x, float grab_y);

/// A button's state and the colour of its caption change together.
void enable_button(elboton& button);
void disable_button(elboton& button);

} // namespace varnoth
