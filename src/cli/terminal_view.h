// Pictures in a terminal with 24-bit colours: each character shows two pixels, one above the other.
#pragma once

#include <chrono>

#include "cli/frame_view.h"

namespace varnoth::cli {

/// Prints all frames, each under its number, reduced to the width of the terminal.
void print_frames(const FrameView& view);

/// Plays the frames in place, reduced to the size of the terminal, until the process is interrupted (Ctrl+C)
/// or told to terminate. The cursor is hidden meanwhile.
void play_frames(const FrameView& view, std::chrono::nanoseconds interval);

} // namespace varnoth::cli
