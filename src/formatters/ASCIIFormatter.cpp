#include "formatters/ASCIIFormatter.h"

#include "util/Leaves.h"

namespace corvane::formatters {
namespace {

/// `text` without the characters of `set`.
std::string stripped(std::string_view text, const util::CharacterSet& set) {
    const auto others = set.inverted();
    std::string kept;
    while (!text.empty()) {
        kept += others.takeRun(text);
        set.takeRun(text);
    }
    return kept;
}

} // namespace

ASCIIFormatter::ASCIIFormatter(const platform::LocalizedStrings& strings)
    : strings_(strings), _fNonASCIICharSet(util::CharacterSet::range(0, 128).inverted()) {}

std::optional<std::string> ASCIIFormatter::stringForObjectValue(const util::Value& value) const {
    const auto string = value.as<util::String>();
    return string ? std::optional(string.text()) : std::nullopt;
}

bool ASCIIFormatter::getObjectValueForString(util::Value* objectValue, std::optional<std::string_view> string,
                                             std::string* errorDescription) {
    if (!string) return false;
    const auto ascii = stripped(*string, _fNonASCIICharSet);
    *objectValue = ascii;
    if (ascii.size() == string->size()) return true;
    *errorDescription = strings_.localized("This field must contain only ASCII (Roman) characters.");
    return false;
}

bool ASCIIFormatter::isPartialStringValid(std::string_view /*partialString*/,
                                          std::optional<std::string>* /*newEditingString*/,
                                          std::string* /*errorDescription*/) {
    return true;
}

} // namespace corvane::formatters
