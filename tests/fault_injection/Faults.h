// Fault injection: the linker redirects the core's calls of the C library to this file (see
// tests/CMakeLists.txt), where a test can make them fail.
#pragma once

#include <cstdint>
#include <functional>

namespace varnoth::test {

enum class Call {
    Allocation, ///< operator new, and everything in Array
    Array,      ///< malloc, calloc and realloc, which allocate the program's byte arrays
    Open,
    Read,
    Write,
    Seek,
    Tell,
    Close,
    Remove,
    Status, ///< type and permissions of a path
    OpenFolder,
    ReadFolder,
};

enum class Repeat {
    Once,  ///< only this call fails
    Always ///< this call and all later ones fail
};

struct Fault {
    Call call = Call::Allocation;
    int number = 1; ///< which call fails, counted from 1
    Repeat repeat = Repeat::Once;
    int error = 0; ///< the value of errno after the call

    /// If set, runs before the call, which then succeeds instead of failing.
    std::function<void()> instead = nullptr;
};

/// Injects a fault into the current thread for this object's lifetime. Only one may exist at a time.
class FaultInjection {
  public:
    explicit FaultInjection(const Fault& fault);
    ~FaultInjection();

    FaultInjection(const FaultInjection&) = delete;
    FaultInjection& operator=(const FaultInjection&) = delete;

    /// Whether the program made the call that fails.
    bool hit() const;
};

/// Suspends the fault for this object's lifetime, for calls that the test itself makes.
class FaultsSuspended {
  public:
    FaultsSuspended();
    ~FaultsSuspended();

    FaultsSuspended(const FaultsSuspended&) = delete;
    FaultsSuspended& operator=(const FaultsSuspended&) = delete;
};

/// The number of files and folders that are open.
int open_streams();

/// Fills the stack below the caller and, for this object's lifetime, all newly allocated memory with one
/// byte.
class Poison {
  public:
    explicit Poison(std::uint8_t byte);
    ~Poison();

    Poison(const Poison&) = delete;
    Poison& operator=(const Poison&) = delete;
};

} // namespace varnoth::test
