#include "util/CaseFolding.h"

#include <locale.h>
#include <wctype.h>

#include <algorithm>

#include "util/CharacterSet.h"

namespace corvane::util {
namespace {

constexpr char32_t replacement = 0xFFFD; ///< what `takeCharacter` returns for a byte that begins none

char foldedAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool isAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// The C library's tables of Unicode; null where it has none, and only ASCII letters are folded then.
locale_t unicodeTables() {
    static const locale_t tables = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", static_cast<locale_t>(nullptr));
    return tables;
}

/// By way of the capital letter, so that the two small sigmas become one.
char32_t folded(char32_t character) {
    const auto tables = unicodeTables();
    if (tables == nullptr)
        return character < 0x80 ? static_cast<char32_t>(foldedAscii(char(character))) : character;
    const auto capital = ::towupper_l(static_cast<wint_t>(character), tables);
    return static_cast<char32_t>(::towlower_l(capital, tables));
}

void appendUtf8(std::string& text, char32_t c) {
    const auto add = [&text](char32_t byte) { text += static_cast<char>(byte); };
    if (c < 0x80) return add(c);
    if (c < 0x800) {
        add(0xC0U | c >> 6U);
    } else if (c < 0x10000) {
        add(0xE0U | c >> 12U);
        add(0x80U | (c >> 6U & 0x3FU));
    } else {
        add(0xF0U | c >> 18U);
        add(0x80U | (c >> 12U & 0x3FU));
        add(0x80U | (c >> 6U & 0x3FU));
    }
    add(0x80U | (c & 0x3FU));
}

} // namespace

std::string caseFolded(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        if (static_cast<unsigned char>(text.front()) < 0x80) {
            result += foldedAscii(text.front());
            text.remove_prefix(1);
            continue;
        }
        const auto before = text;
        const auto character = takeCharacter(text);
        if (character == replacement)
            result += before.substr(0, before.size() - text.size());
        else
            appendUtf8(result, folded(character));
    }
    return result;
}

bool containsCaseInsensitively(std::string_view text, std::string_view part) {
    if (!isAscii(text) || !isAscii(part)) return caseFolded(text).find(caseFolded(part)) != std::string::npos;
    const auto same = [](char a, char b) { return foldedAscii(a) == foldedAscii(b); };
    return part.empty() ||
           std::search(text.begin(), text.end(), part.begin(), part.end(), same) != text.end();
}

} // namespace corvane::util
