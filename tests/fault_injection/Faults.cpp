#include "fault_injection/Faults.h"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <optional>

#include <dirent.h>
#include <sys/stat.h>

namespace varnoth::test {

namespace {

// Faults affect only the thread of the test. Nothing here may allocate.
thread_local const Fault* present = nullptr;
thread_local int calls = 0;
thread_local bool met = false;
thread_local int suspensions = 0;
thread_local std::FILE* broken_stream = nullptr;
int streams = 0;
bool poisoned = false;
std::uint8_t poison = 0;

bool concerns(Call call) {
    return call == present->call || (call == Call::Array && present->call == Call::Allocation);
}

bool fails(Call call) {
    if (present == nullptr || suspensions > 0 || !concerns(call)) {
        return false;
    }
    ++calls;
    if (present->repeat == Repeat::Once ? calls != present->number : calls < present->number) {
        return false;
    }
    met = true;
    if (present->instead) {
        const FaultsSuspended meanwhile;
        present->instead();
        return false;
    }
    errno = present->error;
    return true;
}

void* poisoned_memory(void* memory, std::size_t size) {
    if (poisoned && memory != nullptr) {
        std::memset(memory, poison, size);
    }
    return memory;
}

[[gnu::noinline]] void fill_stack(std::uint8_t byte) {
    volatile std::uint8_t space[256 * 1024]; // not std::array: its elements cannot be volatile
    for (volatile std::uint8_t& place : space) {
        place = byte;
    }
}

} // namespace

FaultInjection::FaultInjection(const Fault& fault) {
    calls = 0;
    met = false;
    broken_stream = nullptr;
    present = new Fault(fault);
}

FaultInjection::~FaultInjection() {
    delete present;
    present = nullptr;
}

bool FaultInjection::hit() const {
    return met;
}

FaultsSuspended::FaultsSuspended() {
    ++suspensions;
}

FaultsSuspended::~FaultsSuspended() {
    --suspensions;
}

int open_streams() {
    return streams;
}

Poison::Poison(std::uint8_t byte) {
    fill_stack(byte);
    poison = byte;
    poisoned = true;
}

Poison::~Poison() {
    poisoned = false;
}

} // namespace varnoth::test

// The wrapped calls. The linker defines the names: the program's calls of X arrive at __wrap_X, and __real_X
// is the library's own function.

using varnoth::test::broken_stream;
using varnoth::test::Call;
using varnoth::test::fails;
using varnoth::test::poisoned_memory;
using varnoth::test::streams;

extern "C" {

void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* memory, std::size_t size);
std::FILE* __real_fopen64(const char* path, const char* mode);
std::size_t __real_fread(void* target, std::size_t size, std::size_t count, std::FILE* file);
std::size_t __real_fwrite(const void* source, std::size_t size, std::size_t count, std::FILE* file);
int __real_fseeko64(std::FILE* file, off_t offset, int origin);
off_t __real_ftello64(std::FILE* file);
int __real_ferror(std::FILE* file);
int __real_fclose(std::FILE* file);
DIR* __real_opendir(const char* path);
dirent* __real_readdir64(DIR* folder);
int __real_closedir(DIR* folder);
int __real_stat64(const char* path, struct stat* status);
int __real_remove(const char* path);

void* __wrap_malloc(std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);
void* __wrap_realloc(void* memory, std::size_t size);
std::FILE* __wrap_fopen64(const char* path, const char* mode);
std::size_t __wrap_fread(void* target, std::size_t size, std::size_t count, std::FILE* file);
std::size_t __wrap_fwrite(const void* source, std::size_t size, std::size_t count, std::FILE* file);
int __wrap_fseeko64(std::FILE* file, off_t offset, int origin);
off_t __wrap_ftello64(std::FILE* file);
int __wrap_ferror(std::FILE* file);
int __wrap_fclose(std::FILE* file);
DIR* __wrap_opendir(const char* path);
dirent* __wrap_readdir64(DIR* folder);
int __wrap_closedir(DIR* folder);
int __wrap_stat64(const char* path, struct stat* status);
int __wrap_remove(const char* path);

void* __wrap_malloc(std::size_t size) {
    return fails(Call::Array) ? nullptr : poisoned_memory(__real_malloc(size), size);
}

void* __wrap_calloc(std::size_t count, std::size_t size) {
    return fails(Call::Array) ? nullptr : __real_calloc(count, size);
}

void* __wrap_realloc(void* memory, std::size_t size) {
    return fails(Call::Array) ? nullptr : __real_realloc(memory, size);
}

std::FILE* __wrap_fopen64(const char* path, const char* mode) {
    if (fails(Call::Open)) {
        return nullptr;
    }
    std::FILE* const file = __real_fopen64(path, mode);
    streams += file == nullptr ? 0 : 1;
    return file;
}

// Transfers half of what was requested.
std::size_t __wrap_fread(void* target, std::size_t size, std::size_t count, std::FILE* file) {
    if (fails(Call::Read)) {
        const int error = errno;
        const std::size_t half = __real_fread(target, size, count / 2, file);
        broken_stream = file;
        errno = error;
        return half;
    }
    return __real_fread(target, size, count, file);
}

std::size_t __wrap_fwrite(const void* source, std::size_t size, std::size_t count, std::FILE* file) {
    if (fails(Call::Write)) {
        const int error = errno;
        const std::size_t half = __real_fwrite(source, size, count / 2, file);
        errno = error;
        return half;
    }
    return __real_fwrite(source, size, count, file);
}

int __wrap_fseeko64(std::FILE* file, off_t offset, int origin) {
    return fails(Call::Seek) ? -1 : __real_fseeko64(file, offset, origin);
}

off_t __wrap_ftello64(std::FILE* file) {
    return fails(Call::Tell) ? -1 : __real_ftello64(file);
}

int __wrap_ferror(std::FILE* file) {
    return file == broken_stream ? 1 : __real_ferror(file);
}

// The stream is closed even if fclose reports an error.
int __wrap_fclose(std::FILE* file) {
    const bool failing = fails(Call::Close);
    const int error = errno;
    --streams;
    broken_stream = file == broken_stream ? nullptr : broken_stream;
    const int result = __real_fclose(file);
    if (failing) {
        errno = error;
        return EOF;
    }
    return result;
}

DIR* __wrap_opendir(const char* path) {
    if (fails(Call::OpenFolder)) {
        return nullptr;
    }
    DIR* const folder = __real_opendir(path);
    streams += folder == nullptr ? 0 : 1;
    return folder;
}

dirent* __wrap_readdir64(DIR* folder) {
    return fails(Call::ReadFolder) ? nullptr : __real_readdir64(folder);
}

int __wrap_closedir(DIR* folder) {
    --streams;
    return __real_closedir(folder);
}

int __wrap_stat64(const char* path, struct stat* status) {
    return fails(Call::Status) ? -1 : __real_stat64(path, status);
}

int __wrap_remove(const char* path) {
    return fails(Call::Remove) ? -1 : __real_remove(path);
}

} // extern "C"

// Replaces all operators for memory of default alignment.

void* operator new(std::size_t size) {
    void* const memory = fails(Call::Allocation) ? nullptr : __real_malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return poisoned_memory(memory, size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return fails(Call::Allocation) ? nullptr : poisoned_memory(__real_malloc(size == 0 ? 1 : size), size);
}

void* operator new[](std::size_t size) {
    return operator new(size);
}

void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
    return operator new(size, tag);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

void operator delete[](void* memory) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
