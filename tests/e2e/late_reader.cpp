// Preloaded into the editor: delays Qt's thread that reads from the Wayland compositor whenever it wakes up,
// as a busy machine may. The thread waits for the main thread before it polls, so the delay decides what the
// main thread has done by then.

#include <dlfcn.h>
#include <pthread.h>

#include <array>
#include <chrono>
#include <cstring>
#include <thread>

#include <QDeadlineTimer>
#include <QMutex>
#include <QWaitCondition>

struct wl_display;

namespace {

using Wait = bool (*)(QWaitCondition*, QMutex*, QDeadlineTimer);
using Dispatch = int (*)(wl_display*);

constexpr std::chrono::milliseconds until_the_reader_waits{2};
constexpr std::chrono::milliseconds lateness{100};

/// The kernel keeps 15 characters of a thread's name; this one is WaylandEventThread.
bool is_reader() {
    std::array<char, 16> name{};
    return pthread_getname_np(pthread_self(), name.data(), name.size()) == 0 &&
           std::strcmp(name.data(), "WaylandEventThr") == 0;
}

} // namespace

// The dynamic linker finds these definitions first.

bool QWaitCondition::wait(QMutex* mutex, QDeadlineTimer deadline) {
    static const auto qt_waits =
        reinterpret_cast<Wait>(dlsym(RTLD_NEXT, "_ZN14QWaitCondition4waitEP6QMutex14QDeadlineTimer"));
    const bool woken = qt_waits(this, mutex, deadline);
    if (is_reader()) {
        mutex->unlock();
        std::this_thread::sleep_for(lateness);
        mutex->lock();
    }
    return woken;
}

// The main thread calls this before it wakes the reader; the delay lets the reader begin to wait.
extern "C" int wl_display_dispatch_pending(wl_display* display) {
    static void* const client = dlopen("libwayland-client.so.0", RTLD_NOW);
    static const auto dispatch = reinterpret_cast<Dispatch>(dlsym(client, "wl_display_dispatch_pending"));
    std::this_thread::sleep_for(until_the_reader_waits);
    return dispatch(display);
}
