// What the program asks of the screen.
#pragma once

namespace varnoth {

struct Screen {
    double TwipsPerPixelX = 15;
    double TwipsPerPixelY = 15;
};

/// The screen's figures; the window layer may set them at start.
Screen& screen();

} // namespace varnoth
