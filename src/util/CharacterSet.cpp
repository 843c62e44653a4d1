#include "util/CharacterSet.h"

#include <algorithm>
#include <array>

namespace corvane::util {
namespace {

constexpr char32_t lastCharacter = 0x10FFFF;
constexpr char32_t replacement = 0xFFFD;

/// Bytes of the character that begins with this one; 0 where none does.
std::size_t lengthOfCharacter(unsigned char lead) {
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead < 0xE0) return 2;
    if (lead >= 0xE0 && lead < 0xF0) return 3;
    return lead >= 0xF0 && lead < 0xF5 ? 4 : 0;
}

/// Overlong forms, surrogates and what lies past the last character aren't well-formed.
bool isWellFormed(char32_t character, std::size_t length) {
    static constexpr std::array<char32_t, 5> smallest = {0, 0, 0x80, 0x800, 0x10000};
    return character >= smallest[length] && character <= lastCharacter &&
           !(character >= 0xD800 && character <= 0xDFFF);
}

/// The digit zero of each script; the nine other digits follow it.
constexpr std::array<char32_t, 68> zeros = {
    0x30,    0x660,   0x6F0,   0x7C0,   0x966,   0x9E6,   0xA66,   0xAE6,   0xB66,   0xBE6,
    0xC66,   0xCE6,   0xD66,   0xDE6,   0xE50,   0xED0,   0xF20,   0x1040,  0x1090,  0x17E0,
    0x1810,  0x1946,  0x19D0,  0x1A80,  0x1A90,  0x1B50,  0x1BB0,  0x1C40,  0x1C50,  0xA620,
    0xA8D0,  0xA900,  0xA9D0,  0xA9F0,  0xAA50,  0xABF0,  0xFF10,  0x104A0, 0x10D30, 0x11066,
    0x110F0, 0x11136, 0x111D0, 0x112F0, 0x11450, 0x114D0, 0x11650, 0x116C0, 0x11730, 0x118E0,
    0x11950, 0x11C50, 0x11D50, 0x11DA0, 0x11F50, 0x16A60, 0x16AC0, 0x16B50, 0x1D7CE, 0x1D7D8,
    0x1D7E2, 0x1D7EC, 0x1D7F6, 0x1E140, 0x1E2F0, 0x1E4F0, 0x1E950, 0x1FBF0};

} // namespace

char32_t takeCharacter(std::string_view& text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const auto length = lengthOfCharacter(lead);
    if (length == 1 || length == 0 || length > text.size()) {
        text.remove_prefix(1);
        return length == 1 ? lead : replacement;
    }
    char32_t character = lead & (0xFFU >> (length + 1));
    bool continued = true;
    for (std::size_t i = 1; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        continued = continued && (byte & 0xC0U) == 0x80;
        character = character << 6U | (byte & 0x3FU);
    }
    const bool good = continued && isWellFormed(character, length);
    text.remove_prefix(good ? length : 1);
    return good ? character : replacement;
}

std::string wellFormedText(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const auto before = text;
        const auto character = takeCharacter(text);
        const auto taken = before.substr(0, before.size() - text.size());
        // A well-formed U+FFFD has three bytes; one that stands for a broken byte has been taken for one.
        if (character == replacement && taken.size() == 1)
            result += "\xEF\xBF\xBD";
        else
            result += taken;
    }
    return result;
}

CharacterSet CharacterSet::range(char32_t start, char32_t length) {
    CharacterSet set;
    if (length > 0 && start <= lastCharacter)
        set.add({start, length - 1 > lastCharacter - start ? lastCharacter : start + length - 1});
    return set;
}

CharacterSet CharacterSet::charactersOf(std::string_view text) {
    CharacterSet set;
    while (!text.empty()) {
        const auto character = takeCharacter(text);
        set.add({character, character});
    }
    return set;
}

const CharacterSet& CharacterSet::decimalDigits() {
    static const CharacterSet digits = [] {
        CharacterSet set;
        for (const auto zero : zeros)
            set.add({zero, zero + 9});
        return set;
    }();
    return digits;
}

bool CharacterSet::contains(char32_t character) const {
    const auto after = std::ranges::upper_bound(ranges_, character, {}, &Range::first);
    return after != ranges_.begin() && std::prev(after)->last >= character;
}

CharacterSet CharacterSet::inverted() const {
    CharacterSet set;
    char32_t next = 0;
    for (const auto& range : ranges_) {
        if (range.first > next) set.ranges_.push_back({next, range.first - 1});
        next = range.last + 1;
    }
    if (next <= lastCharacter) set.ranges_.push_back({next, lastCharacter});
    return set;
}

CharacterSet CharacterSet::unitedWith(const CharacterSet& other) const {
    auto set = *this;
    for (const auto& range : other.ranges_)
        set.add(range);
    return set;
}

std::string_view CharacterSet::takeRun(std::string_view& text) const {
    const auto whole = text;
    while (!text.empty()) {
        auto rest = text;
        if (!contains(takeCharacter(rest))) break;
        text = rest;
    }
    return whole.substr(0, whole.size() - text.size());
}

/// Whatever the new range overlaps or touches becomes one range with it.
void CharacterSet::add(Range range) {
    const auto begin =
        std::ranges::find_if(ranges_, [&](const Range& there) { return there.last + 1 >= range.first; });
    auto end = begin;
    for (; end != ranges_.end() && end->first <= range.last + 1; ++end) {
        range.first = std::min(range.first, end->first);
        range.last = std::max(range.last, end->last);
    }
    ranges_.insert(ranges_.erase(begin, end), range);
}

} // namespace corvane::util
