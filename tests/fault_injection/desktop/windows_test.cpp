// Fault injection while a user works in the real windows: loading and saving show their message, everything
// else is a fatal error, reported once. Only the program's own arrays fail to allocate: Qt aborts the program
// if its own allocations fail.
#include <cerrno>
#include <filesystem>

#include "desktop/forms/EditorTest.h"
#include "fault_injection/Operation.h"
#include "support/PictureFolder.h"

namespace varnoth::test {
namespace {

using ui_driver::click;
using ui_driver::click_line;

class WindowFaults : public EditorTest {
  protected:
    ~WindowFaults() override { EXPECT_EQ(open_streams(), streams_before_); }

    /// Restarts the editor, as after a fatal error.
    void restart() {
        coordinator_.reset();
        ui_driver::settle();
        reset_sprite();
        reset_mixpals();
        services_.messages.clear();
        failures_.clear();
        coordinator_ = std::make_unique<FormCoordinator>();
        coordinator_->start();
        ui_driver::settle();
    }

    /// Repeats an action with the first such call failing, the second, the third and then at growing
    /// distances, until it succeeds. `end` checks the result of each failure.
    template <typename Begin, typename Act, typename End>
    void fail_at_growing_distances(const Fault& fault, Begin&& begin, Act&& act, End&& end) {
        int met = 0;
        Fault next = fault;
        for (bool hit = true; hit; next.number += next.number / 3 + 1) {
            SCOPED_TRACE("call " + std::to_string(next.number));
            restart();
            begin();
            {
                const FaultInjection injection(next);
                act();
                hit = injection.hit();
            }
            if (hit) {
                ++met;
                end();
            } else {
                EXPECT_EQ(failures_, Texts());
            }
        }
        EXPECT_GT(met, 0);
        record_faults(met);
    }

    void select_all() {
        for (int line = 0; line < main().List1.ListCount(); ++line) {
            click_line(main().List1, line, line == 0 ? Qt::NoModifier : Qt::ControlModifier);
        }
    }

    void expect_fatal(const std::string& name) { EXPECT_EQ(failures_, Texts{name}); }

    const int streams_before_ = open_streams(); // includes what GoogleTest has closed by now
    const std::string not_loaded_ = "Unknown Error Loading Sprite.";
    const std::string not_saved_ = "Unknown Error Saving Sprite.";
};

TEST_F(WindowFaults, OpenErrorShowsMessageAndKeepsWindow) {
    const std::string old_sprite = write_sprite("old.spr", 2);
    const std::string sprite = write_sprite("new.spr", 3);
    for (const Call call : {Call::Open, Call::Read, Call::Seek, Call::Tell}) {
        Texts before;
        fail_at_growing_distances(
            {.call = call, .error = EIO},
            [&] {
                open(old_sprite);
                before = lines();
            },
            [&] { open(sprite); },
            [&] {
                EXPECT_EQ(services_.messages, Texts{not_loaded_});
                EXPECT_EQ(failures_, Texts());
                EXPECT_EQ(lines(), before);
                EXPECT_EQ(enabled_buttons(), opened);
            });
    }
}

TEST_F(WindowFaults, OpenWithoutMemoryShowsMessageOrIsFatal) {
    const std::string sprite = write_sprite("new.spr", 3);
    fail_at_growing_distances(
        {.call = Call::Array}, [] {}, [&] { open(sprite); },
        [&] {
            // Loading shows the message; showing the first frame after it is fatal.
            if (failures_.empty()) {
                EXPECT_EQ(services_.messages, Texts{not_loaded_});
                EXPECT_EQ(enabled_buttons(), at_start);
            } else {
                expect_fatal("OutOfMemory");
                EXPECT_EQ(services_.messages, Texts());
            }
        });
}

TEST_F(WindowFaults, SaveErrorShowsMessage) {
    const std::string sprite = write_sprite("sprite.spr", 3);
    for (const Call call : {Call::Open, Call::Write, Call::Close, Call::Remove}) {
        fail_at_growing_distances(
            {.call = call, .repeat = Repeat::Always, .error = ENOSPC},
            [&] {
                write_sprite("sprite.spr", 3);
                open(sprite);
                click(main().elboton7); // clears the list, so that there is something to save
            },
            [&] { click(main().elboton3); },
            [&] {
                EXPECT_EQ(services_.messages, Texts{not_saved_});
                EXPECT_EQ(failures_, Texts());
            });
    }
}

TEST_F(WindowFaults, ExportErrorIsFatal) {
    const std::string out = folder_.file("out");
    std::filesystem::create_directory(out);
    const std::string sprite = write_sprite("sprite.spr", 3);
    const auto begin = [&] {
        open(sprite);
        select_all();
        click(main().elboton6);
        ui_driver::type_into(coordinator_->form3()->eltexto1, QString::fromStdString(out));
    };
    const auto act = [&] { click(coordinator_->form3()->elboton2); };
    const auto export_with = [&](const Fault& fault, const std::string& failure) {
        fail_at_growing_distances(fault, begin, act, [&] { expect_fatal(failure); });
    };
    export_with({.call = Call::Write, .error = ENOSPC}, "DiskFull");
    export_with({.call = Call::Open, .error = EACCES}, "PermissionDenied");
    export_with({.call = Call::Close, .error = EIO}, "DeviceIo");
}

TEST_F(WindowFaults, PreviewWithoutMemoryIsFatal) {
    const std::string sprite = write_sprite("sprite.spr", 3, 40, 30);
    fail_at_growing_distances(
        {.call = Call::Array}, [&] { open(sprite); }, [&] { ui_driver::double_click(main().Picture1); },
        [&] { expect_fatal("OutOfMemory"); });
}

class WindowImportFaults : public WindowFaults {
  protected:
    WindowImportFaults() {
        for (const std::string name : {"a.tga", "b.tga"}) {
            pictures_.write(name, tga_file(4, 4, std::vector<Colour>(16, 0x203040)));
        }
    }

    void open_dialog() {
        open(write_sprite("sprite.spr", 1));
        click(main().elboton4);
        ASSERT_TRUE(
            ui_driver::walk_to(coordinator_->form4()->Dir1, QString::fromStdString(pictures_.path())));
        ui_driver::choose(coordinator_->form4()->Combo1, 2);
        for (const int entry : {0, 1}) {
            click_line(coordinator_->form4()->File1, entry, Qt::ControlModifier);
        }
    }

    void import() {
        click(coordinator_->form4()->elboton2);
        ui_driver::settle();
    }

    PictureFolder pictures_{services_};
};

TEST_F(WindowImportFaults, OpenAndReadErrorsAreRefusedOrFatal) {
    const auto judge = [&](const std::string& name) {
        // The probes make the first two calls.
        if (failures_.empty()) {
            EXPECT_EQ(services_.messages.size(), 2U);
            EXPECT_TRUE(services_.messages.at(0).ends_with("Bad Format/Corrupt."));
            EXPECT_EQ(services_.messages.at(1), "Frames Generated Successfully !");
        } else {
            expect_fatal(name);
        }
    };
    fail_at_growing_distances(
        {.call = Call::Read, .error = EIO}, [&] { open_dialog(); }, [&] { import(); },
        [&] { judge("DeviceIo"); });
    fail_at_growing_distances(
        {.call = Call::Open, .error = EACCES}, [&] { open_dialog(); }, [&] { import(); },
        [&] { judge("PermissionDenied"); });
}

TEST_F(WindowImportFaults, AllocationFailureIsFatalOrKeepsOldPicture) {
    fail_at_growing_distances(
        {.call = Call::Array}, [&] { open_dialog(); }, [&] { import(); },
        [&] {
            if (failures_.empty()) {
                EXPECT_EQ(services_.messages, Texts{"Frames Generated Successfully !"});
            } else {
                // The test only records the failure, so an import continues after painting has failed.
                expect_fatal("OutOfMemory");
            }
        });
}

} // namespace
} // namespace varnoth::test
