// Message boxes on Qt, under the application's title and above the active window.
#pragma once

#include "core/services/Services.h"

namespace varnoth {

class QtMessageBoxes : public MessageBoxes {
  public:
    /// The text is shown as it is, never as rich text. Returns when the user has answered; closing a
    /// question's box otherwise is No.
    void show(std::string_view text) override;
    bool ask(std::string_view question) override;
};

} // namespace varnoth
