#include "core/services/Services.h"

#include "core/base/RunTimeFailure.h"

namespace varnoth {

namespace {

Services& installed() {
    static Services services;
    return services;
}

} // namespace

ServicesInstallation::ServicesInstallation(const Services& services) : before_(installed()) {
    if (services.message_boxes != nullptr) {
        installed().message_boxes = services.message_boxes;
    }
    if (services.event_queue != nullptr) {
        installed().event_queue = services.event_queue;
    }
    if (services.picture_loader != nullptr) {
        installed().picture_loader = services.picture_loader;
    }
    if (services.file_chooser != nullptr) {
        installed().file_chooser = services.file_chooser;
    }
}

ServicesInstallation::~ServicesInstallation() {
    installed() = before_;
}

void show_message(std::string_view text) {
    if (MessageBoxes* boxes = installed().message_boxes) {
        boxes->show(text);
    }
}

bool ask_yes_no(std::string_view question) {
    MessageBoxes* boxes = installed().message_boxes;
    return boxes == nullptr || boxes->ask(question);
}

void yield_to_events() {
    if (EventQueue* queue = installed().event_queue) {
        queue->yield();
    }
}

std::string choose_file_to_open(std::string_view filter) {
    FileChooser* chooser = installed().file_chooser;
    return chooser == nullptr ? std::string() : chooser->choose_to_open(filter);
}

std::string choose_file_to_save(std::string_view filter) {
    FileChooser* chooser = installed().file_chooser;
    return chooser == nullptr ? std::string() : chooser->choose_to_save(filter);
}

PictureLoader& picture_loader() {
    PictureLoader* loader = installed().picture_loader;
    if (loader == nullptr) {
        fail(Failure::InvalidPicture);
    }
    return *loader;
}

} // namespace varnoth
