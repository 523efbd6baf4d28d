#include "desktop/controls/parts/ShadowedText.h"

#include <cmath>

namespace varnoth {

namespace {

constexpr double shadow_offset = 1;

} // namespace

ShadowedText::ShadowedText(double left, double top) {
    text.Left = left;
    text.Top = top;
    shadow.Left = left + shadow_offset;
    shadow.Top = top + shadow_offset;
    shadow.set_shadow_of(text);
}

void ShadowedText::set_auto_size() {
    text.set_auto_size();
    shadow.set_auto_size();
}

void ShadowedText::SetCaption(const QString& caption) {
    text.SetCaption(caption);
    shadow.SetCaption(caption);
}

void ShadowedText::SetFont(const QFont& font) {
    text.SetFont(font);
    shadow.SetFont(font);
}

void ShadowedText::set_shadow(bool shown) {
    shadow.Visible = shown;
    shadow.Enabled = shown;
}

void ShadowedText::set_left(double left) {
    text.Left = left;
    shadow.Left = left + shadow_offset;
}

void ShadowedText::centre_in(double height) {
    if (text.Height < height) {
        text.Top = std::trunc(height / 2 - text_height(text.Font()) / 2);
        shadow.Top = text.Top + shadow_offset;
    }
}

} // namespace varnoth
