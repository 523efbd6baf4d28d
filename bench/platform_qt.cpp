#include "platform.h"

#include <QCoreApplication>

#include "core/services/Services.h"
#include "desktop/services/QtEventQueue.h"
#include "qt/QtPictureLoader.h"

namespace varnoth::bench {

struct Platform::Parts {
    Parts(int& argc, char** argv) : application(argc, argv) {}

    QCoreApplication application;
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
