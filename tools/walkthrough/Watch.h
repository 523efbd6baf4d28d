// What the scripted user observes and answers: reports steps, list lines and messages, answers message boxes
// with a click on their own buttons and the file chooser with the next path.
#pragma once

#include <functional>
#include <string>

#include <QObject>

#include "core/services/Services.h"
#include "desktop/services/QtEventQueue.h"
#include "desktop/services/QtMessageBoxes.h"
#include "walkthrough/Report.h"

namespace varnoth {
class FormCoordinator;
class Form6;
} // namespace varnoth

namespace varnoth::walkthrough {

/// Real message boxes, reported and answered at once.
class AnsweredMessageBoxes : public MessageBoxes {
  public:
    AnsweredMessageBoxes(Report report, bool answer) : report_(std::move(report)), answer_(answer) {}

    void show(std::string_view text) override;
    bool ask(std::string_view question) override;

    /// How many messages and questions there have been.
    int count() const { return count_; }

    /// Called while a box is open.
    std::function<void()> on_open;

    /// Called before a message is reported.
    std::function<void(std::string_view text)> before;

  private:
    void answer_when_open();

    Report report_;
    bool answer_;
    int count_ = 0;
    QtMessageBoxes boxes_;
};

class AnsweredFileChooser : public FileChooser {
  public:
    /// The next path to choose, to open or to save.
    std::string next;

    std::string choose_to_open(std::string_view /*filter*/) override { return next; }

    std::string choose_to_save(std::string_view /*filter*/) override { return next; }
};

/// Calls back, then processes events.
class WatchedEventQueue : public EventQueue {
  public:
    std::function<void()> on_yield;

    void yield() override {
        if (on_yield) {
            on_yield();
        }
        queue_.yield();
    }

  private:
    QtEventQueue queue_;
};

/// During its lifetime, reports lines added to the frame list, texts of the progress dialog and files
/// written, and counts pictures and files.
class Watch : public QObject {
  public:
    Watch(FormCoordinator& coordinator, Report report);

    /// Pictures that the import has begun to load, including the current one.
    int pictures_begun() const { return pictures_begun_; }

    int frames_written() const { return frames_written_; }

  private:
    void watch_progress(Form6& progress);
    void record_step(const QString& text);

    Report report_;
    int pictures_begun_ = 0;
    int frames_written_ = 0;
};

} // namespace varnoth::walkthrough
