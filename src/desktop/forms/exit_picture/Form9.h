// The exit picture. A click on it or its timer ends the program. No command opens it.
#pragma once

#include <QTimer>

#include "desktop/forms/Form.h"
#include "desktop/widgets/PictureBox.h"

namespace varnoth {

class Form9 : public Form {
    Q_OBJECT

  public:
    Form9();

    PictureBox Picture1; ///< 597 by 255 pixels of 24 bits
    QTimer Timer1{this}; ///< interval 5000 ms; never started
};

} // namespace varnoth
