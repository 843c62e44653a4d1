#include "util/TextComparison.h"

#include <algorithm>
#include <locale>
#include <string>

#include "util/CaseFolding.h"

namespace corvane::util {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::strong_ordering compareBytes(char a, char b) {
    return static_cast<unsigned char>(a) <=> static_cast<unsigned char>(b);
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
    const auto first = caseFolded(a), second = caseFolded(b);
    return std::lexicographical_compare_three_way(first.begin(), first.end(), second.begin(), second.end(),
                                                  compareBytes);
}

std::strong_ordering compareNumerically(std::string_view first, std::string_view second) {
    const auto firstFolded = caseFolded(first), secondFolded = caseFolded(second);
    std::string_view a = firstFolded, b = secondFolded;
    while (!a.empty() && !b.empty()) {
        const bool bothNumbers = isDigit(a.front()) && isDigit(b.front());
        const auto order =
            bothNumbers ? compareDigits(takeNumber(a), takeNumber(b)) : compareBytes(a.front(), b.front());
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
