#include "views/VisualFormat.h"

#include <charconv>
#include <cstdint>
#include <stdexcept>

namespace corvane::views {
namespace {

bool take(std::string_view& text, std::string_view expected) {
    if (!text.starts_with(expected)) return false;
    text.remove_prefix(expected.size());
    return true;
}

std::string_view takeName(std::string_view& text) {
    const auto name = text.substr(0, text.find_first_of("()[]="));
    text.remove_prefix(name.size());
    return name;
}

bool takeNumber(std::string_view& text, std::int64_t& number) {
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(static_cast<std::size_t>(result.ptr - text.data()));
    return result.ec == std::errc();
}

} // namespace

VisualFormat VisualFormat::fromText(std::string_view format) {
    auto rest = format;
    const bool vertical = take(rest, "V:");
    const bool begins = (vertical || take(rest, "H:")) && take(rest, "[");
    const auto name = takeName(rest);
    std::int64_t constant = 0;
    if (!begins || name.empty() || !take(rest, "(==") || !takeNumber(rest, constant) || rest != ")]")
        throw std::invalid_argument("a visual format that can't be understood: " + std::string(format));
    return {vertical ? toolkit::LayoutAttribute::height : toolkit::LayoutAttribute::width, std::string(name),
            static_cast<double>(constant)};
}

} // namespace corvane::views
