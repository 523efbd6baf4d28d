#include "platform.h"

#include <chrono>
#include <limits>

#include "core/base/files.h"
#include "core/codecs/read_bmp.h"
#include "core/image/Picture.h"
#include "core/services/Services.h"

namespace varnoth::bench {

namespace {

class ClockedQueue : public EventQueue {
  public:
    void yield() override { last_ = std::chrono::steady_clock::now(); }

  private:
    std::chrono::steady_clock::time_point last_;
};

class BmpLoader : public PictureLoader {
  public:
    Picture load(const std::string& path) override {
        InputFile file(path);
        ByteArray bytes(static_cast<std::size_t>(file.length()));
        file.read(bytes.bytes());
        return make_picture(read_bmp(bytes.bytes(), std::numeric_limits<std::int32_t>::max()));
    }
};

} // namespace

struct Platform::Parts {
    ClockedQueue queue;
    BmpLoader loader;
    ServicesInstallation installation{{nullptr, &queue, &loader}};
};

Platform::Platform(int& /*argc*/, char** /*argv*/) : parts_(std::make_unique<Parts>()) {}

Platform::~Platform() = default;

const char* Platform::name() {
    return "BMP files alone";
}

} // namespace varnoth::bench
