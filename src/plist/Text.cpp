#include "plist/Text.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace corvane::plist {
namespace {

/// Takes one character off the front of well-formed UTF-8; none where it isn't.
std::optional<char32_t> takeCharacter(std::string_view& text) {
    const auto lead = static_cast<std::uint8_t>(text.front());
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    if (length == 0 || length > text.size()) return std::nullopt;
    char32_t character = length == 1 ? lead : lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        const auto byte = static_cast<std::uint8_t>(text[i]);
        if ((byte & 0xC0U) != 0x80) return std::nullopt;
        character = (character << 6U) | (byte & 0x3FU);
    }
    static constexpr std::array<char32_t, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
    if (character < smallest[length] || character > 0x10FFFF) return std::nullopt;
    if (character >= 0xD800 && character <= 0xDFFF) return std::nullopt;
    text.remove_prefix(length);
    return character;
}

void appendUtf8(std::string& text, char32_t character) {
    const auto byte = [&](char32_t bits) { text += static_cast<char>(static_cast<std::uint8_t>(bits)); };
    if (character < 0x80) return byte(character);
    if (character < 0x800) {
        byte(0xC0 | (character >> 6U));
    } else if (character < 0x10000) {
        byte(0xE0 | (character >> 12U));
        byte(0x80 | ((character >> 6U) & 0x3FU));
    } else {
        byte(0xF0 | (character >> 18U));
        byte(0x80 | ((character >> 12U) & 0x3FU));
        byte(0x80 | ((character >> 6U) & 0x3FU));
    }
    byte(0x80 | (character & 0x3FU));
}

bool isHighSurrogate(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool isLowSurrogate(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

bool isXmlCharacter(char32_t c) {
    return c == '\t' || c == '\n' || c == '\r' || (c >= 0x20 && c != 0xFFFE && c != 0xFFFF);
}

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

std::optional<int> number(std::string_view digits) {
    int value = 0;
    const auto [end, status] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (status != std::errc() || end != digits.data() + digits.size() || digits.front() == '-')
        return std::nullopt;
    return value;
}

} // namespace

std::optional<std::u16string> utf16FromUtf8(std::string_view text) {
    std::u16string units;
    units.reserve(text.size());
    while (!text.empty()) {
        const auto character = takeCharacter(text);
        if (!character) return std::nullopt;
        if (*character < 0x10000) {
            units += static_cast<char16_t>(*character);
        } else {
            units += static_cast<char16_t>(0xD800 + ((*character - 0x10000) >> 10U));
            units += static_cast<char16_t>(0xDC00 + ((*character - 0x10000) & 0x3FFU));
        }
    }
    return units;
}

std::optional<std::string> utf8FromUtf16(std::u16string_view units) {
    std::string text;
    text.reserve(units.size());
    for (std::size_t i = 0; i < units.size(); ++i) {
        if (isLowSurrogate(units[i])) return std::nullopt;
        if (!isHighSurrogate(units[i])) {
            appendUtf8(text, units[i]);
            continue;
        }
        if (i + 1 == units.size() || !isLowSurrogate(units[i + 1])) return std::nullopt;
        appendUtf8(text,
                   0x10000 + ((static_cast<char32_t>(units[i]) - 0xD800) << 10U) + (units[i + 1] - 0xDC00U));
        ++i;
    }
    return text;
}

bool isXmlText(std::string_view text) {
    while (!text.empty()) {
        const auto character = takeCharacter(text);
        if (!character || !isXmlCharacter(*character)) return false;
    }
    return true;
}

std::string base64(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::uint32_t group = 0;
        for (std::size_t k = 0; k < 3; ++k)
            group = (group << 8U) | (i + k < bytes.size() ? static_cast<std::uint8_t>(bytes[i + k]) : 0U);
        for (std::size_t k = 0; k < 4; ++k)
            text += i + k > bytes.size() ? '=' : alphabet[(group >> (18 - 6 * k)) & 63U];
    }
    return text;
}

std::optional<std::string> bytesFromBase64(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3 + 3); // grown in one piece, so that no copy stays behind
    std::uint32_t group = 0;
    std::size_t digits = 0;
    std::size_t padding = 0;
    for (const char c : text) {
        if (isSpace(c)) continue;
        const auto digit = alphabet.find(c);
        if (c == '=')
            ++padding;
        else if (digit == std::string_view::npos || padding != 0)
            return std::nullopt;
        group = (group << 6U) | (c == '=' ? 0U : static_cast<std::uint32_t>(digit));
        if (++digits % 4 != 0) continue;
        for (std::size_t k = 0; k < 3 - std::min<std::size_t>(padding, 3); ++k)
            bytes += static_cast<char>((group >> (16 - 8 * k)) & 255U);
        group = 0;
    }
    if (digits % 4 != 0 || padding > 2) return std::nullopt;
    return bytes;
}

std::optional<std::string> dateText(double secondsSinceEpoch) {
    using namespace std::chrono;
    if (!(secondsSinceEpoch >= -62135596800.0 && secondsSinceEpoch < 253402300800.0)) return std::nullopt;
    const sys_seconds instant{seconds(static_cast<std::int64_t>(std::floor(secondsSinceEpoch)))};
    const auto day = floor<days>(instant);
    const year_month_day date{day};
    const hh_mm_ss time{instant - day};
    char buffer[80];
    std::snprintf(buffer, sizeof buffer, "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    return std::string(buffer);
}

std::optional<double> secondsFromDateText(std::string_view text) {
    using namespace std::chrono;
    if (text.size() != 20 || text[4] != '-' || text[7] != '-' || text[10] != 'T' || text[13] != ':' ||
        text[16] != ':' || text[19] != 'Z')
        return std::nullopt;
    const auto y = number(text.substr(0, 4)), mo = number(text.substr(5, 2)), d = number(text.substr(8, 2));
    const auto h = number(text.substr(11, 2)), mi = number(text.substr(14, 2)),
               s = number(text.substr(17, 2));
    if (!y || !mo || !d || !h || !mi || !s || *y < 1 || *h > 23 || *mi > 59 || *s > 59) return std::nullopt;
    const year_month_day date{year(*y), month(static_cast<unsigned>(*mo)), day(static_cast<unsigned>(*d))};
    if (!date.ok()) return std::nullopt;
    const auto instant = sys_days(date) + hours(*h) + minutes(*mi) + seconds(*s);
    return static_cast<double>(duration_cast<seconds>(instant.time_since_epoch()).count());
}

} // namespace corvane::plist
