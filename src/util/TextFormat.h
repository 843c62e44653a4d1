#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::util {

/// Fills the placeholders %@, %d and %ld of a (localized) format in their order. A placeholder without an
/// argument stays as it is; an argument without a placeholder is left out; arguments are never formats.
[[nodiscard]] std::string formatted(std::string_view format,
                                    std::initializer_list<std::string_view> arguments);

/// The parts of a text between the separators, borrowed from it: one more than there are separators.
[[nodiscard]] std::vector<std::string_view> separated(std::string_view text, char separator);

} // namespace corvane::util
