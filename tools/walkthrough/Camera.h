// Pictures of windows, numbered in the order in which they are taken.
#pragma once

#include <optional>
#include <string>

#include <QWidget>

#include "walkthrough/Report.h"

namespace varnoth::walkthrough {

class Camera {
  public:
    /// Without a folder no picture is taken.
    Camera(std::optional<std::string> folder, Report report)
        : folder_(std::move(folder)), report_(std::move(report)) {}

    bool is_loaded() const { return folder_.has_value(); }

    /// Writes the window as it stands, but without a caret or a mark of who has the keyboard, to a PNG file
    /// of that name behind a number, and reports it.
    void take(QWidget& window, const QString& name);

  private:
    std::optional<std::string> folder_;
    Report report_;
    int taken_ = 0;
};

} // namespace varnoth::walkthrough
