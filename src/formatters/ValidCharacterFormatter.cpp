#include "formatters/ValidCharacterFormatter.h"

#include <algorithm>
#include <stdexcept>

#include "util/Leaves.h"

namespace corvane::formatters {
namespace {

void skipLineFeeds(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of('\n'), text.size()));
}

} // namespace

std::optional<std::string> ValidCharacterFormatter::stringForObjectValue(const util::Value& value) const {
    return value.description();
}

toolkit::AttributedString ValidCharacterFormatter::attributedStringForObjectValue(
    const util::Value& value, const toolkit::TextAttributes& defaultAttributes) const {
    const auto string = value.as<util::String>();
    if (!string) throw std::invalid_argument("only a string can be shown with attributes");
    return {string.text(), defaultAttributes};
}

bool ValidCharacterFormatter::getObjectValueForString(util::Value* objectValue,
                                                      std::optional<std::string_view> string,
                                                      std::string* /*errorDescription*/) {
    if (!objectValue || !string) return false;
    *objectValue = *string;
    return true;
}

bool ValidCharacterFormatter::isPartialStringValid(std::string_view partialString,
                                                   std::optional<std::string>* /*newEditingString*/,
                                                   std::string* /*errorDescription*/) {
    const auto set = getValidCharacterSet();
    skipLineFeeds(partialString);
    if (set) set->takeRun(partialString);
    skipLineFeeds(partialString);
    const bool atEnd = partialString.empty();
    if (!atEnd) beep();
    return atEnd;
}

} // namespace corvane::formatters
