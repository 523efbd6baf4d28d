#include "platform.h"

#include <chrono>
#include <cstring>

#include "base/bytes.h"
#include "base/files.h"
#include "platform/Bitmap.h"
#include "platform/Services.h"

namespace varnoth::bench {

namespace {

constexpr std::size_t head_size = 54;

class ClockedQueue : public EventQueue {
  public:
    void yield() override { last_ = std::chrono::steady_clock::now(); }

  private:
    std::chrono::steady_clock::time_point last_;
};

// Loads only complete 24-bit BMP files with a width divisible by 4, bottom row first.
class CopyingLoader : public PictureLoader {
  public:
    Picture load(const std::string& path) override {
        InputFile file(path);
        ByteArray bytes(static_cast<std::size_t>(file.length()));
        file.read(bytes.bytes());
        const std::int32_t width = get_i32(bytes.bytes(), 18);
        const std::int32_t height = get_i32(bytes.bytes(), 22);
        Bitmap bitmap(width, height, 32, Bitmap::Rows::Surface);
        const std::uint8_t* from = bytes.data() + head_size;
        for (std::int32_t y = height - 1; y >= 0; --y) {
            std::uint8_t* to = bitmap.row(y);
            for (std::int32_t x = 0; x < width; ++x) {
                std::memcpy(to, from, 3);
                from += 3;
                to += 4;
            }
        }
        return make_picture(std::move(bitmap));
    }
};

} // namespace

struct Platform::Parts {
    ClockedQueue queue;
    CopyingLoader loader;
    ServicesInstallation installation{{nullptr, &queue, &loader}};
};

Platform::Platform(int& /*argc*/, char** /*argv*/) : parts_(std::make_unique<Parts>()) {}

Platform::~Platform() = default;

const char* Platform::name() {
    return "a copy of the file's pixels";
}

} // namespace varnoth::bench
