#include "util/TextFormat.h"

#include <array>

namespace corvane::util {
namespace {

/// Length of the placeholder at the front of `text`, 0 when there is none.
std::size_t placeholderLength(std::string_view text) {
    static constexpr std::array<std::string_view, 3> placeholders = {"%@", "%d", "%ld"};
    for (const auto placeholder : placeholders)
        if (text.starts_with(placeholder)) return placeholder.size();
    return 0;
}

} // namespace

std::string formatted(std::string_view format, std::initializer_list<std::string_view> arguments) {
    std::string text;
    const auto* argument = arguments.begin();
    while (!format.empty()) {
        const auto length = placeholderLength(format);
        if (length > 0 && argument != arguments.end()) {
            text += *argument++;
            format.remove_prefix(length);
        } else {
            text += format.front();
            format.remove_prefix(1);
        }
    }
    return text;
}

std::vector<std::string_view> separated(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (auto end = text.find(separator); end != std::string_view::npos; end = text.find(separator)) {
        parts.push_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    parts.push_back(text);
    return parts;
}

} // namespace corvane::util
