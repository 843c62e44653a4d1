#include "formatters/NumberPattern.h"

#include <algorithm>
#include <vector>

#include "util/TextFormat.h"

namespace corvane::formatters {
namespace {

constexpr std::string_view patternCharacters = "#0,.";

std::size_t count(std::string_view text, char c) {
    return static_cast<std::size_t>(std::ranges::count(text, c));
}

std::string grouped(std::string digits, std::string_view separator) {
    for (auto at = digits.size(); at > 3;) {
        at -= 3;
        digits.insert(at, separator);
    }
    return digits;
}

} // namespace

NumberPattern NumberPattern::fromSection(std::string_view section) {
    NumberPattern pattern;
    const auto begin = section.find_first_of(patternCharacters);
    if (begin == std::string_view::npos) return pattern;
    const auto end = section.find_last_of(patternCharacters) + 1;
    const auto digits = section.substr(begin, end - begin);
    const auto point = std::min(digits.find('.'), digits.size());
    const auto integer = digits.substr(0, point);
    const auto fraction = digits.substr(point);
    pattern.prefix = section.substr(0, begin);
    pattern.suffix = section.substr(end);
    pattern.minimumIntegerDigits = count(integer, '0');
    pattern.minimumFractionDigits = count(fraction, '0');
    pattern.maximumFractionDigits = pattern.minimumFractionDigits + count(fraction, '#');
    pattern.grouped = integer.find(',') != std::string_view::npos;
    return pattern;
}

NumberFormat NumberFormat::fromText(std::string_view format) {
    const auto parts = util::separated(format, ';');
    NumberFormat result;
    result.positive = NumberPattern::fromSection(parts.front());
    result.zero = parts.size() > 2 ? NumberPattern::fromSection(parts[1]) : result.positive;
    result.negative = result.positive;
    if (parts.size() > 1)
        result.negative = NumberPattern::fromSection(parts[std::min<std::size_t>(parts.size() - 1, 2)]);
    else
        result.negative.prefix.insert(0, "-");
    return result;
}

std::string digitsText(const util::Decimal& number, const NumberPattern& pattern,
                       std::string_view decimalSeparator, std::string_view thousandSeparator) {
    auto integer = number.integerDigits();
    if (integer.size() < pattern.minimumIntegerDigits)
        integer.insert(0, pattern.minimumIntegerDigits - integer.size(), '0');
    if (pattern.grouped) integer = grouped(std::move(integer), thousandSeparator);
    auto fraction = number.fractionDigits();
    if (fraction.size() < pattern.minimumFractionDigits) fraction.resize(pattern.minimumFractionDigits, '0');
    if (fraction.empty()) return integer.empty() ? "0" : integer;
    return integer + std::string(decimalSeparator) + fraction;
}

} // namespace corvane::formatters
