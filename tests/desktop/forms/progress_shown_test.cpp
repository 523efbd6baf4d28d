// The progress dialog repaints itself even when no events are processed.
#include "desktop/controls/on_screen.h"
#include "desktop/forms/progress/Form6.h"

namespace varnoth {
namespace {

TEST(ProgressShown, RefreshPaintsWithoutAnEventLoop) {
    Form6 form;
    form.show();
    const QImage before = test::on_screen(form);
    form.Label2.SetCaption("frame.bmp");
    form.Progressbar1.SetMax(2);
    form.Progressbar1.SetValue(1);
    form.refresh();
    const QImage after =
        form.screen()->grabWindow(form.winId()).toImage().convertToFormat(QImage::Format_RGB32);
    EXPECT_NE(after, before);
    EXPECT_EQ(after, form.grab().toImage().convertToFormat(QImage::Format_RGB32));
}

} // namespace
} // namespace varnoth
