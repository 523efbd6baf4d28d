// Fault injection for the probes and readers of picture files.
#include <cerrno>

#include "core/codecs/BmpMod.h"
#include "core/codecs/JpgMod.h"
#include "fault_injection/Operation.h"
#include "fault_injection/made_files.h"
#include "support/PictureFolder.h"
#include "support/readers.h"

namespace varnoth::test {
namespace {

// Decodes a file and draws the picture. Answers whether there is one: if the picture cannot be allocated,
// there is none, without a failure, and drawing does nothing.
template <typename Reader>
class Reading : public Job {
  public:
    explicit Reading(MadeFile file) : file_(std::move(file)), path_(folder_.write(file_.name, file_.bytes)) {}

    void prepare() override {
        put_old_picture();
        target_ = std::make_unique<TestSurface>(1, 1);
    }

    bool run() override {
        Reader reader;
        reader.Load(path_);
        draw(reader, *target_);
        return CBitmap::CurrentBitmap != nullptr;
    }

    FileBytes result() override {
        FileBytes bytes = decoded_bytes();
        bytes.insert(bytes.end(), target_->bitmap().bytes().begin(), target_->bitmap().bytes().end());
        return bytes;
    }

    void expect_kept() override { EXPECT_EQ(read_file(path_), file_.bytes); }

    // A failure may leave the surface in other units; since it is fatal, that does not matter.
    void before_second_run() override { prepare(); }

  private:
    TemporaryFolder folder_;
    MadeFile file_;
    std::string path_;
    std::unique_ptr<TestSurface> target_;
};

// Calls a probe; its result is the answer and the sizes.
class Probing : public Job {
  public:
    using Probe = std::function<Truth(const std::string& path, std::int32_t& width, std::int32_t& height)>;

    Probing(FileBytes bytes, Probe probe) : bytes_(std::move(bytes)), probe_(std::move(probe)) {}

    void prepare() override { width_ = height_ = 0; }

    bool run() override { return probe_(path_, width_, height_) == True; }

    FileBytes result() override {
        return {static_cast<std::uint8_t>(width_), static_cast<std::uint8_t>(height_)};
    }

    void expect_kept() override { EXPECT_EQ(read_file(path_), bytes_); }

  private:
    TemporaryFolder folder_;
    FileBytes bytes_;
    Probe probe_;
    std::string path_ = folder_.write("a picture of a name that needs memory.any", bytes_);
    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
};

class ReaderFaults : public testing::Test {
  protected:
    // Reads every layout of a format. Not every layout makes every call, but at least one must.
    template <typename Reader>
    void read_all(const std::vector<MadeFile>& files, const Fault& fault,
                  const std::function<void(const Outcome&)>& judge) {
        int met = 0;
        for (const MadeFile& file : files) {
            SCOPED_TRACE(file.name);
            Reading<Reader> job(file);
            for (const Repeat repeat : {Repeat::Once, Repeat::Always}) {
                Fault next = fault;
                next.repeat = repeat;
                met += fail_each_call(job, services_, next, judge);
            }
        }
        EXPECT_GT(met, 0);
        record_faults(met);
    }

    void read_all_of_both(Call call, int error, const Outcome& expected) {
        read_all<LoadPCX>(all_made_pcx(), {.call = call, .error = error}, always(expected));
        read_all<LoadTGA>(all_made_tga(), {.call = call, .error = error}, always(expected));
    }

    int probe_with(Probing&& job, Call call, int error, const Outcome& expected) {
        return fail_once_and_always(job, services_, {.call = call, .error = error}, always(expected));
    }

    static Probing bmp() {
        return {bmp_header(5, 4, 24), [](const std::string& path, std::int32_t& width, std::int32_t& height) {
                    std::int16_t depth = 0;
                    std::int16_t compression = 0;
                    return BmpMod::ProbeBmp(path, width, height, depth, compression);
                }};
    }

    // The frame header is beyond what the probe reads first.
    static Probing jpeg() {
        FileBytes bytes{0xFF, 0xD8, 0xFF, 0xE0, 0x20, 0x00, 'J', 'F', 'I', 'F'};
        bytes.resize(4 + 0x2000);
        bytes.insert(bytes.end(), {0xFF, 0xC0, 0, 17, 8, 0, 4, 0, 5, 3});
        return {bytes, [](const std::string& path, std::int32_t& width, std::int32_t& height) {
                    return JpgMod::ProbeJpeg(path, width, height);
                }};
    }

    template <typename Reader>
    static Probing reader(const MadeFile& file) {
        return {file.bytes, [](const std::string& path, std::int32_t& width, std::int32_t& height) {
                    const Info info = probe(Reader(), path);
                    width = info.width;
                    height = info.height;
                    return info.answer;
                }};
    }

    static Probing pcx() { return reader<LoadPCX>(made_pcx(8, 3, false)); }

    static Probing tga() { return reader<LoadTGA>(made_tga(24, false)); }

    FaultFreeServices services_;
};

TEST_F(ReaderFaults, AllocationFailureFailsOrLeavesNoPicture) {
    OneOf pcx({ended(Failure::OutOfMemory), answered(false)});
    read_all<LoadPCX>(all_made_pcx(), {.call = Call::Allocation}, std::ref(pcx));
    OneOf tga({ended(Failure::OutOfMemory), answered(false)});
    read_all<LoadTGA>(all_made_tga(), {.call = Call::Allocation}, std::ref(tga));
}

TEST_F(ReaderFaults, OpenErrorPropagates) {
    read_all_of_both(Call::Open, EACCES, ended(Failure::PermissionDenied));
    read_all_of_both(Call::Open, ENOENT, ended(Failure::FileNotFound));
    read_all_of_both(Call::Open, EMFILE, ended(Failure::DeviceIo));
    read_all_of_both(Call::Open, ENOMEM, ended(Failure::OutOfMemory));
}

TEST_F(ReaderFaults, ReadErrorPropagates) {
    read_all_of_both(Call::Read, EIO, ended(Failure::DeviceIo));
}

TEST_F(ReaderFaults, SeekAndTellErrorsPropagate) {
    read_all_of_both(Call::Seek, EIO, ended(Failure::DeviceIo));
    read_all_of_both(Call::Tell, EIO, ended(Failure::DeviceIo));
}

TEST_F(ReaderFaults, CloseErrorAndUnknownStatusAreIgnored) {
    read_all_of_both(Call::Close, EIO, answered(true));
    read_all_of_both(Call::Status, EACCES, answered(true));
}

TEST_F(ReaderFaults, PcxAndTgaProbesReturnFalseOnAnyFailure) {
    for (const Call call : {Call::Allocation, Call::Open, Call::Read, Call::Seek, Call::Tell}) {
        SCOPED_TRACE(static_cast<int>(call));
        probe_with(pcx(), call, EIO, answered(false));
        probe_with(tga(), call, EIO, answered(false));
    }
}

TEST_F(ReaderFaults, BmpAndJpegProbesPropagateFailures) {
    probe_with(bmp(), Call::Allocation, 0, ended(Failure::OutOfMemory));
    probe_with(jpeg(), Call::Allocation, 0, ended(Failure::OutOfMemory));
    probe_with(bmp(), Call::Open, EACCES, ended(Failure::PermissionDenied));
    probe_with(jpeg(), Call::Open, EACCES, ended(Failure::PermissionDenied));
    for (const Call call : {Call::Read, Call::Seek, Call::Tell}) {
        SCOPED_TRACE(static_cast<int>(call));
        probe_with(bmp(), call, EIO, ended(Failure::DeviceIo));
        probe_with(jpeg(), call, EIO, ended(Failure::DeviceIo));
    }
}

TEST_F(ReaderFaults, ProbesIgnoreCloseErrors) {
    probe_with(bmp(), Call::Close, EIO, answered(true));
    probe_with(jpeg(), Call::Close, EIO, answered(true));
    probe_with(pcx(), Call::Close, EIO, answered(true));
    probe_with(tga(), Call::Close, EIO, answered(true));
}

} // namespace
} // namespace varnoth::test
