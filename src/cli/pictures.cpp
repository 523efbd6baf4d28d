#include "cli/pictures.h"

namespace varnoth::cli {} // namespace varnoth::cli
