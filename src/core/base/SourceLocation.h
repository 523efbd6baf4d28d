// A place in the source code: std::source_location, or a replacement where the library does not have it.
#pragma once

#include <source_location>

namespace varnoth {

#ifdef __cpp_lib_source_location

using SourceLocation = std::source_location;

#else

// Clang has had std::source_location with the GNU library only since version 16.
class SourceLocation {
  public:
    static constexpr SourceLocation current(const char* file = __builtin_FILE(),
                                            const char* function = __builtin_FUNCTION(),
                                            unsigned line = __builtin_LINE()) {
        return SourceLocation(file, function, line);
    }

    constexpr const char* file_name() const { return file_; }

    constexpr const char* function_name() const { return function_; }

    constexpr unsigned line() const { return line_; }

    constexpr SourceLocation() = default;

  private:
    constexpr SourceLocation(const char* file, const char* function, unsigned line)
        : file_(file), function_(function), line_(line) {}

    const char* file_ = "";
    const char* function_ = "";
    unsigned line_ = 0;
};

#endif

} // namespace varnoth
