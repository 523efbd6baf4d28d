// The platform services that the program calls by itself: message boxes, the yield to the event queue, the
// picture loader and the file chooser. One set is installed at a time; the program, its tests and its tools
// install their own.
#pragma once

#include <string>
#include <string_view>

namespace varnoth {

struct Picture;

/// How the program talks to its user.
class MessageBoxes {
  public:
    virtual ~MessageBoxes() = default;

    /// A message with an OK button under the application's title.
    virtual void show(std::string_view text) = 0;

    /// A question with Yes and No buttons; true for Yes.
    virtual bool ask(std::string_view question) = 0;
};

/// How a long job keeps the windows alive.
class EventQueue {
  public:
    virtual ~EventQueue() = default;

    /// Lets pending events run. Cheap enough to be called at every row of a picture.
    virtual void yield() = 0;
};

/// How BMP and JPEG files become pictures; TGA and PCX have readers of the program's own.
class PictureLoader {
  public:
    virtual ~PictureLoader() = default;

    /// Decodes a BMP or JPEG file, told by its content, to a 32-bit picture of the file's own size.
    /// FileNotFound and the like when it cannot be read, InvalidPicture when it does not decode.
    virtual Picture load(const std::string& path) = 0;
};

/// How the user names a sprite file.
class FileChooser {
  public:
    virtual ~FileChooser() = default;

    /// The path of a sprite file that the user chooses, "" when the choice is cancelled. A filter is a name
    /// and a pattern with a bar between them: "Texts(*.txt)|*.txt".
    virtual std::string choose_to_open(std::string_view filter) = 0;
    virtual std::string choose_to_save(std::string_view filter) = 0;
};

/// A set to install. It owns nothing.
struct Services {
    MessageBoxes* message_boxes = nullptr;
    EventQueue* event_queue = nullptr;
    PictureLoader* picture_loader = nullptr;
    FileChooser* file_chooser = nullptr;
};

/// Installs a set of services for its own lifetime; a null member keeps what was installed before.
class ServicesInstallation {
  public:
    explicit ServicesInstallation(const Services& services);
    ~ServicesInstallation();

    ServicesInstallation(const ServicesInstallation&) = delete;
    ServicesInstallation& operator=(const ServicesInstallation&) = delete;

  private:
    Services before_;
};

/// The calls on the installed set. With nothing installed, messages are dropped, questions answered with Yes,
/// the yield does nothing and every choice of a file is cancelled.
void show_message(std::string_view text);
bool ask_yes_no(std::string_view question);
void yield_to_events();
std::string choose_file_to_open(std::string_view filter);
std::string choose_file_to_save(std::string_view filter);

/// The installed picture loader. InvalidPicture when there is none.
PictureLoader& picture_loader();

} // namespace varnoth
