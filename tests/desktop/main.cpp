// The test program of the code that needs Qt. It runs without a display.
#include <QApplication>
#include <QLoggingCategory>

#include <gtest/gtest.h>

#include "desktop/controls/parts/accessible.h"
#include "desktop/services/no_settings.h"
#include "desktop/theme/theme.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Tests compare single pixels, so the desktop's settings must not change them.
    qputenv("QT_SCALE_FACTOR", "1");
    qunsetenv("QT_QPA_PLATFORMTHEME");
    qunsetenv("QT_STYLE_OVERRIDE");
    // The tests load many truncated and broken pictures. Qt's warnings about them would bury all other
    // output, as would those about features that the offscreen platform lacks.
    QLoggingCategory::setFilterRules("qt.gui.imageio*=false\ndefault.warning=false");
    testing::InitGoogleTest(&argc, argv);
    varnoth::keep_no_settings(); // tests neither read nor write settings
    QApplication application(argc, argv);
    varnoth::theme::apply(application);
    varnoth::install_accessible_controls();
    return RUN_ALL_TESTS();
}
