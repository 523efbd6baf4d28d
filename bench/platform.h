// The platform services for the benchmarks of the import: the program's own in a build with Qt, otherwise a
// loader of BMP files and a yield that only reads the clock.
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

    /// Describes what decodes the pictures.
    static const char* name();

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace varnoth::bench
