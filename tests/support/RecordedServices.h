// Platform services for tests: they record messages and questions, give preset answers, count yields, load
// pictures from a table and choose preset files.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "core/base/RunTimeFailure.h"
#include "core/image/Picture.h"
#include "core/services/Services.h"
#include "support/lists.h"

namespace varnoth::test {

class RecordedServices : private MessageBoxes,
                         private EventQueue,
                         private PictureLoader,
                         private FileChooser {
  public:
    RecordedServices() : installation_({this, this, this, this}) {}

    Texts messages;
    std::function<void()> on_message; ///< runs while a message is open
    Texts questions;
    bool answer = true;
    std::function<void()> on_question; ///< runs while a question is open
    int yields = 0;
    std::function<void()> on_yield;
    std::string next_open; ///< the file chosen next, "" to cancel
    std::string next_save;
    Texts filters;                                     ///< of the choices so far
    std::map<std::filesystem::path, Picture> pictures; ///< any other path fails with InvalidPicture

  protected:
    void show(std::string_view text) override {
        messages.emplace_back(text);
        if (on_message) {
            on_message();
        }
    }

    bool ask(std::string_view question) override {
        questions.emplace_back(question);
        if (on_question) {
            on_question();
        }
        return answer;
    }

    void yield() override {
        ++yields;
        if (on_yield) {
            on_yield();
        }
    }

    Picture load(const std::string& path) override {
        const auto found = pictures.find(path);
        if (found == pictures.end()) {
            fail(Failure::InvalidPicture);
        }
        return found->second;
    }

    std::string choose_to_open(std::string_view filter) override {
        filters.emplace_back(filter);
        return next_open;
    }

    std::string choose_to_save(std::string_view filter) override {
        filters.emplace_back(filter);
        return next_save;
    }

  private:
    ServicesInstallation installation_;
};

} // namespace varnoth::test
