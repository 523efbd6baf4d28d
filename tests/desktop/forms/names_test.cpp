// Controls that the code itself does not look up also have object names.
#include <QWidget>

#include "desktop/forms/EditorTest.h"

namespace varnoth {
namespace {

using NamesTest = test::EditorTest;

TEST_F(NamesTest, PreviewBackgroundHasAName) {
    open_sprite(1);
    ui_driver::click(main().elboton4);
    const QWidget* const ground = coordinator_->form4()->findChild<QWidget*>("Picture3");
    ASSERT_NE(ground, nullptr);
    EXPECT_EQ(ground->geometry(), QRect(1, 1, 256, 256));
}

} // namespace
} // namespace varnoth
