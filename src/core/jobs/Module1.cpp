#include "core/jobs/Module1.h"

#include <algorithm>
#include <cstddef>

namespace varnoth::Module1 {

namespace {

constexpr const char* separators = "\\/";

} // namespace

std::string strip_folder(const std::string& path) {
    if (path.find_first_of(separators) == std::string::npos) {
        return path;
    }
    std::string result;
    std::size_t at = path.find_last_of(separators);
    while (at != std::string::npos) {
        result = path.substr(at + 1);
        if (!result.empty() || at == 0) {
            break;
        }
        at = path.find_last_of(separators, at - 1);
    }
    return result;
}

std::string folder_of(const std::string& path) {
    const std::size_t at = path.find_last_of(separators);
    return at == std::string::npos ? std::string() : path.substr(0, std::max(at, std::size_t{1}));
}

std::string strip_extension(const std::string& name) {
    std::size_t at = name.find('.');
    if (at == std::string::npos) {
        return name;
    }
    std::string result;
    while (at != std::string::npos && result.empty()) {
        result = name.substr(0, at);
        at = name.find('.', at + 1);
    }
    return result;
}

} // namespace varnoth::Module1
