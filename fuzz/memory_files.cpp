// The interface of base/files.h over files in memory, so that a fuzz target is not held up by a file system.
// It is linked in place of the library's own; every name there must be defined here. A path is a name and
// nothing more: there are no folders, and no file is read-only.
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <map>
#include <new>

#include <sys/types.h>

#include "base/RunTimeFailure.h"
#include "base/files.h"

namespace varnoth {

namespace {

using Bytes = std::vector<std::uint8_t>;

std::map<std::string, Bytes, std::less<>>& files() {
    static std::map<std::string, Bytes, std::less<>> the_files;
    return the_files;
}

// What a stream knows of its file. It reads and writes through a buffer, as without one it would go byte by
// byte.
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
        errno = ENOMEM; // no exception may go through the C library
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
    if (file == nullptr) {
        fail(Failure::OutOfMemory);
    }
    std::setvbuf(file, cursor->buffer.data(), _IOFBF, cursor->buffer.size());
    static_cast<void>(cursor.release()); // the stream's from here on
    return file;
}

Bytes& existing(const std::string& path) {
    const auto found = files().find(path);
    if (found == files().end()) {
        fail(Failure::FileNotFound);
    }
    return found->second;
}

Bytes& emptied(const std::string& path) {
    Bytes& bytes = files()[path];
    bytes.clear();
    return bytes;
}

} // namespace

std::filesystem::path native_path(const std::string& path) {
    return path;
}

std::string join_path(const std::string& folder, const std::string& name) {
    return folder + "/" + name;
}

bool file_exists(const std::string& path) {
    return files().contains(path);
}

bool folder_exists(const std::string& /*path*/) {
    return false;
}

bool is_read_only(const std::string& /*path*/) {
    return false;
}

void delete_file(const std::string& path) {
    existing(path);
    files().erase(path);
}

InputFile::InputFile(const std::string& path) {
    Bytes& bytes = existing(path);
    file_.reset(open_stream(bytes, "rb"));
    length_ = std::ssize(bytes);
}

std::int64_t InputFile::remaining() const {
    return length_ - std::ftell(file_.get());
}

void InputFile::seek(std::int64_t position) {
    if (std::fseek(file_.get(), static_cast<long>(position), SEEK_SET) != 0) {
        fail(Failure::DeviceIo);
    }
}

std::size_t InputFile::read(std::span<std::uint8_t> target) {
    return std::fread(target.data(), 1, target.size(), file_.get());
}

OutputFile::OutputFile(const std::string& path) : file_(open_stream(emptied(path), "wb")) {}

void OutputFile::write(std::span<const std::uint8_t> bytes) {
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size()) {
        fail(Failure::OutOfMemory);
    }
}

OutputFile::~OutputFile() = default;

// Nothing is gained by waiting here.
void OutputFile::write_later(std::span<const std::uint8_t> bytes) {
    write(bytes);
}

void OutputFile::close() {
    if (std::fclose(file_.release()) != 0) {
        fail(Failure::OutOfMemory);
    }
}

std::vector<std::uint8_t> read_head(const std::string& path, std::size_t count) {
    InputFile file(path);
    std::vector<std::uint8_t> bytes(count);
    bytes.resize(file.read(bytes));
    return bytes;
}

} // namespace varnoth
