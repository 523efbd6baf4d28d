// Fault injection for the picture loader: failing calls, files that change while they are read, poisoned
// memory. Only the program's own arrays fail to allocate: Qt aborts the program if its own allocations fail.
#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>

#include <malloc.h>

#include "fault_injection/Operation.h"
#include "qt/QtPictureLoader.h"
#include "support/expect_failure.h"

namespace varnoth::test {
namespace {

class Loading : public Job {
  public:
    explicit Loading(const std::string& extension)
        : bytes_(read_file(std::string(VARNOTH_SOURCE_DIR) + "/samples/explosion_3" + extension)),
          path_(folder_.write("picture" + extension, bytes_)) {}

    void prepare() override { picture_ = {}; }

    bool run() override {
        picture_ = {};
        picture_ = QtPictureLoader().load(path_);
        return !picture_.empty();
    }

    FileBytes result() override {
        if (!picture_.bitmap) {
            return {};
        }
        return {picture_.bitmap->bytes().begin(), picture_.bitmap->bytes().end()};
    }

    void expect_kept() override { EXPECT_EQ(read_file(path_), bytes_); }

    const FileBytes& bytes() const { return bytes_; }

    const std::string& path() const { return path_; }

  private:
    TemporaryFolder folder_;
    FileBytes bytes_;
    std::string path_;
    Picture picture_;
};

class LoaderFaults : public testing::TestWithParam<std::string> {
  protected:
    void load_with(Call call, int error, const Outcome& expected) {
        fail_once_and_always(job_, services_, {.call = call, .error = error}, always(expected));
    }

    FaultFreeServices services_;
    Loading job_{GetParam()};
};

TEST_P(LoaderFaults, AllocationFailureIsOutOfMemory) {
    load_with(Call::Array, 0, ended(Failure::OutOfMemory));
}

TEST_P(LoaderFaults, OpenAndReadErrorsPropagate) {
    load_with(Call::Open, ENOENT, ended(Failure::FileNotFound));
    load_with(Call::Open, EACCES, ended(Failure::PermissionDenied));
    load_with(Call::Read, EIO, ended(Failure::DeviceIo));
    load_with(Call::Seek, EIO, ended(Failure::DeviceIo));
    load_with(Call::Tell, EIO, ended(Failure::DeviceIo));
}

TEST_P(LoaderFaults, CloseErrorIsIgnored) {
    load_with(Call::Close, EIO, answered(true));
}

// Data that was already buffered is unaffected; a file that grows is read up to its original length.
TEST_P(LoaderFaults, ShrinkingFileIsIncompleteGrowingFileUnchanged) {
    job_.prepare();
    ASSERT_TRUE(job_.run());
    const FileBytes whole = job_.result();
    const auto size = job_.bytes().size();
    for (const std::size_t length :
         {std::size_t{0}, std::size_t{1}, std::size_t{40}, size / 2, size + 5000}) {
        for (int number = 1; number <= 2; ++number) {
            SCOPED_TRACE(std::to_string(length) + " at read " + std::to_string(number));
            std::filesystem::resize_file(job_.path(), 0);
            std::ofstream(job_.path(), std::ios::binary)
                .write(reinterpret_cast<const char*>(job_.bytes().data()),
                       static_cast<std::streamsize>(size));
            const FaultInjection injection({.call = Call::Read, .number = number, .instead = [&] {
                                                std::filesystem::resize_file(job_.path(), length);
                                            }});
            const std::optional<Failure> failure = failure_in([&] { job_.run(); });
            if (failure) {
                EXPECT_LT(length, size);
                EXPECT_EQ(*failure, Failure::InvalidPicture);
            } else {
                EXPECT_EQ(job_.result().size(), whole.size());
                EXPECT_TRUE(length < size || job_.result() == whole);
            }
            EXPECT_TRUE(injection.hit());
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, LoaderFaults, testing::Values(".bmp", ".jpg"),
                         [](const auto& instance) { return instance.param.substr(1); });

// Qt allocates with malloc inside its own libraries. glibc can fill that memory (mallopt), the address
// sanitizer cannot; there, only the program's own memory differs between the two runs.
FileBytes loaded_over(std::uint8_t byte, const std::string& path) {
    mallopt(M_PERTURB, byte);
    FileBytes result;
    {
        const Poison poison(byte);
        const std::optional<Failure> failure = failure_in([&] {
            const Picture picture = QtPictureLoader().load(path);
            result.assign(picture.bitmap->bytes().begin(), picture.bitmap->bytes().end());
        });
        result.push_back(failure ? static_cast<std::uint8_t>(*failure) : 0xFF);
    }
    mallopt(M_PERTURB, 0);
    return result;
}

// Complete files, and truncated at many lengths.
TEST(LoaderOverPoison, ResultsDoNotDependOnUninitialisedMemory) {
    const TemporaryFolder folder;
    int files = 0;
    for (const std::string name : {"samples/explosion_0.bmp", "samples/explosion_7.jpg"}) {
        const FileBytes whole = read_file(std::string(VARNOTH_SOURCE_DIR) + "/" + name);
        for (std::size_t length = whole.size(); length > 0; length = length * 2 / 3) {
            const std::string path = folder.write("file", std::span(whole).first(length));
            EXPECT_TRUE(loaded_over(0xA5, path) == loaded_over(0x5A, path))
                << name << " truncated to " << length;
            ++files;
        }
    }
    for (const std::string corpus : {"read_bmp", "load_picture", "probe_bmp", "probe_jpeg"}) {
        for (const auto& entry : std::filesystem::directory_iterator(std::string(VARNOTH_SOURCE_DIR) +
                                                                     "/fuzz/corpus/" + corpus)) {
            EXPECT_TRUE(loaded_over(0xA5, entry.path().string()) == loaded_over(0x5A, entry.path().string()))
                << entry.path();
            ++files;
        }
    }
    RecordProperty("files", files);
}

} // namespace
} // namespace varnoth::test
