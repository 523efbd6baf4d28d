// The whole import as one process, for timing: imports all BMP files of a folder into a sprite file as the
// editor does (same pipeline, picture loader, progress and yields), but without windows. With --plain, it
// uses the reference implementation.
#include <cstdio>
#include <exception>
#include <span>
#include <string_view>

#include "platform.h"
#include "reference/Import.h"
#include "whole_folder.h"

namespace {

void import_with_reference(const std::string& folder) {
    varnoth::hlspr::new_sprite(256, 256, 2, 1);
    varnoth::bench::WholeFolder form(folder);
    varnoth::bench::SilentView view;
    varnoth::reference::Mixpals mixing;
    varnoth::reference::import_frames(form, view, mixing);
}

} // namespace

int main(int argc, char** argv) {
    const varnoth::bench::Platform platform(argc, argv);
    std::span<char*> arguments(argv + 1, static_cast<std::size_t>(argc - 1));
    const bool plain = !arguments.empty() && std::string_view(arguments[0]) == "--plain";
    if (plain) {
        arguments = arguments.subspan(1);
    }
    if (arguments.size() != 2) {
        std::fprintf(stderr, "usage: import_job [--plain] FOLDER OUT.spr\n");
        return 64;
    }
    try {
        if (plain) {
            import_with_reference(arguments[0]);
        } else {
            varnoth::bench::import_folder(arguments[0]);
        }
        return varnoth::hlspr::save_sprite(arguments[1]) == varnoth::True ? 0 : 1;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 70;
    }
}
