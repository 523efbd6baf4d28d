// A fixture that runs the editor with its real windows. Tests set the answers to message boxes and file
// choosers in advance.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QMetaObject>
#include <QTimer>

#include "core/base/files.h"
#include "core/sprite/hlspr.h"
#include "desktop/forms/FormCoordinator.h"
#include "desktop/forms/add_frames/Form4.h"
#include "desktop/forms/extract/Form3.h"
#include "desktop/forms/folder/Form5.h"
#include "desktop/forms/main_window/Form1.h"
#include "desktop/forms/new_sprite/Form2.h"
#include "desktop/forms/preview/Form7.h"
#include "desktop/forms/progress/Form6.h"
#include "desktop/services/QtEventQueue.h"
#include "desktop/services/exception_barrier.h"
#include "qt/QtPictureLoader.h"
#include "support/RecordedServices.h"
#include "support/TemporaryFolder.h"
#include "support/sprites.h"
#include "ui_driver/UiDriver.h"

namespace varnoth::test {

// Enabled buttons: Open, New, Save, Import, Remove, Export, Clear.
inline const std::vector<bool> at_start{true, true, false, false, false, false, false};
inline const std::vector<bool> new_without_frames{true, true, false, true, false, false, false};
inline const std::vector<bool> opened{true, true, false, true, true, true, true};
inline const std::vector<bool> changed{true, true, true, true, true, true, true};

class EditorTest : public testing::Test {
  protected:
    EditorTest() {
        reset_sprite();
        reset_mixpals();
        // Values that the main window must reset.
        hlspr::UnnamedSprite = true;
        hlspr::SpriteDirty = true;
        hlspr::ExtractFolder = "left over";
        coordinator_ = std::make_unique<FormCoordinator>();
        QObject::connect(coordinator_.get(), &FormCoordinator::ended, [this] { ended_ = true; });
        coordinator_->start();
        ui_driver::settle();
    }

    ~EditorTest() override {
        coordinator_.reset();
        ui_driver::settle();
    }

    Form1& main() { return coordinator_->form1(); }

    /// Writes a sprite file in which every pixel of frame n has index n.
    std::string write_sprite(const std::string& name, int frames, std::int32_t width = 4,
                             std::int32_t height = 4) {
        SpriteFile file;
        file.width = width;
        file.height = height;
        // Palette entry i is red i, green 2 i, blue 3 i.
        for (std::size_t i = 0; i < 256; ++i) {
            for (std::size_t channel = 0; channel < 3; ++channel) {
                file.palette[3 * i + channel] = static_cast<std::uint8_t>(i * (channel + 1));
            }
        }
        for (int i = 0; i < frames; ++i) {
            file.add({width, height,
                      std::vector<std::uint8_t>(static_cast<std::size_t>(width * height),
                                                static_cast<std::uint8_t>(i)),
                      0, -width / 2, height / 2});
        }
        return folder_.write(name, file.bytes());
    }

    /// The colour of frame n of a sprite from write_sprite.
    static Colour colour_of_frame(int frame) {
        return make_colour(static_cast<std::uint8_t>(frame), static_cast<std::uint8_t>(2 * frame),
                           static_cast<std::uint8_t>(3 * frame));
    }

    void open(const std::string& path) {
        services_.next_open = path;
        ui_driver::click(main().elboton1);
    }

    void open_sprite(int frames) { open(write_sprite("sprite.spr", frames)); }

    std::vector<std::string> lines() {
        std::vector<std::string> texts;
        for (std::int32_t i = 0; i < main().List1.ListCount(); ++i) {
            texts.push_back(main().List1.List(i).toStdString());
        }
        return texts;
    }

    /// The states of Open, New, Save, Import, Remove, Export and Clear. Checks that the captions have the
    /// corresponding colours.
    std::vector<bool> enabled_buttons() {
        std::vector<bool> enabled;
        for (elboton* button : {&main().elboton1, &main().elboton2, &main().elboton3, &main().elboton4,
                                &main().elboton5, &main().elboton6, &main().elboton7}) {
            EXPECT_EQ(button->ForeColor(), button->Enabled() ? 0xFFFFFF : 0x808080)
                << text(button->objectName());
            enabled.push_back(button->Enabled());
        }
        return enabled;
    }

    /// The colour of the frame shown in the main window.
    Colour shown() { return main().Picture1.surface().Point(0, 0); }

    static std::string text(const QString& words) { return words.toStdString(); }

    static constexpr int still_running = 99;

    /// Runs `work` in the program's event loop. Returns the program's exit status, or still_running if it
    /// does not exit.
    static int status_after(const std::function<void()>& work) {
        constexpr int enough_rounds = 100;
        int rounds = 0;
        QTimer round;
        QObject::connect(&round, &QTimer::timeout, [&] {
            if (++rounds == enough_rounds) {
                QCoreApplication::exit(still_running);
            }
        });
        QTimer::singleShot(0, [&] {
            work();
            round.start(0);
        });
        return QCoreApplication::exec();
    }

    TemporaryFolder folder_;
    RecordedServices services_;
    std::vector<std::string> failures_;
    FatalErrorHandlerInstallation fatal_end_{
        [this](std::string_view name, std::string_view /*words*/) { failures_.emplace_back(name); }};
    bool ended_ = false;
    std::unique_ptr<FormCoordinator> coordinator_;
};

} // namespace varnoth::test
