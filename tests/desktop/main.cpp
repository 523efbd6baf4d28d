// The test program of everything that needs Qt. It runs without a display.
#include <QApplication>
#include <QLoggingCategory>

#include <gtest/gtest.h>

#include "desktop/controls/parts/accessible.h"
#include "desktop/services/no_settings.h"
#include "desktop/theme/theme.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Pixels are looked at one by one, and no desktop has a say in them.
    qputenv("QT_SCALE_FACTOR", "1");
    qunsetenv("QT_QPA_PLATFORMTHEME");
    qunsetenv("QT_STYLE_OVERRIDE");
    // Cut and broken pictures are the tests' daily bread; the readers' complaints about them would drown the
    // rest, as would what a platform without a display cannot do.
    QLoggingCategory::setFilterRules("qt.gui.imageio*=false\ndefault.warning=false");
    testing::InitGoogleTest(&argc, argv);
    varnoth::keep_no_settings(); // neither read nor written by a test
    QApplication application(argc, argv);
    varnoth::theme::apply(application);
    varnoth::install_accessible_controls();
    return RUN_ALL_TESTS();
}
