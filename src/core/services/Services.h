// The platform services that the core calls: message boxes, the event queue, the picture loader and the file
// chooser. One set is installed at a time; the editor, its tests and its tools each install their own.
#pragma once

#include <string>
#include <string_view>

namespace varnoth {

struct Picture;

/// Messages and questions to the user.
class MessageBoxes {
  public:
    virtual ~MessageBoxes() = default;

    /// A message with an OK button under the application's title.
    virtual void show(std::string_view text) = 0;

    /// A question with Yes and No buttons; true for Yes.
    virtual bool ask(std::string_view question) = 0;
};

/// Keeps the windows responsive during a long job.
class EventQueue {
  public:
    virtual ~EventQueue() = default;

    /// Processes pending events. Cheap enough to be called for every row of a picture.
    virtual void yield() = 0;
};

/// Loads BMP and JPEG files. TGA and PCX files have their own readers, LoadTGA and LoadPCX.
class PictureLoader {
  public:
    virtual ~PictureLoader() = default;

    /// Decodes a BMP or JPEG file, recognised by its content, to a 32-bit picture of the file's own size.
    /// A file failure when it cannot be read, InvalidPicture when it cannot be decoded.
    virtual Picture load(const std::string& path) = 0;
};

/// Lets the user choose a sprite file.
class FileChooser {
  public:
    virtual ~FileChooser() = default;

    /// The path that the user chooses, "" when the dialog is cancelled. A filter is a name and a pattern
    /// separated by a bar: "Texts(*.txt)|*.txt".
    virtual std::string choose_to_open(std::string_view filter) = 0;
    virtual std::string choose_to_save(std::string_view filter) = 0;
};

/// A set of services to install. It does not own them.
struct Services {
    MessageBoxes* message_boxes = nullptr;
    EventQueue* event_queue = nullptr;
    PictureLoader* picture_loader = nullptr;
    FileChooser* file_chooser = nullptr;
};

/// Installs a set of services for its own lifetime. A null member leaves the previous service installed.
class ServicesInstallation {
  public:
    explicit ServicesInstallation(const Services& services);
    ~ServicesInstallation();

    ServicesInstallation(const ServicesInstallation&) = delete;
    ServicesInstallation& operator=(const ServicesInstallation&) = delete;

  private:
    Services before_;
};

/// These call the installed services. Without one, messages are dropped, questions are answered with Yes,
/// yield_to_events() does nothing and choosing a file is cancelled.
void show_message(std::string_view text);
bool ask_yes_no(std::string_view question);
void yield_to_events();
std::string choose_file_to_open(std::string_view filter);
std::string choose_file_to_save(std::string_view filter);

/// The installed picture loader. InvalidPicture when there is none.
PictureLoader& picture_loader();

} // namespace varnoth
