// Errors of the real file system: full disks, folders and files that disappear, grow or shrink while a job
// runs, revoked permissions. The tests may run as root, who ignores permission bits; where the system itself
// would have to refuse access, the call that opens the file fails by injection instead.
#include <cerrno>
#include <csignal>
#include <filesystem>

#include <sys/resource.h>

#include "core/codecs/LoadPCX.h"
#include "core/codecs/LoadTGA.h"
#include "core/jobs/ImportPipeline.h"
#include "fault_injection/Operation.h"
#include "fault_injection/made_files.h"
#include "support/AllFrames.h"
#include "support/PictureFolder.h"
#include "support/RecordedImport.h"
#include "support/ScriptedAddFrames.h"
#include "support/codec_files.h"
#include "support/expect_failure.h"
#include "support/sprites.h"

namespace varnoth::test {
namespace {

using hlspr::document;
namespace fs = std::filesystem;

/// Limits the size of files for this object's lifetime; the system refuses to write beyond it.
class SmallDisk {
  public:
    explicit SmallDisk(rlim_t most) : ignored_before_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{most, before_.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    }

    ~SmallDisk() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, ignored_before_);
    }

    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

  private:
    rlimit before_{};
    void (*ignored_before_)(int);
};

class FileSystem : public testing::Test {
  protected:
    FileSystem() { put_sprite(); }

    ~FileSystem() override {
        reset_sprite();
        reset_mixpals();
    }

    // Three frames of 100 by 50.
    static SpriteFile sprite_file() {
        SpriteFile file;
        file.width = 100;
        file.height = 50;
        for (int i = 0; i < 3; ++i) {
            file.add({100, 50, FileBytes(5000, static_cast<std::uint8_t>(i + 1)), 0, -50, 25});
        }
        return file;
    }

    void put_sprite() {
        reset_sprite();
        EXPECT_EQ(hlspr::load_sprite(folder_.write("source.spr", sprite_file().bytes())), True);
    }

    bool save(const std::string& path) {
        services_.messages.clear();
        return hlspr::save_sprite(path) == True;
    }

    std::optional<Failure> extract(ExtractionFormat format) {
        TestSurface scratch(1, 1);
        ExtractionOptions options;
        options.folder = folder_.file("out");
        options.sprite_path = "x.spr";
        options.format = format;
        options.if_file_exists = IfFileExists::Overwrite;
        return failure_in([&] { extract_frames(options, view_, scratch); });
    }

    // Creates a folder of two pictures, lists it and selects both.
    void choose(PictureFormat format) {
        pictures_.emplace(services_);
        for (const std::string picture : {"a", "b"}) {
            const Colours colours(12, picture == "a" ? 0x102030 : 0x405060);
            pictures_->add(picture + std::string(extension_of(format)), format, 4, 3, colours);
        }
        form_ = std::make_unique<ScriptedAddFrames>(pictures_->path(), format, false);
        form_->click(0);
        form_->click(1);
        services_.messages.clear();
    }

    std::optional<Failure> import() {
        return failure_in([&] { import_frames(*form_, import_); });
    }

    const std::string not_saved_ = "Unknown Error Saving Sprite.";
    TemporaryFolder folder_;
    RecordedServices services_;
    std::optional<PictureFolder> pictures_;
    AllFrames view_;
    RecordedImport import_;
    std::unique_ptr<ScriptedAddFrames> form_;
};

TEST_F(FileSystem, SaveOnFullDiskShowsMessageAtAnyLength) {
    const FileBytes whole = sprite_file().bytes();
    const std::string path = folder_.file("target.spr");
    for (rlim_t room = 0; room < whole.size(); room += 700) {
        {
            const SmallDisk disk(room);
            EXPECT_FALSE(save(path)) << room;
        }
        EXPECT_EQ(services_.messages, Texts{not_saved_});
        EXPECT_TRUE(is_start_of(read_file(path), whole));
        EXPECT_LE(read_file(path).size(), room);
    }
    const SmallDisk disk(whole.size());
    EXPECT_TRUE(save(path));
    EXPECT_EQ(read_file(path), whole);
}

TEST_F(FileSystem, RemovedOutputFolderEndsExport) {
    fs::create_directory(folder_.file("out"));
    view_.on_written = [&](const std::string&) {
        if (view_.written == 2) {
            fs::remove_all(folder_.file("out"));
        }
    };
    EXPECT_EQ(extract(ExtractionFormat::Tga), Failure::PathNotFound);
    EXPECT_EQ(view_.written, 2);
}

TEST_F(FileSystem, FolderRemovedAfterListingEndsImport) {
    choose(PictureFormat::Pcx);
    fs::remove_all(pictures_->path());
    EXPECT_EQ(import(), Failure::PathNotFound);
    EXPECT_EQ(services_.messages, Texts{"File: a.pcx Bad Format/Corrupt."});

    choose(PictureFormat::Bmp);
    fs::remove_all(pictures_->path());
    EXPECT_EQ(import(), Failure::PathNotFound);
    EXPECT_EQ(services_.messages, Texts());
}

TEST_F(FileSystem, PictureRemovedBetweenPassesKeepsEarlierFrames) {
    choose(PictureFormat::Tga);
    import_.on_event = [&](const std::string& event) {
        if (event == "step Frame 1") {
            fs::remove(pictures_->file("b.tga"));
        }
    };
    EXPECT_EQ(import(), Failure::FileNotFound);
    EXPECT_EQ(import_.lines.size(), 1U);
    EXPECT_EQ(document().SpriteHeader.FrameCount, 1);
}

TEST_F(FileSystem, PictureReplacedBetweenPassesIsImportedAsReplaced) {
    choose(PictureFormat::Tga);
    import_.on_event = [&](const std::string& event) {
        if (event == "step Frame 1") {
            pictures_->write("b.tga", tga_file(2, 2, Colours(4, 0x102030)));
        }
    };
    EXPECT_EQ(import(), std::nullopt);
    EXPECT_EQ(document().FrameStore.at(0), document().FrameStore.at(1));
}

// Truncates or extends a file before one of its reads. Data that was already buffered is unaffected; many
// lengths make sure that some read sees the change.
class ChangingFile : public FileSystem {
  protected:
    // Calls `read`, which checks its own result, once for every change.
    template <typename Read>
    void change_at_each_read(const std::string& name, const FileBytes& whole, Read&& read) {
        int met = 0;
        for (const std::int64_t length :
             {std::int64_t{0}, std::int64_t{1}, std::int64_t{17}, std::int64_t{100},
              static_cast<std::int64_t>(whole.size()) / 2, static_cast<std::int64_t>(whole.size()) - 1,
              static_cast<std::int64_t>(whole.size()) + 1, static_cast<std::int64_t>(whole.size()) + 9000}) {
            for (int number = 1;; ++number) {
                SCOPED_TRACE(name + " to " + std::to_string(length) + " at read " + std::to_string(number));
                const std::string path = folder_.write(name, whole);
                const int open_before = open_streams();
                bool hit = false;
                {
                    const FaultInjection injection({.call = Call::Read, .number = number, .instead = [&] {
                                                        fs::resize_file(path,
                                                                        static_cast<std::uintmax_t>(length));
                                                    }});
                    read(path, length > static_cast<std::int64_t>(whole.size()));
                    hit = injection.hit();
                }
                EXPECT_EQ(open_streams(), open_before);
                met += hit ? 1 : 0;
                if (!hit || HasFailure()) {
                    break;
                }
            }
        }
        EXPECT_GT(met, 0);
        record_faults(met);
    }
};

TEST_F(ChangingFile, ShrinkingSpriteIsZeroFilledOrRefused) {
    const FileBytes whole = sprite_file().bytes();
    const FileBytes result = document_bytes();
    change_at_each_read("changing.spr", whole, [&](const std::string& path, bool grows) {
        reset_sprite();
        services_.messages.clear();
        const bool loaded = hlspr::load_sprite(path) == True;
        if (grows) {
            EXPECT_TRUE(loaded);
            EXPECT_EQ(document_bytes(), result);
        }
        EXPECT_EQ(services_.messages.size(), loaded ? 0U : 1U);
        for (std::size_t i = 0; i < document().FrameStore.size(); ++i) {
            for (const std::uint8_t pixel : document().FrameStore[i].bytes()) {
                EXPECT_TRUE(pixel == 0 || pixel == i + 1);
            }
        }
    });
}

template <typename Reader>
void expect_decoded(const std::string& path, bool grows, const FileBytes& result) {
    put_old_picture();
    Reader reader;
    const std::optional<Failure> failure = failure_in([&] { reader.Load(path); });
    if (grows) { // the length is determined on opening
        EXPECT_EQ(failure, std::nullopt);
        EXPECT_EQ(decoded_bytes(), result);
    } else if (failure) {
        EXPECT_EQ(*failure, Failure::SubscriptOutOfRange);
    } else if (!decoded_bytes().empty()) { // no picture if the header is gone on the second opening
        EXPECT_EQ(decoded_bytes().size(), result.size());
    }
}

TEST_F(ChangingFile, ShrinkingPictureIsIncompleteGrowingOneUnchanged) {
    // No 8-bit file on one plane: its palette is located from the end of the file, wherever that is then.
    for (const MadeFile& file : {made_pcx(1, 1, true), made_pcx(4, 1, false), made_pcx(8, 3, true)}) {
        LoadPCX().Load(folder_.write("p.pcx", file.bytes));
        change_at_each_read(file.name, file.bytes,
                            [result = decoded_bytes()](const std::string& path, bool grows) {
                                expect_decoded<LoadPCX>(path, grows, result);
                            });
    }
    for (const MadeFile& file : {made_tga(8, false), made_tga(16, true), made_tga(24, false)}) {
        LoadTGA().Load(folder_.write("t.tga", file.bytes));
        change_at_each_read(file.name, file.bytes,
                            [result = decoded_bytes()](const std::string& path, bool grows) {
                                expect_decoded<LoadTGA>(path, grows, result);
                            });
    }
}

} // namespace
} // namespace varnoth::test
