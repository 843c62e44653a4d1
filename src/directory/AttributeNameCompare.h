#pragma once

#include <compare>
#include <string_view>

namespace corvane::directory {

/// Orders names of directory attribute types: every standard one before every native one, otherwise as the
/// user's locale orders texts.
[[nodiscard]] std::strong_ordering compareAttributeName(std::string_view name, std::string_view other);

} // namespace corvane::directory
