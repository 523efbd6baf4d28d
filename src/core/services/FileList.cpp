#include "core/services/FileList.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "core/base/files.h"

namespace varnoth {

namespace {

bool is_digit(char character) {
    return character >= '0' && character <= '9';
}

char lower(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

// Removes the digits at the start of `text` and returns them without leading zeros.
std::string_view take_number(std::string_view& text) {
    const std::size_t end = std::min(text.find_first_not_of("0123456789"), text.size());
    std::string_view digits = text.substr(0, end);
    text.remove_prefix(end);
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    return digits;
}

int compare(std::string_view a, std::string_view b) {
    while (!a.empty() && !b.empty()) {
        if (is_digit(a.front()) && is_digit(b.front())) {
            const std::string_view left = take_number(a);
            const std::string_view right = take_number(b);
            if (left.size() != right.size()) {
                return left.size() < right.size() ? -1 : 1;
            }
            if (const int order = left.compare(right); order != 0) {
                return order;
            }
            continue;
        }
        const auto left = static_cast<unsigned char>(lower(a.front()));
        const auto right = static_cast<unsigned char>(lower(b.front()));
        if (left != right) {
            return left < right ? -1 : 1;
        }
        a.remove_prefix(1);
        b.remove_prefix(1);
    }
    return a.empty() == b.empty() ? 0 : a.empty() ? -1 : 1;
}

bool ends_in(std::string_view name, std::string_view extension) {
    return name.size() >= extension.size() &&
           std::ranges::equal(name.substr(name.size() - extension.size()), extension,
                              [](char a, char b) { return lower(a) == lower(b); });
}

} // namespace

bool comes_before(std::string_view a, std::string_view b) {
    const int order = compare(a, b);
    return order != 0 ? order < 0 : a < b;
}

std::vector<std::string> list_files(const std::string& folder, std::string_view extension) {
    std::vector<std::string> names;
    for (std::string& name : names_in(folder)) {
        if (ends_in(name, extension) && file_exists(join_path(folder, name))) {
            names.push_back(std::move(name));
        }
    }
    std::ranges::sort(names, comes_before);
    return names;
}

} // namespace varnoth
