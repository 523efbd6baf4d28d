// The test program of everything that needs Qt. It runs without a display.
#include <QApplication>
#include <QLoggingCategory>

#include <gtest/gtest.h>

#include "platform/qt/look.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Cut and broken pictures are the tests' daily bread; the readers' complaints about them would drown the
    // rest, as would what a platform without a display cannot do.
    QLoggingCategory::setFilterRules("qt.gui.imageio*=false\ndefault.warning=false");
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    varnoth::look::apply(application);
    return RUN_ALL_TESTS();
}
