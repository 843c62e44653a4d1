#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvane::plist {

/// UTF-8 as UTF-16 code units; none when the text is not well-formed UTF-8.
[[nodiscard]] std::optional<std::u16string> utf16FromUtf8(std::string_view text);
/// UTF-16 code units as UTF-8; none when a surrogate stands alone.
[[nodiscard]] std::optional<std::string> utf8FromUtf16(std::u16string_view units);
/// True for well-formed UTF-8 whose characters may all stand in an XML document.
[[nodiscard]] bool isXmlText(std::string_view text);

/// Bytes as base 64 with padding, and back; white space is skipped. None on anything else.
[[nodiscard]] std::string base64(std::string_view bytes);
[[nodiscard]] std::optional<std::string> bytesFromBase64(std::string_view text);

/// "2026-01-31T23:59:59Z" from seconds since 1970, fractions dropped; none outside the years 1 to 9999.
[[nodiscard]] std::optional<std::string> dateText(double secondsSinceEpoch);
[[nodiscard]] std::optional<double> secondsFromDateText(std::string_view text);

} // namespace corvane::plist
