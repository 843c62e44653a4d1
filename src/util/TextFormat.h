#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace corvane::util {

/// Fills the placeholders %@, %d and %ld of a (localized) format in their order. A placeholder without an
/// argument stays as it is; an argument without a placeholder is left out; arguments are never formats.
[[nodiscard]] std::string formatted(std::string_view format,
                                    std::initializer_list<std::string_view> arguments);

} // namespace corvane::util
