// The exit picture: a form that shows a picture and ends the program. No command opens it.
#pragma once

#include <QTimer>

#include "platform/qt/PictureBox.h"
#include "workbench/Form.h"

namespace varnoth {

class Form9 : public Form {
    Q_OBJECT

  public:
    Form9();

    PictureBox Picture1; ///< 597 by 255 pixels of 24 bits
    QTimer Timer1{this}; ///< of 5000 milliseconds; nothing starts it

  signals:
    void end_wanted();
};

} // namespace varnoth
