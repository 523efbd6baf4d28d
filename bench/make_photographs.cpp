// Fills a folder with generated photographs, as 24-bit BMP files of 256 by 256 pixels.
#include <cstdio>
#include <cstdlib>

#include "photographs.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: make_photographs FOLDER COUNT\n");
        return 64;
    }
    varnoth::bench::write_photographs(argv[1], std::strtoul(argv[2], nullptr, 10));
}
