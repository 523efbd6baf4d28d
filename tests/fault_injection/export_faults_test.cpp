// Fault injection for exporting, drawing and playing frames.
#include <cerrno>
#include <filesystem>

#include "core/jobs/PreviewPlayback.h"
#include "fault_injection/Operation.h"
#include "support/AllFrames.h"
#include "support/dibs.h"
#include "support/pictures.h"
#include "support/sprites.h"

namespace varnoth::test {
namespace {

using hlspr::document;

constexpr std::int16_t frames = 2;

// Two frames of 11 by 7.
void put_sprite() {
    reset_sprite();
    hlspr::new_sprite(11, 7, 2, 0);
    SpriteDocument& sprite = document();
    sprite.SpriteHeader.FrameCount = frames;
    sprite.FrameStore.clear();
    sprite.FrameOrder.clear();
    for (std::int16_t i = 0; i < frames; ++i) {
        Bytes pixels;
        for (int pixel = 0; pixel < 11 * 7; ++pixel) {
            pixels.push_back(static_cast<std::uint8_t>(pixel / (i + 3)));
        }
        sprite.FrameStore.push_back(indices(pixels));
        sprite.FrameOrder.push_back(i);
    }
    for (std::size_t i = 0; i < 256; ++i) {
        sprite.Palette.Colours[i] = {static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(3 * i), 9};
    }
}

// Exports both frames over existing files.
class Extracting : public Job {
  public:
    explicit Extracting(ExtractionFormat format) {
        options_.folder = folder_.path();
        options_.sprite_path = "/somewhere/a sprite of a name that needs memory.spr";
        options_.format = format;
        options_.compressed = true;
        options_.if_file_exists = IfFileExists::Overwrite;
    }

    void prepare() override {
        put_sprite();
        for (std::int16_t i = 0; i < frames; ++i) {
            folder_.write(name_of(i), old_bytes_);
        }
        folder_.write("neighbour", old_bytes_);
        scratch_ = std::make_unique<TestSurface>(1, 1);
    }

    // Returns whether both files were written.
    bool run() override {
        AllFrames view;
        extract_frames(options_, view, *scratch_);
        return view.written == frames;
    }

    FileBytes result() override {
        FileBytes all;
        for (std::int16_t i = 0; i < frames; ++i) {
            new_bytes_[i] = read_file(folder_.file(name_of(i)));
            all.insert(all.end(), new_bytes_[i].begin(), new_bytes_[i].end());
        }
        return all;
    }

    // The file being written is unchanged, gone, or a prefix of the new one; files before it are complete.
    void expect_kept() override {
        EXPECT_EQ(read_file(folder_.file("neighbour")), old_bytes_);
        for (std::int16_t i = 0; i < frames; ++i) {
            const std::string path = folder_.file(name_of(i));
            if (!std::filesystem::exists(path)) {
                ++lost;
                continue;
            }
            const FileBytes bytes = read_file(path);
            if (bytes != old_bytes_) {
                EXPECT_TRUE(is_start_of(bytes, new_bytes_[i]));
                ++(bytes == new_bytes_[i] ? complete : truncated);
            }
        }
    }

    // A failure is fatal, so the intermediate surface need not survive it.
    void before_second_run() override { scratch_ = std::make_unique<TestSurface>(1, 1); }

    int lost = 0;
    int truncated = 0;
    int complete = 0;

  private:
    std::string name_of(std::int16_t number) const {
        return "a sprite of a name that needs memory_" + std::to_string(number) +
               std::string(extension_of(options_.format));
    }

    TemporaryFolder folder_;
    ExtractionOptions options_;
    std::unique_ptr<TestSurface> scratch_;
    const FileBytes old_bytes_ = FileBytes(50, 'o');
    std::map<std::int16_t, FileBytes> new_bytes_;
};

// A few ticks of the preview.
class Playing : public Job {
  public:
    explicit Playing(std::int32_t depth) : depth_(depth) {}

    void prepare() override {
        put_sprite();
        playback_ = {};
        picture_ = std::make_unique<TestSurface>(1, 1, depth_);
    }

    bool run() override {
        for (int i = 0; i < 3; ++i) {
            playback_.tick(*picture_, frames);
        }
        return true;
    }

    FileBytes result() override {
        const auto pixels = picture_->bitmap().bytes();
        FileBytes bytes(pixels.begin(), pixels.end());
        bytes.push_back(static_cast<std::uint8_t>(playback_.CurrentFrame));
        return bytes;
    }

    void before_second_run() override {
        EXPECT_TRUE(run()); // continues from the frame that failed
        prepare();
    }

  private:
    std::int32_t depth_;
    PreviewPlayback playback_;
    std::unique_ptr<TestSurface> picture_;
};

class ExportFaults : public testing::TestWithParam<ExtractionFormat> {
  protected:
    ~ExportFaults() override { reset_sprite(); }

    void export_with(Extracting& job, Call call, int error, std::vector<Outcome> expected) {
        OneOf one_of(std::move(expected));
        fail_once_and_always(job, services_, {.call = call, .error = error}, std::ref(one_of));
    }

    bool is_bmp() const { return GetParam() == ExtractionFormat::Bmp; }

    FaultFreeServices services_;
};

TEST_P(ExportFaults, AllocationFailureEndsExportOrSkipsBmp) {
    Extracting job(GetParam());
    std::vector<Outcome> outcomes{ended(Failure::OutOfMemory)};
    if (is_bmp()) {
        outcomes.push_back(answered(true)); // a failed copy is skipped without a failure
    }
    export_with(job, Call::Allocation, 0, outcomes);
    EXPECT_EQ(job.truncated, 0);
}

TEST_P(ExportFaults, UndeletableOldFileEndsExportExceptBmp) {
    Extracting job(GetParam());
    // The BMP writer overwrites a file that it cannot delete.
    export_with(job, Call::Remove, EACCES, {is_bmp() ? answered(true) : ended(Failure::PermissionDenied)});
    EXPECT_EQ(job.lost + job.truncated, 0);
}

TEST_P(ExportFaults, OpenErrorEndsExportWithOldFileDeleted) {
    Extracting job(GetParam());
    export_with(job, Call::Open, EACCES, {ended(Failure::PermissionDenied)});
    export_with(job, Call::Open, ENOSPC, {ended(Failure::DiskFull)});
    export_with(job, Call::Open, EMFILE, {ended(Failure::DeviceIo)});
    EXPECT_GT(job.lost, 0);
    EXPECT_EQ(job.truncated, 0);
}

TEST_P(ExportFaults, FullDiskEndsExportAndLeavesTruncatedFile) {
    Extracting job(GetParam());
    export_with(job, Call::Write, ENOSPC, {ended(Failure::DiskFull)});
    EXPECT_GT(job.truncated, 0);
    EXPECT_EQ(job.lost, 0);
    export_with(job, Call::Write, EIO, {ended(Failure::DeviceIo)});
}

TEST_P(ExportFaults, FullDiskReportedOnCloseEndsExport) {
    Extracting job(GetParam());
    export_with(job, Call::Close, ENOSPC, {ended(Failure::DiskFull)});
    EXPECT_EQ(job.lost + job.truncated, 0);
}

TEST_P(ExportFaults, UnknownStatusOfTargetIsIgnored) {
    Extracting job(GetParam());
    export_with(job, Call::Status, EACCES, {answered(true)});
}

INSTANTIATE_TEST_SUITE_P(Formats, ExportFaults,
                         testing::Values(ExtractionFormat::Bmp, ExtractionFormat::Tga, ExtractionFormat::Pcx),
                         [](const auto& instance) {
                             return std::string(extension_of(instance.param).substr(1));
                         });

// Colour reduction and the BMP writer make their copies in such a surface.
class MakingASurface : public Job {
  public:
    void prepare() override {}

    bool run() override { return dib_.Create(5, 4, 32); }

    FileBytes result() override { return bytes_of(dib_); }

  private:
    cDIB dib_;
};

TEST(SurfaceFaults, AllocationFailureReturnsFalse) {
    FaultFreeServices services;
    MakingASurface job;
    EXPECT_GT(fail_once_and_always(job, services, {.call = Call::Allocation}, always(answered(false))), 2);
}

class CloningASurface : public Job {
  public:
    CloningASurface() { fill_dib(dib_, 2, 1, {1, 2}); }

    void prepare() override {}

    bool run() override {
        dib_.CloneTo(clone_);
        return true;
    }

    FileBytes result() override { return bytes_of(clone_); }

  private:
    cDIB dib_;
    cDIB clone_;
};

TEST(SurfaceFaults, AllocationFailureOfACloneIsASubscriptFailure) {
    FaultFreeServices services;
    CloningASurface job;
    fail_once_and_always(job, services, {.call = Call::Allocation},
                         always(ended(Failure::SubscriptOutOfRange)));
}

TEST(PreviewFaults, AllocationFailureDuringTickIsOutOfMemory) {
    FaultFreeServices services;
    for (const std::int32_t depth : {32, 24}) {
        SCOPED_TRACE(depth);
        Playing job(depth);
        fail_once_and_always(job, services, {.call = Call::Allocation}, always(ended(Failure::OutOfMemory)));
    }
    reset_sprite();
}

} // namespace
} // namespace varnoth::test
