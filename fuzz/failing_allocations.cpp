// Runs a fuzz target with allocations that fail at random, by a sequence of the input's own, and then once
// more with all of them granted. A failed allocation may only show as what the program knows as running out
// of memory, and what it leaves behind must do for the next file.
#include <cstdlib>
#include <new>
#include <stdexcept>

#include "fuzzing.h"

// The linker lets these names stand for the target and for the library's calls of calloc.
extern "C" int __real_LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" int __wrap_LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" void* __real_calloc(std::size_t count, std::size_t size);
extern "C" void* __wrap_calloc(std::size_t count, std::size_t size);

namespace {

using namespace varnoth;

// Decides which allocations fail: after the first granted ones each with the same chance, once or for ever.
class Sequence {
  public:
    void start(std::uint32_t seed) {
        state_ = seed;
        granted_ = next() % 64;
        one_in_ = std::uint32_t{1} << (next() % 8);
        is_for_ever_ = next() % 4 == 0;
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
        const bool fails = (is_for_ever_ && fuzzing::memory_ran_out) || next() % one_in_ == 0;
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
    bool is_for_ever_ = false;
    bool is_on_ = false;
};

// Of the fuzzing thread only: the fuzzer's watchman allocates too.
thread_local Sequence sequence;

void run_short_of_memory(const std::uint8_t* data, std::size_t size) {
    const fuzzing::AtEnd enough([] {
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
    fuzzing::scratch_folder(); // is there before memory is short
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
