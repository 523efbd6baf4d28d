// Owns the main window and opens, connects and closes the dialogs. Each dialog has at most one instance,
// which exists while it is open; the window that opened it is disabled meanwhile.
#pragma once

#include <memory>
#include <string>

#include <QObject>

namespace varnoth {

class Form;
class Form1;
class Form2;
class Form3;
class Form4;
class Form5;
class Form6;
class Form7;
struct ExtractionOptions;

class FormCoordinator : public QObject {
    Q_OBJECT

  public:
    FormCoordinator();
    ~FormCoordinator() override;

    /// Shows the main window.
    void start();

    Form1& form1() { return *form1_; }

    // The dialogs; null while closed.

    Form2* form2() { return form2_.get(); }

    Form3* form3() { return form3_.get(); }

    Form4* form4() { return form4_.get(); }

    Form5* form5() { return form5_.get(); }

    Form6* form6() { return form6_.get(); }

    Form7* form7() { return form7_.get(); }

  signals:
    /// A dialog was created. It is filled and shown next.
    void dialog_made(varnoth::Form& dialog);

    /// The main window's close box was clicked. The program ends at once, without a question and without
    /// saving.
    void ended();

    /// A frame was passed to the writer of this file.
    void frame_written(const std::string& path);

  private:
    void open_new();
    void open_import();
    void open_export();
    void open_preview();
    void open_folder();
    void take_folder(const std::string& folder);
    template <typename Dialog, typename... Arguments>
    Dialog& make(std::unique_ptr<Dialog>& dialog, Arguments&... arguments);
    Form6& make_progress(const Form& opener);
    void import();
    void extract(const ExtractionOptions& options);
    std::string first_folder(const std::string& last) const;

    class ImportWindows;
    class ExtractionWindows;

    std::unique_ptr<Form1> form1_;
    std::unique_ptr<Form2> form2_;
    std::unique_ptr<Form3> form3_;
    std::unique_ptr<Form4> form4_;
    std::unique_ptr<Form5> form5_;
    std::unique_ptr<Form6> form6_;
    std::unique_ptr<Form7> form7_;
    std::string picture_folder_; ///< the folder last shown in the Add Frame/s dialog
};

} // namespace varnoth
