// In-memory files, so that the file system does not slow down a fuzz target: the linker redirects the
// program's calls of fopen to this file. A file that was written here is read here; any other is opened in
// the file system.
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

extern "C" std::FILE* __real_fopen64(const char* path, const char* mode);
extern "C" std::FILE* __wrap_fopen64(const char* path, const char* mode);

namespace {

using Bytes = std::vector<std::uint8_t>;
using Files = std::map<std::string, Bytes, std::less<>>;

Files& files() {
    static Files the_files;
    return the_files;
}

// The state of a stream. Without a buffer of its own, the stream would read and write byte by byte.
struct Cursor {
    explicit Cursor(Bytes& the_bytes) : bytes(the_bytes) {}

    Bytes& bytes;
    std::size_t at = 0;
    std::array<char, 1024> buffer;
};

Cursor& cursor_of(void* cookie) {
    return *static_cast<Cursor*>(cookie);
}

ssize_t read_bytes(void* cookie, char* target, std::size_t count) {
    Cursor& cursor = cursor_of(cookie);
    const std::size_t present =
        std::min(count, cursor.bytes.size() - std::min(cursor.at, cursor.bytes.size()));
    if (present > 0) {
        std::memcpy(target, cursor.bytes.data() + cursor.at, present);
    }
    cursor.at += present;
    return static_cast<ssize_t>(present);
}

ssize_t append_bytes(void* cookie, const char* source, std::size_t count) {
    try {
        Bytes& bytes = cursor_of(cookie).bytes;
        bytes.insert(bytes.end(), source, source + count);
        return static_cast<ssize_t>(count);
    } catch (const std::bad_alloc&) {
        errno = ENOMEM; // exceptions must not pass through the C library
        return 0;
    }
}

int move_to(void* cookie, off64_t* offset, int origin) {
    Cursor& cursor = cursor_of(cookie);
    const std::size_t from = origin == SEEK_SET ? 0 : origin == SEEK_CUR ? cursor.at : cursor.bytes.size();
    const off64_t position = static_cast<off64_t>(from) + *offset;
    if (position < 0) {
        errno = EINVAL;
        return -1;
    }
    cursor.at = static_cast<std::size_t>(position);
    *offset = position;
    return 0;
}

int release(void* cookie) {
    delete &cursor_of(cookie);
    return 0;
}

std::FILE* open_stream(Bytes& bytes, const char* mode) {
    const cookie_io_functions_t functions{read_bytes, append_bytes, move_to, release};
    auto cursor = std::make_unique<Cursor>(bytes);
    std::FILE* file = fopencookie(cursor.get(), mode, functions);
    if (file != nullptr) {
        std::setvbuf(file, cursor->buffer.data(), _IOFBF, cursor->buffer.size());
        static_cast<void>(cursor.release()); // now owned by the stream
    }
    return file;
}

std::FILE* create(const char* path, const char* mode) {
    Bytes& bytes = files()[path];
    bytes.clear();
    return open_stream(bytes, mode);
}

} // namespace

std::FILE* __wrap_fopen64(const char* path, const char* mode) {
    try {
        if (*mode == 'w') {
            return create(path, mode);
        }
        const auto found = files().find(std::string_view(path));
        return found == files().end() ? __real_fopen64(path, mode) : open_stream(found->second, mode);
    } catch (const std::bad_alloc&) {
        errno = ENOMEM;
        return nullptr;
    }
}
