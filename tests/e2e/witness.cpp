// Preloaded into the editor: reports to a test what it cannot see on the screen. Appends the text of every
// message box, one line each, to the file named by WITNESS_TEXTS, and writes the number of allocated bytes to
// the file named by WITNESS_MEMORY once a second. The behaviour of the editor does not change.

#include <dlfcn.h>
#include <malloc.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <thread>

#include <QMessageBox>

namespace {

using SetText = void (*)(QMessageBox*, const QString&);

struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

std::unique_ptr<std::FILE, Close> open_named_by(const char* variable, const char* mode) {
    const char* const path = std::getenv(variable);
    return std::unique_ptr<std::FILE, Close>(path != nullptr ? std::fopen(path, mode) : nullptr);
}

void write_line(const QString& text) {
    if (const auto file = open_named_by("WITNESS_TEXTS", "a")) {
        QString line = text;
        line.replace(QLatin1Char('\n'), QLatin1Char(' '));
        std::fprintf(file.get(), "%s\n", line.toUtf8().constData());
    }
}

// Runs until the program exits.
void report_memory() {
    const auto file = open_named_by("WITNESS_MEMORY", "w");
    while (file) {
        const struct mallinfo2 memory = mallinfo2();
        std::rewind(file.get());
        std::fprintf(file.get(), "%12zu\n", memory.uordblks + memory.hblkhd);
        std::fflush(file.get());
        std::this_thread::sleep_for(std::chrono::seconds(1));
    }
}

struct Witness {
    Witness() { std::thread(report_memory).detach(); }
};

const Witness witness;

} // namespace

// The dynamic linker finds this definition before Qt's.
void QMessageBox::setText(const QString& text) {
    static const auto qt_sets =
        reinterpret_cast<SetText>(dlsym(RTLD_NEXT, "_ZN11QMessageBox7setTextERK7QString"));
    write_line(text);
    qt_sets(this, text);
}
