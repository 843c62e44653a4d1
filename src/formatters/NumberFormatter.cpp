#include "formatters/NumberFormatter.h"

#include <algorithm>
#include <clocale>

#include "formatters/NumberPattern.h"
#include "util/TextFormat.h"

namespace corvane::formatters {
namespace {

std::string_view trimmed(std::string_view text) {
    static constexpr std::string_view blanks = " \t\n\r";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

/// Takes a pattern's surroundings off; false when they aren't there, and nothing is taken.
bool takeSurroundings(std::string_view& text, const NumberPattern& pattern) {
    if (text.size() < pattern.prefix.size() + pattern.suffix.size()) return false;
    if (!text.starts_with(pattern.prefix) || !text.ends_with(pattern.suffix)) return false;
    text.remove_prefix(pattern.prefix.size());
    text.remove_suffix(pattern.suffix.size());
    return true;
}

void removeAll(std::string& text, std::string_view what) {
    if (what.empty()) return;
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at))
        text.erase(at, what.size());
}

const NumberPattern& patternFor(const util::Decimal& number, const NumberFormat& format) {
    if (number.isZero()) return format.zero;
    return number.isNegative() ? format.negative : format.positive;
}

} // namespace

NumberFormatter::Separators NumberFormatter::separators() const {
    Separators result{settings_.decimalSeparator, settings_.thousandSeparator};
    if (!settings_.localizesFormat) return result;
    const auto* locale = std::localeconv();
    if (*locale->decimal_point) result.decimal = locale->decimal_point;
    if (*locale->thousands_sep) result.thousand = locale->thousands_sep;
    return result;
}

std::optional<std::string> NumberFormatter::stringForObjectValue(const util::Value& value) const {
    const auto number = util::decimalFromValue(value);
    if (!number) return std::nullopt;
    const auto format = NumberFormat::fromText(settings_.format);
    const auto& [mode, wanted] = settings_.roundingBehavior;
    const auto most = patternFor(*number, format).maximumFractionDigits;
    const auto shown = number->rounded(mode, std::min(wanted.value_or(most), most));
    auto pattern = patternFor(shown, format);
    pattern.grouped = pattern.grouped || settings_.hasThousandSeparators;
    const auto [decimal, thousand] = separators();
    return pattern.prefix + digitsText(shown, pattern, decimal, thousand) + pattern.suffix;
}

/// With the surroundings of one of the format's sections, or without any.
util::Decimal NumberFormatter::numberFromText(std::string_view text) const {
    const auto format = NumberFormat::fromText(settings_.format);
    const bool negativeIsMarked = !(format.negative.prefix + format.negative.suffix).empty();
    const bool negative = negativeIsMarked && takeSurroundings(text, format.negative);
    if (!negative) takeSurroundings(text, format.positive);
    const auto [decimal, thousand] = separators();
    const auto point = decimal.empty() ? text.size() : std::min(text.find(decimal), text.size());
    std::string digits(text.substr(0, point));
    if (settings_.hasThousandSeparators || format.positive.grouped) removeAll(digits, thousand);
    if (point < text.size()) digits.append(".").append(text.substr(point + decimal.size()));
    return util::Decimal::fromText(negative ? "-" + digits : digits);
}

std::string NumberFormatter::objectionTo(const util::Decimal& number, std::string_view text) const {
    const auto objection = [&](std::string_view format, const std::string& argument) {
        return util::formatted(strings_.localized(format), {argument});
    };
    if (number.isNotANumber()) return objection("“%@” is not a number.", std::string(text));
    if (!settings_.allowsFloats && !number.fractionDigits().empty())
        return objection("“%@” is not a whole number.", std::string(text));
    if (number < settings_.minimum)
        return objection("The number must be at least %@.", settings_.minimum.text());
    if (number > settings_.maximum)
        return objection("The number must be at most %@.", settings_.maximum.text());
    return "";
}

bool NumberFormatter::getObjectValueForString(util::Value* objectValue,
                                              std::optional<std::string_view> string,
                                              std::string* errorDescription) {
    if (!string) return false;
    const auto text = trimmed(*string);
    auto number = numberFromText(text);
    if (settings_.roundingBehavior.fractionDigits)
        number = number.rounded(settings_.roundingBehavior.mode, *settings_.roundingBehavior.fractionDigits);
    const auto objection = text.empty() ? "" : objectionTo(number, text);
    if (objection.empty() && objectValue) *objectValue = util::valueFromDecimal(number);
    if (!objection.empty() && errorDescription) *errorDescription = objection;
    return objection.empty();
}

bool NumberFormatter::isPartialStringValid(std::string_view /*partialString*/,
                                           std::optional<std::string>* /*newEditingString*/,
                                           std::string* /*errorDescription*/) {
    return true;
}

} // namespace corvane::formatters
