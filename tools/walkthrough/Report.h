// Where a scripted user's events go: one line each, "kind: text".
#pragma once

#include <functional>
#include <string_view>

namespace varnoth::walkthrough {

/// Kinds: message, question, step, list, wrote.
using Report = std::function<void(std::string_view kind, std::string_view text)>;

} // namespace varnoth::walkthrough
