// Message boxes on Qt, under the application's title and above the active window.
#pragma once

#include "core/services/Services.h"

namespace varnoth {

class QtMessageBoxes : public MessageBoxes {
  public:
    /// Both show plain text, never rich text, and return when the user has answered. Closing a question
    /// without an answer means No.
    void show(std::string_view text) override;
    bool ask(std::string_view question) override;
};

} // namespace varnoth
