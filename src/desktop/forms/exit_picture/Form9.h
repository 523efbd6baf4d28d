// The exit picture: a form that shows a picture. A click on it ends the program, and so does its timer. No
// command opens it.
#pragma once

#include <QTimer>

#include "desktop/widgets/PictureBox.h"
#include "desktop/forms/Form.h"

namespace varnoth {

class Form9 : public Form {
    Q_OBJECT

  public:
    Form9();

    PictureBox Picture1; ///< 597 by 255 pixels of 24 bits
    QTimer Timer1{this}; ///< of 5000 milliseconds; nothing starts it
};

} // namespace varnoth
