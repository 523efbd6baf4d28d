// An export view with every frame selected.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "core/jobs/FrameExtraction.h"
#include "core/sprite/hlspr.h"

namespace varnoth::test {

class AllFrames : public ExtractionView {
  public:
    int written = 0;
    std::function<void(const std::string& path)> on_written;

    std::int32_t line_count() const override { return hlspr::document().SpriteHeader.FrameCount; }

    bool is_selected(std::int16_t /*line*/) const override { return true; }

    bool aborted() const override { return false; }

    void show_item(std::string_view /*name*/) override {}

    void advance() override {}

    void frame_written(const std::string& path) override {
        ++written;
        if (on_written) {
            on_written(path);
        }
    }
};

} // namespace varnoth::test
