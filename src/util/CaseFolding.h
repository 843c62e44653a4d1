#pragma once

#include <string>
#include <string_view>

namespace corvane::util {

/// The text (UTF-8) with each character in the form that it shares with its other cases: texts that differ in
/// case only are equal then. One character stays one ("ß" and "ss" are two texts). Bytes that are no
/// well-formed UTF-8 stay as they are. Any thread.
[[nodiscard]] std::string caseFolded(std::string_view text);

/// Whether `text` contains `part` somewhere, without regard to case.
[[nodiscard]] bool containsCaseInsensitively(std::string_view text, std::string_view part);

} // namespace corvane::util
