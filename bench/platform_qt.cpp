#include "platform.h"

#include <cstdlib>

#include <QGuiApplication>

#include "platform/Services.h"
#include "platform/qt/QtEventQueue.h"
#include "platform/qt/QtPictureLoader.h"

namespace varnoth::bench {

namespace {

// Runs before the application object is made.
bool use_no_display() {
    return setenv("QT_QPA_PLATFORM", "offscreen", 0) == 0;
}

} // namespace

struct Platform::Parts {
    Parts(int& argc, char** argv) : application(argc, argv) {}

    bool without_display = use_no_display();
    QGuiApplication application;
    QtEventQueue queue;
    QtPictureLoader loader;
    ServicesInstallation installation{{nullptr, &queue, &loader}};
};

Platform::Platform(int& argc, char** argv) : parts_(std::make_unique<Parts>(argc, argv)) {}

Platform::~Platform() = default;

const char* Platform::name() {
    return "Qt";
}

} // namespace varnoth::bench
