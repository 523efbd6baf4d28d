// Fault injection for loading and saving a sprite.
#include <cerrno>
#include <filesystem>

#include "fault_injection/Operation.h"
#include "support/sprites.h"

namespace varnoth::test {
namespace {

using hlspr::document;

const Outcome not_loaded = answered(false, {"Unknown Error Loading Sprite."});
const Outcome not_saved = answered(false, {"Unknown Error Saving Sprite."});

// Larger than the library's buffer, so that it is read in several calls.
SpriteFile three_frames() {
    SpriteFile file;
    file.width = 70;
    file.height = 30;
    for (int i = 0; i < 3; ++i) {
        FileFrame frame{70, 30, {}, 0, -35, 15};
        for (int pixel = 0; pixel < 70 * 30; ++pixel) {
            frame.pixels.push_back(static_cast<std::uint8_t>(pixel * (i + 3)));
        }
        file.add(std::move(frame));
    }
    for (std::size_t i = 0; i < file.palette.size(); ++i) {
        file.palette[i] = static_cast<std::uint8_t>(i * 7);
    }
    return file;
}

class Loading : public Job {
  public:
    void prepare() override { reset_sprite(); }

    bool run() override { return hlspr::load_sprite(path_) == True; }

    FileBytes result() override { return document_bytes(); }

    void expect_kept() override { EXPECT_EQ(read_file(path_), bytes_); }

  private:
    TemporaryFolder folder_;
    const FileBytes bytes_ = three_frames().bytes();
    const std::string path_ = folder_.write("some sprite of a name that needs memory.spr", bytes_);
};

// Saves over an existing file, which saving deletes first.
class Saving : public Job {
  public:
    Saving() {
        reset_sprite();
        EXPECT_EQ(hlspr::load_sprite(folder_.write("source.spr", new_bytes_)), True);
        loaded_ = document();
    }

    void prepare() override {
        document() = loaded_;
        folder_.write(name_, old_bytes_);
    }

    bool run() override { return hlspr::save_sprite(path_) == True; }

    FileBytes result() override {
        EXPECT_EQ(read_file(path_), new_bytes_);
        return document_bytes();
    }

    // The old file is unchanged, or it is gone and replaced by at most a prefix of the new one.
    void expect_kept() override {
        const bool there = std::filesystem::exists(path_);
        const bool old = there && read_file(path_) == old_bytes_;
        if (there && !old) {
            EXPECT_TRUE(is_start_of(read_file(path_), new_bytes_));
        }
        ++(old ? left_old : there ? left_short : left_none);
        EXPECT_EQ(read_file(folder_.file("source.spr")), new_bytes_);
    }

    int left_old = 0;
    int left_none = 0;
    int left_short = 0;

  private:
    TemporaryFolder folder_;
    const std::string name_ = "a target of a name that needs memory.spr";
    const std::string path_ = folder_.file(name_);
    const FileBytes new_bytes_ = three_frames().bytes();
    const FileBytes old_bytes_ = FileBytes(100, 'o');
    SpriteDocument loaded_;
};

class SpriteFaults : public testing::Test {
  protected:
    ~SpriteFaults() override { reset_sprite(); }

    int load_with(Call call, int error, const Outcome& expected) {
        Loading job;
        return fail_once_and_always(job, services_, {.call = call, .error = error}, always(expected));
    }

    int save_with(Saving& job, Call call, int error, const Outcome& expected = not_saved) {
        return fail_once_and_always(job, services_, {.call = call, .error = error}, always(expected));
    }

    FaultFreeServices services_;
};

TEST_F(SpriteFaults, AllocationFailureOnLoadShowsMessage) {
    EXPECT_GT(load_with(Call::Allocation, ENOMEM, not_loaded), 10);
}

TEST_F(SpriteFaults, OpenErrorOnLoadShowsMessage) {
    for (const int error : {ENOENT, EACCES, EMFILE, EIO}) {
        load_with(Call::Open, error, not_loaded);
    }
}

TEST_F(SpriteFaults, ReadErrorOnLoadShowsMessage) {
    // Header, palette, and two reads per frame.
    EXPECT_EQ(load_with(Call::Read, EIO, not_loaded), 2 * 8);
}

TEST_F(SpriteFaults, UnknownFileLengthOnLoadShowsMessage) {
    load_with(Call::Seek, EIO, not_loaded);
    load_with(Call::Tell, EIO, not_loaded);
}

TEST_F(SpriteFaults, CloseErrorOnLoadIsIgnored) {
    load_with(Call::Close, EIO, answered(true));
}

TEST_F(SpriteFaults, UnknownStatusOnLoadIsIgnored) {
    load_with(Call::Status, EACCES, answered(true));
}

TEST_F(SpriteFaults, AllocationFailureOnSaveShowsMessage) {
    Saving job;
    EXPECT_GT(save_with(job, Call::Allocation, ENOMEM), 4);
    EXPECT_GT(job.left_old, 0);
    EXPECT_GT(job.left_none, 0);
}

TEST_F(SpriteFaults, UndeletableTargetShowsMessageAndIsKept) {
    for (const int error : {EACCES, EPERM, EROFS, EIO}) {
        Saving job;
        save_with(job, Call::Remove, error);
        EXPECT_EQ(job.left_none + job.left_short, 0);
    }
}

TEST_F(SpriteFaults, OpenErrorOnSaveShowsMessageWithOldFileDeleted) {
    for (const int error : {EACCES, EMFILE, ENOSPC, EROFS}) {
        Saving job;
        save_with(job, Call::Open, error);
        EXPECT_EQ(job.left_old + job.left_short, 0);
    }
}

TEST_F(SpriteFaults, FullDiskShowsMessageAndLeavesTruncatedFile) {
    for (const int error : {ENOSPC, EDQUOT, EIO, EFBIG}) {
        Saving job;
        // Header, palette, and two writes per frame.
        EXPECT_EQ(save_with(job, Call::Write, error), 2 * 8);
        EXPECT_EQ(job.left_old + job.left_none, 0);
    }
}

TEST_F(SpriteFaults, FullDiskReportedOnCloseShowsMessage) {
    Saving job;
    save_with(job, Call::Close, ENOSPC);
}

TEST_F(SpriteFaults, UnknownStatusOnSaveIsIgnored) {
    Saving job;
    save_with(job, Call::Status, EACCES, answered(true));
}

} // namespace
} // namespace varnoth::test
