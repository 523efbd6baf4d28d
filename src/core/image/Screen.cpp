#include "core/image/Screen.h"

namespace varnoth {

Screen& screen() {
    static Screen the_screen;
    return the_screen;
}

} // namespace varnoth
