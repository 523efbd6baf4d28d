// A place in the source code, as std::source_location, which Clang has had with the GNU library only since
// version 16. One type for all compilers, so that their object files can be linked with each other.
#pragma once

namespace varnoth {

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

  private:
    constexpr SourceLocation(const char* file, const char* function, unsigned line)
        : file_(file), function_(function), line_(line) {}

    const char* file_;
    const char* function_;
    unsigned line_;
};

} // namespace varnoth
