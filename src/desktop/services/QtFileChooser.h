// The platform's file dialogs. They open in the folder of the last choice.
#pragma once

#include <QUrl>

#include "core/services/Services.h"

class QFileDialog;

namespace varnoth {

class QtFileChooser : public FileChooser {
  public:
    std::string choose_to_open(std::string_view filter) override;

    /// Asks before it returns an existing file. Adds the filter's extension when none is typed.
    std::string choose_to_save(std::string_view filter) override;

  private:
    std::string choose(QFileDialog& dialog, std::string_view filter);

    QUrl folder_; ///< of the last choice
};

} // namespace varnoth
