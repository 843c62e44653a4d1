#include "util/TextComparison.h"

#include <algorithm>
#include <locale>

namespace corvane::util {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
char folded(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::strong_ordering compareCharacters(char a, char b) {
    return static_cast<unsigned char>(folded(a)) <=> static_cast<unsigned char>(folded(b));
}

/// Takes the digits at the front off `text`, without their leading zeros. Numbers of any length compare.
std::string_view takeNumber(std::string_view& text) {
    const auto end = std::ranges::find_if_not(text, isDigit);
    auto digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(digits.size());
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    return digits;
}

std::strong_ordering compareDigits(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return a.size() <=> b.size();
    return a <=> b;
}

} // namespace

std::strong_ordering compareCaseInsensitively(std::string_view a, std::string_view b) {
    return std::lexicographical_compare_three_way(a.begin(), a.end(), b.begin(), b.end(), compareCharacters);
}

std::strong_ordering compareNumerically(std::string_view a, std::string_view b) {
    while (!a.empty() && !b.empty()) {
        const bool bothNumbers = isDigit(a.front()) && isDigit(b.front());
        const auto order = bothNumbers ? compareDigits(takeNumber(a), takeNumber(b))
                                       : compareCharacters(a.front(), b.front());
        if (order != 0) return order;
        if (bothNumbers) continue;
        a.remove_prefix(1);
        b.remove_prefix(1);
    }
    return a.size() <=> b.size();
}

std::strong_ordering compareInLocale(std::string_view a, std::string_view b) {
    const auto& rules = std::use_facet<std::collate<char>>(std::locale());
    return rules.compare(a.data(), a.data() + a.size(), b.data(), b.data() + b.size()) <=> 0;
}

} // namespace corvane::util
