#include "qt/platform/QtUserDefaults.h"

namespace corvane::qt {

namespace {
constexpr auto group = "Defaults";
}

std::optional<std::string> QtUserDefaults::stringForKey(std::string_view key) const {
    return file_.read(group, key);
}

void QtUserDefaults::setString(std::string_view key, std::string_view value) {
    file_.write(group, key, value);
}

bool QtUserDefaults::boolForKey(std::string_view key) const {
    if (const auto stored = file_.read(group, key)) return *stored == "true" || *stored == "1";
    const auto registered = registered_.find(key);
    return registered != registered_.end() && registered->second;
}

void QtUserDefaults::setBool(std::string_view key, bool value) {
    file_.write(group, key, value ? "true" : "false");
}

} // namespace corvane::qt
