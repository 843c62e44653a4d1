#pragma once

#include <compare>
#include <string_view>

namespace corvane::util {

/// Orders texts (UTF-8) without regard to the case of letters.
[[nodiscard]] std::strong_ordering compareCaseInsensitively(std::string_view a, std::string_view b);

/// As `compareCaseInsensitively`, with runs of decimal digits compared as numbers: 10.7 before 10.10.
[[nodiscard]] std::strong_ordering compareNumerically(std::string_view a, std::string_view b);

/// Orders texts as the user's locale does.
[[nodiscard]] std::strong_ordering compareInLocale(std::string_view a, std::string_view b);

} // namespace corvane::util
