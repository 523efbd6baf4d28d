// Fault injection for choosing and importing pictures.
#include <cerrno>

#include "core/jobs/ImportPipeline.h"
#include "fault_injection/Operation.h"
#include "support/PictureFolder.h"
#include "support/RecordedImport.h"
#include "support/ScriptedAddFrames.h"
#include "support/expect_failure.h"
#include "support/sprites.h"
#include "support/thoroughness.h"

namespace varnoth::test {
namespace {

using hlspr::document;

// The view of an import, exempt from faults.
class FaultFreeImport : public RecordedImport {
  protected:
    void note(std::string_view kind, std::string_view text) override {
        const FaultsSuspended meanwhile;
        RecordedImport::note(kind, text);
    }
};

// Two pictures of the same size. With `many` set, each has more than 256 colours, so that both pictures and
// the sheet of all colours are reduced.
class Pictures {
  public:
    Pictures(FaultFreeServices& services, PictureFormat of_format, bool many)
        : folder(services), format(of_format), many_colours(many) {
        const std::int16_t side = many ? 17 : 6;
        for (const std::string name : {"a", "b"}) {
            const std::string full_name = name + std::string(extension_of(format));
            folder.add(full_name, format, side, side,
                       random_colours(static_cast<std::size_t>(side * side), static_cast<std::size_t>(side),
                                      many ? Character::Noise : Character::FewColours, name == "a" ? 1 : 2));
            files_[folder.file(full_name)] = read_file(folder.file(full_name));
        }
    }

    void expect_kept() const {
        for (const auto& [path, bytes] : files_) {
            EXPECT_EQ(read_file(path), bytes);
        }
    }

    PictureFolder folder;
    const PictureFormat format;
    const bool many_colours;

  private:
    std::map<std::string, FileBytes> files_;
};

// Opens the Add Frame/s dialog on the folder and clicks both pictures, which lists, probes and previews them.
class Choosing : public Job {
  public:
    explicit Choosing(const Pictures& pictures) : pictures_(pictures) {}

    void prepare() override {
        reset_sprite();
        hlspr::new_sprite(8, 8, 2, 3);
        form_.reset();
    }

    bool run() override {
        form_.reset();
        form_ = std::make_unique<ScriptedAddFrames>(pictures_.folder.path(), pictures_.format, true);
        for (std::int16_t i = 0; i < form_->entry_count(); ++i) {
            form_->click(i);
        }
        return form_->entry_count() == 2;
    }

    FileBytes result() override {
        const auto pixels = form_->Picture1().bitmap().bytes();
        FileBytes bytes(pixels.begin(), pixels.end());
        for (std::int32_t i = 0; i < form_->entry_count(); ++i) {
            bytes.push_back(form_->is_selected(i) ? 1 : 0);
        }
        bytes.insert(bytes.end(), form_->set_caption().begin(), form_->set_caption().end());
        return bytes;
    }

    void expect_kept() override { pictures_.expect_kept(); }

  private:
    const Pictures& pictures_;
    std::unique_ptr<ScriptedAddFrames> form_;
};

// Imports both pictures.
class Importing : public Job {
  public:
    Importing(const Pictures& pictures, int step) : pictures_(pictures), step_(step) {}

    void prepare() override {
        reset_sprite();
        reset_mixpals();
        choose();
    }

    bool run() override {
        import_frames(*form_, *view_);
        return document().SpriteHeader.FrameCount == view_->frame_line_count();
    }

    FileBytes result() override { return document_bytes(); }

    void expect_kept() override { pictures_.expect_kept(); }

    int step() const override { return step_; }

    // A failure is fatal, so the program never imports again after one. Still, another import must do no
    // harm: it succeeds or fails with SubscriptOutOfRange, since palette mixing stores a surface's size
    // before it allocates memory for it. The palette contains colours of the failed import, so the bytes are
    // compared after a fresh start only.
    void before_second_run() override {
        if (pictures_.many_colours) {
            prepare(); // too slow, and covered by the other pictures
            return;
        }
        choose();
        const std::optional<Failure> failure = failure_in([&] { run(); });
        if (failure) {
            EXPECT_EQ(*failure, Failure::SubscriptOutOfRange);
        } else {
            EXPECT_EQ(document().SpriteHeader.FrameCount, 2);
            EXPECT_EQ(view_->ends, 1);
        }
        prepare();
    }

  private:
    void choose() {
        hlspr::new_sprite(8, 8, 2, 3);
        view_ = std::make_unique<FaultFreeImport>();
        form_ = std::make_unique<ScriptedAddFrames>(pictures_.folder.path(), pictures_.format, true);
        for (std::int16_t i = 0; i < form_->entry_count(); ++i) {
            form_->click(i);
        }
    }

    const Pictures& pictures_;
    int step_;
    std::unique_ptr<FaultFreeImport> view_;
    std::unique_ptr<ScriptedAddFrames> form_;
};

struct Case {
    const char* name;
    PictureFormat format;
    bool many_colours;
};

class ImportFaults : public testing::TestWithParam<Case> {
  protected:
    ~ImportFaults() override {
        reset_sprite();
        reset_mixpals();
    }

    void import_with(Call call, int error, std::vector<Outcome> expected) {
        // Reducing pictures is slow under the sanitizers.
        const int step = share == 1 ? 1 : GetParam().many_colours ? 29 : 5;
        Importing job(pictures_, step);
        OneOf one_of(std::move(expected), step > 1);
        fail_once_and_always(job, services_, {.call = call, .error = error}, std::ref(one_of));
    }

    void choose_with(Call call, int error, std::vector<Outcome> expected) {
        Choosing job(pictures_);
        OneOf one_of(std::move(expected));
        fail_once_and_always(job, services_, {.call = call, .error = error}, std::ref(one_of));
    }

    bool probe_answers_false() const { return GetParam().format != PictureFormat::Bmp; }

    std::string refused(const std::string& name) const {
        return "File: " + name + std::string(extension_of(GetParam().format)) + " Bad Format/Corrupt.";
    }

    // The possible outcomes of a failing call: a probe answers false, which gives the message; anything else
    // fails. After the probe, the fault may be over or persist.
    std::vector<Outcome> ends_in(Failure failure, const Texts& after_a_refusal) const {
        std::vector<Outcome> outcomes{ended(failure)};
        if (probe_answers_false()) {
            for (const std::string name : {"a", "b"}) {
                Texts messages{refused(name)};
                outcomes.push_back(ended(failure, messages));
                messages.insert(messages.end(), after_a_refusal.begin(), after_a_refusal.end());
                outcomes.push_back(answered(true, messages));
            }
        }
        return outcomes;
    }

    std::vector<Outcome> importing_ends_in(Failure failure) const { return ends_in(failure, {done_}); }

    std::vector<Outcome> choosing_ends_in(Failure failure) const { return ends_in(failure, {}); }

    const std::string done_ = "Frames Generated Successfully !";
    FaultFreeServices services_;
    const Pictures pictures_{services_, GetParam().format, GetParam().many_colours};
};

TEST_P(ImportFaults, AllocationFailureEndsImportOrKeepsOldPicture) {
    std::vector<Outcome> outcomes{ended(Failure::OutOfMemory)};
    if (probe_answers_false()) {
        outcomes.push_back(answered(true, {refused("a"), done_}));
        outcomes.push_back(answered(true, {refused("b"), done_}));
    }
    // With many colours, the sample for the palette cannot be made, which overflows later. Otherwise, a
    // picture that cannot be made is not drawn.
    outcomes.push_back(GetParam().many_colours ? ended(Failure::Overflow) : answered(true, {done_}));
    import_with(Call::Allocation, 0, outcomes);
}

TEST_P(ImportFaults, OpenErrorEndsImport) {
    import_with(Call::Open, EACCES, importing_ends_in(Failure::PermissionDenied));
    import_with(Call::Open, EMFILE, importing_ends_in(Failure::DeviceIo));
}

TEST_P(ImportFaults, ReadErrorEndsImport) {
    import_with(Call::Read, EIO, importing_ends_in(Failure::DeviceIo));
}

TEST_P(ImportFaults, SeekAndTellErrorsEndImport) {
    import_with(Call::Seek, EIO, importing_ends_in(Failure::DeviceIo));
    import_with(Call::Tell, EIO, importing_ends_in(Failure::DeviceIo));
}

TEST_P(ImportFaults, CloseErrorAndUnknownStatusAreIgnored) {
    import_with(Call::Close, EIO, {answered(true, {done_})});
    import_with(Call::Status, EACCES, {answered(true, {done_})});
}

TEST_P(ImportFaults, AllocationFailureWhileChoosingFails) {
    std::vector<Outcome> outcomes{ended(Failure::OutOfMemory)};
    if (probe_answers_false()) {
        outcomes.push_back(answered(true, {refused("a")}));
        outcomes.push_back(answered(true, {refused("b")}));
        outcomes.push_back(answered(true));
    }
    choose_with(Call::Allocation, 0, outcomes);
}

TEST_P(ImportFaults, OpenAndReadErrorsWhileChoosingAreFatal) {
    choose_with(Call::Open, EACCES, choosing_ends_in(Failure::PermissionDenied));
    choose_with(Call::Read, EIO, choosing_ends_in(Failure::DeviceIo));
}

TEST_P(ImportFaults, UnlistableFolderHasNoPictures) {
    choose_with(Call::OpenFolder, EACCES, {answered(false)});
}

INSTANTIATE_TEST_SUITE_P(Formats, ImportFaults,
                         testing::Values(Case{"Pcx", PictureFormat::Pcx, false},
                                         Case{"Tga", PictureFormat::Tga, false},
                                         Case{"BmpOfManyColours", PictureFormat::Bmp, true}),
                         [](const auto& instance) { return std::string(instance.param.name); });

} // namespace
} // namespace varnoth::test
