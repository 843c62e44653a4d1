#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace corvane::util {

/// Takes the first character off `text` (UTF-8, not empty). A byte that begins no well-formed character
/// counts as a character of its own, U+FFFD.
[[nodiscard]] char32_t takeCharacter(std::string_view& text);

/// The text with U+FFFD in place of each byte that begins no well-formed character.
[[nodiscard]] std::string wellFormedText(std::string_view text);

/// A set of Unicode characters, U+0000 to U+10FFFF. Any thread.
class CharacterSet {
public:
    CharacterSet() = default;
    /// `length` characters from `start` on.
    [[nodiscard]] static CharacterSet range(char32_t start, char32_t length);
    /// The characters of a text in UTF-8.
    [[nodiscard]] static CharacterSet charactersOf(std::string_view text);
    /// The decimal digits of all scripts.
    [[nodiscard]] static const CharacterSet& decimalDigits();

    [[nodiscard]] bool contains(char32_t character) const;
    /// Everything that isn't in this set.
    [[nodiscard]] CharacterSet inverted() const;
    [[nodiscard]] CharacterSet unitedWith(const CharacterSet& other) const;

    /// Takes the longest run of this set's characters off the front of `text` and answers it.
    std::string_view takeRun(std::string_view& text) const;

    friend bool operator==(const CharacterSet&, const CharacterSet&) = default;

private:
    struct Range {
        char32_t first;
        char32_t last; ///< included
        friend bool operator==(const Range&, const Range&) = default;
    };
    void add(Range range);

    std::vector<Range> ranges_; ///< ascending, none touches the next
};

} // namespace corvane::util
