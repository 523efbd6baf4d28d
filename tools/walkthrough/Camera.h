// Takes screenshots of windows and numbers them in order.
#pragma once

#include <optional>
#include <string>

#include <QWidget>

#include "walkthrough/Report.h"

namespace varnoth::walkthrough {

class Camera {
  public:
    /// Without a folder, no screenshots are taken.
    Camera(std::optional<std::string> folder, Report report)
        : folder_(std::move(folder)), report_(std::move(report)) {}

    bool is_enabled() const { return folder_.has_value(); }

    /// Writes the window to the PNG file NN_name.png and reports it. The picture shows no keyboard focus and
    /// no caret.
    void take(QWidget& window, const QString& name);

  private:
    std::optional<std::string> folder_;
    Report report_;
    int taken_ = 0;
};

} // namespace varnoth::walkthrough
