// Faults below the program: the calls that its core makes of the C library and of the standard library pass
// through here (the linker wraps them, see tests/CMakeLists.txt) and fail when a test says so.
#pragma once

#include <cstdint>
#include <functional>

namespace varnoth::test {

enum class Call {
    Allocation, ///< operator new and all of Array
    Array,      ///< malloc, calloc and realloc, which the program's own arrays of bytes come from
    Open,
    Read,
    Write,
    Seek,
    Tell,
    Close,
    Remove,
    Status, ///< whether there is a file or a folder of a name, and its permissions
    OpenFolder,
    ReadFolder,
};

enum class Manner { Once, ForEver };

struct Fault {
    Call call = Call::Allocation;
    int number = 1; ///< of the call that fails, the first being 1
    Manner manner = Manner::Once;
    int error = 0; ///< what the call leaves in errno

    /// Runs in front of the call, which then goes through instead of failing.
    std::function<void()> instead = nullptr;
};

/// The fault is there for this object's lifetime, for the thread that made it. There is one at a time.
class FaultInjection {
  public:
    explicit FaultInjection(const Fault& fault);
    ~FaultInjection();

    FaultInjection(const FaultInjection&) = delete;
    FaultInjection& operator=(const FaultInjection&) = delete;

    /// Whether the call was reached.
    bool hit() const;
};

/// While one lives, a gathered write takes at most so many bytes, as the system may do it.
class ShortWrites {
  public:
    explicit ShortWrites(std::size_t most);
    ~ShortWrites();

    ShortWrites(const ShortWrites&) = delete;
    ShortWrites& operator=(const ShortWrites&) = delete;
};

/// While one lives, files opened for writing have no descriptor, as streams of a program's own making.
class NoDescriptors {
  public:
    NoDescriptors();
    ~NoDescriptors();

    NoDescriptors(const NoDescriptors&) = delete;
    NoDescriptors& operator=(const NoDescriptors&) = delete;
};

/// What a test does by itself while a fault is there does not meet it.
class FaultsSuspended {
  public:
    FaultsSuspended();
    ~FaultsSuspended();

    FaultsSuspended(const FaultsSuspended&) = delete;
    FaultsSuspended& operator=(const FaultsSuspended&) = delete;
};

/// Files and folders that have been opened and not yet closed.
int open_streams();

/// Memory that is handed out, and the stack below the caller, are full of one byte for this object's
/// lifetime.
class Poison {
  public:
    explicit Poison(std::uint8_t byte);
    ~Poison();

    Poison(const Poison&) = delete;
    Poison& operator=(const Poison&) = delete;
};

} // namespace varnoth::test
