#include "core/sprite/SpriteFile.h"

namespace varnoth {} // namespace varnoth
