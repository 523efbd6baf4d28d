// The platform services that the benchmarks of the import run on: the program's own where it is built with
// Qt, otherwise a loader that copies 24-bit BMP files and a yield that only looks at the clock.
#pragma once

#include <memory>

namespace varnoth::bench {

class Platform {
  public:
    /// Installs the services for its own lifetime. Needs no display.
    Platform(int& argc, char** argv);
    ~Platform();

    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;

    /// What decodes the pictures, in words.
    static const char* name();

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace varnoth::bench
