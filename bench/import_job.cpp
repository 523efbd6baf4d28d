// The whole import as one job for a stopwatch: all BMP files of a folder become a sprite file, as the editor
// imports them (its pipeline, picture loader, progress and yields), but without windows.
#include <cstdio>
#include <exception>

#include "platform.h"
#include "whole_folder.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: import_job FOLDER OUT.spr\n");
        return 64;
    }
    const varnoth::bench::Platform platform(argc, argv);
    try {
        varnoth::bench::import_folder(argv[1]);
        return varnoth::hlspr::save_sprite(argv[2]) == varnoth::True ? 0 : 1;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 70;
    }
}
