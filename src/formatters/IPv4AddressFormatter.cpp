#include "formatters/IPv4AddressFormatter.h"

#include <algorithm>
#include <vector>

#include "util/TextFormat.h"

namespace corvane::formatters {
namespace {

constexpr std::size_t partsOfAnAddress = 4;
constexpr int firstTooGreat = 256;

/// The number that `part` begins with, line feeds before it aside; 0 without one, and `firstTooGreat` for
/// whatever is greater. Only the digits 0 to 9 make a number: a digit of another script may be typed and
/// counts as none.
int integerValue(std::string_view part) {
    part.remove_prefix(std::min(part.find_first_not_of('\n'), part.size()));
    int value = 0;
    for (const char c : part) {
        if (c < '0' || c > '9') break;
        value = std::min(value * 10 + (c - '0'), firstTooGreat);
    }
    return value;
}

bool isGoodPart(std::string_view part) { return !part.empty() && integerValue(part) < firstTooGreat; }

/// Can it still become an address? Only the last part may be empty.
bool isBeginningOfAddress(std::string_view text) {
    auto parts = util::separated(text, '.');
    if (parts.size() > partsOfAnAddress) return false;
    if (parts.back().empty()) parts.pop_back();
    return std::ranges::all_of(parts, isGoodPart);
}

bool isAddress(std::string_view text) {
    const auto parts = util::separated(text, '.');
    return parts.size() == partsOfAnAddress && std::ranges::all_of(parts, isGoodPart);
}

} // namespace

bool IPv4AddressFormatter::isPartialStringValid(std::string_view partialString,
                                                std::optional<std::string>* newEditingString,
                                                std::string* errorDescription) {
    if (!DottedAddressFormatter::isPartialStringValid(partialString, newEditingString, errorDescription))
        return false;
    const bool good = isBeginningOfAddress(partialString);
    if (!good) beep();
    return good;
}

bool IPv4AddressFormatter::getObjectValueForString(util::Value* objectValue,
                                                   std::optional<std::string_view> string,
                                                   std::string* errorDescription) {
    if (!string) return false;
    // The check of the characters beeps where it refuses; a bad number doesn't.
    const bool good = DottedAddressFormatter::isPartialStringValid(*string, nullptr, nullptr) &&
                      (string->empty() || isAddress(*string));
    if (good && objectValue) *objectValue = *string;
    if (!good && errorDescription) *errorDescription = strings_.localized("IPv4 address required.");
    return good;
}

} // namespace corvane::formatters
