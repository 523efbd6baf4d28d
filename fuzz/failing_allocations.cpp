// Runs a fuzz target with allocations that fail at random, seeded by the input, and then once more without
// failures. A failed allocation may only lead to the program's out-of-memory errors, and must leave a state
// in which the next file can be processed.
#include <cstdlib>
#include <new>
#include <stdexcept>

#include "fuzzing.h"

// The linker redirects calls of the target and of calloc to these functions.
extern "C" int __real_LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" int __wrap_LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" void* __real_calloc(std::size_t count, std::size_t size);
extern "C" void* __wrap_calloc(std::size_t count, std::size_t size);

namespace {

using namespace varnoth;

// Decides which allocations fail: the first few succeed, then each fails with a fixed probability. After the
// first failure, either all later ones fail or the probability stays the same.
class Sequence {
  public:
    void start(std::uint32_t seed) {
        state_ = seed;
        granted_ = next() % 64;
        one_in_ = std::uint32_t{1} << (next() % 8);
        is_permanent_ = next() % 4 == 0;
        is_on_ = true;
    }

    void stop() { is_on_ = false; }

    bool fails() {
        if (!is_on_) {
            return false;
        }
        if (granted_ > 0) {
            --granted_;
            return false;
        }
        const bool fails = (is_permanent_ && fuzzing::memory_ran_out) || next() % one_in_ == 0;
        fuzzing::memory_ran_out = fuzzing::memory_ran_out || fails;
        return fails;
    }

  private:
    std::uint32_t next() {
        state_ = state_ * 1664525 + 1013904223;
        return state_ >> 16;
    }

    std::uint32_t state_ = 0;
    std::uint32_t granted_ = 0;
    std::uint32_t one_in_ = 1;
    bool is_permanent_ = false;
    bool is_on_ = false;
};

// Affects only the fuzzing thread: libFuzzer's monitoring thread allocates too.
thread_local Sequence sequence;

void run_short_of_memory(const std::uint8_t* data, std::size_t size) {
    const fuzzing::AtEnd restore([] {
        sequence.stop();
        fuzzing::memory_ran_out = false;
    });
    sequence.start(fuzzing::hash_of({data, size}));
    try {
        __real_LLVMFuzzerTestOneInput(data, size);
    } catch (const RunTimeFailure&) {
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) {
    } catch (const fuzzing::OtherOutcome&) {
    }
}

void* allocate(std::size_t size) {
    return sequence.fails() ? nullptr : std::malloc(size == 0 ? 1 : size);
}

} // namespace

int __wrap_LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzzing::scratch_folder(); // create it while memory is available
    run_short_of_memory(data, size);
    return __real_LLVMFuzzerTestOneInput(data, size);
}

void* __wrap_calloc(std::size_t count, std::size_t size) {
    return sequence.fails() ? nullptr : __real_calloc(count, size);
}

void* operator new(std::size_t size) {
    if (void* memory = allocate(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return allocate(size);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

void operator delete(void* memory, const std::nothrow_t& /*tag*/) noexcept {
    std::free(memory);
}
