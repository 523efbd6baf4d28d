// The platform's own file chooser.
#pragma once

#include <QUrl>

#include "core/services/Services.h"

class QFileDialog;

namespace varnoth {

class QtFileChooser : public FileChooser {
  public:
    std::string choose_to_open(std::string_view filter) override;

    /// Asks before an existing file is taken. Where no ending is typed, the filter's is added.
    std::string choose_to_save(std::string_view filter) override;

  private:
    std::string choose(QFileDialog& dialog, std::string_view filter);

    QUrl folder_; ///< of the last choice
};

} // namespace varnoth
