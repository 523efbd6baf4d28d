#include "cli/frame_list.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

#include <CLI/Error.hpp>

#include "cli/command.h"

namespace varnoth::cli {

namespace {

std::optional<std::uint32_t> number_in(std::string_view text) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return number;
}

} // namespace

FrameList::FrameList(const std::string& text) {
    const auto reject = [&] {
        throw CLI::ValidationError("--frames", "'" + text + "' is not a list of frames such as 0-3,7");
    };
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t comma = std::min(text.find(',', start), text.size());
        const std::string_view part = std::string_view(text).substr(start, comma - start);
        const std::size_t dash = part.find('-');
        const std::optional<std::uint32_t> first = number_in(part.substr(0, dash));
        const std::optional<std::uint32_t> last =
            dash == std::string_view::npos ? first : number_in(part.substr(dash + 1));
        if (!first || !last || *last < *first) {
            reject();
        }
        ranges_.emplace_back(*first, *last);
        start = comma + 1;
    }
}

std::vector<std::size_t> FrameList::select(std::size_t count, const std::string& file) const {
    std::vector<bool> chosen(count, ranges_.empty());
    for (const auto& [first, last] : ranges_) {
        if (last >= count) {
            throw CommandError(file, "there is no frame " + std::to_string(std::max(first, count)) +
                                         "; the last is " + std::to_string(count - 1));
        }
        for (std::size_t number = first; number <= last; ++number) {
            chosen[number] = true;
        }
    }
    std::vector<std::size_t> numbers;
    for (std::size_t number = 0; number < count; ++number) {
        if (chosen[number]) {
            numbers.push_back(number);
        }
    }
    return numbers;
}

} // namespace varnoth::cli
