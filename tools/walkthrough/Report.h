// Receives the events of the scripted user, which are printed one per line as "kind: text".
#pragma once

#include <functional>
#include <string_view>

namespace varnoth::walkthrough {

/// Kinds: message, question, step, list, wrote.
using Report = std::function<void(std::string_view kind, std::string_view text)>;

} // namespace varnoth::walkthrough
