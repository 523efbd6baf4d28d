// To be loaded before the editor's libraries: writes the text of every message box to a file, a line a box,
// so that a test from outside knows what a box says. A pixel tells that a box is there; this tells which.
// BOX_TEXTS names the file. What the box does stays as it is.

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

#include <QMessageBox>

namespace {

using SetText = void (*)(QMessageBox*, const QString&);

struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

void write_line(const QString& text) {
    const char* const path = std::getenv("BOX_TEXTS");
    const std::unique_ptr<std::FILE, Close> file(path != nullptr ? std::fopen(path, "a") : nullptr);
    if (file) {
        QString line = text;
        line.replace(QLatin1Char('\n'), QLatin1Char(' '));
        std::fprintf(file.get(), "%s\n", line.toUtf8().constData());
    }
}

} // namespace

// The dynamic linker finds this definition first; Qt's own comes next.
void QMessageBox::setText(const QString& text) {
    static const auto qt_sets =
        reinterpret_cast<SetText>(dlsym(RTLD_NEXT, "_ZN11QMessageBox7setTextERK7QString"));
    write_line(text);
    qt_sets(this, text);
}
