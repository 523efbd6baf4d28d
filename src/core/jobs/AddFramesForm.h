// The import's interface to the Add Frame/s dialog: its file browser, size question, transparent colour and
// surfaces. Implemented by the dialog and by scripted users.
#pragma once

#include <cstdint>
#include <string>

#include "core/image/PictureSurface.h"
#include "core/jobs/PictureFormat.h"

namespace varnoth {

class AddFramesForm {
  public:
    virtual ~AddFramesForm() = default;

    // Combo1, Dir1 and File1.

    virtual PictureFormat format() const = 0;
    virtual std::string folder() const = 0;
    virtual std::int32_t entry_count() const = 0;

    /// The name of an entry, without the folder.
    virtual std::string entry(std::int32_t index) const = 0;
    virtual bool is_selected(std::int32_t index) const = 0;
    virtual void unselect(std::int32_t index) = 0;

    // ellabel6 and elradio1, the size question.

    /// Shows and enables the question with the captions of its two choices.
    virtual void open_size_question(const std::string& set_caption, const std::string& resize_caption) = 0;
    virtual void close_size_question() = 0;
    virtual bool size_question_open() const = 0;

    /// Whether "Set Sprite To" is chosen instead of "Resize Pictures To".
    virtual bool set_sprite_chosen() const = 0;

    /// The size that the question offers: that of the first selected picture.
    std::int32_t SizeChoiceWidth = 0;
    std::int32_t SizeChoiceHeight = 0;

    // elboton1 and Picture2, the transparent colour.

    virtual bool pick_enabled() const = 0;

    /// The background colour of Picture2.
    virtual Colour transparent_colour() const = 0;

    /// The preview of the file clicked last.
    virtual PictureSurface& Picture1() = 0;

    /// The loaded picture at its own size.
    virtual PictureSurface& Buffer1() = 0;

    /// The picture stretched to the frame size, without a border.
    virtual PictureSurface& Buffer2() = 0;

    /// The sheet of all collected colours, without a border.
    virtual PictureSurface& jojoPalette() = 0;
};

} // namespace varnoth
