#pragma once

#include <compare>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "util/Value.h"

namespace corvane::util {

/// Which neighbour a decimal number goes to when digits are cut off.
enum class RoundingMode {
    plain,   ///< to the nearer one, away from zero at the half
    down,    ///< to the smaller one
    up,      ///< to the greater one
    bankers, ///< to the nearer one, to the even digit at the half
};

/// A decimal number, exact however many digits it has, or no number at all. Any thread.
class Decimal {
public:
    /// Not a number.
    Decimal() = default;
    /// Reads an optional "-" or "+", ASCII digits and an optional fraction after "."; at least one digit.
    /// Anything else gives not a number.
    [[nodiscard]] static Decimal fromText(std::string_view text);

    [[nodiscard]] bool isNotANumber() const { return notANumber_; }
    [[nodiscard]] bool isNegative() const { return negative_; }
    [[nodiscard]] bool isZero() const { return !notANumber_ && integer_.empty() && fraction_.empty(); }
    /// Digits before the separator, without leading zeros: none for 0.5.
    [[nodiscard]] const std::string& integerDigits() const { return integer_; }
    /// Digits behind it, without trailing zeros.
    [[nodiscard]] const std::string& fractionDigits() const { return fraction_; }
    /// "-12.5", in the form that `fromText` reads; "NaN".
    [[nodiscard]] std::string text() const;

    /// With at most `digits` digits behind the separator.
    [[nodiscard]] Decimal rounded(RoundingMode mode, std::size_t digits) const;

    /// Not a number is neither less than, nor equal to, nor greater than anything.
    friend std::partial_ordering operator<=>(const Decimal& a, const Decimal& b);
    friend bool operator==(const Decimal& a, const Decimal& b) { return (a <=> b) == 0; }

private:
    bool notANumber_ = true;
    bool negative_ = false;
    std::string integer_;
    std::string fraction_;
};

/// The number as a value: an integer or a floating number where one of them holds it exactly as it is
/// written, an opaque leaf that holds the decimal number itself otherwise. Null for not a number.
[[nodiscard]] Value valueFromDecimal(const Decimal& number);
/// The number in a value of that kind, or written in a text; none in any other value.
[[nodiscard]] std::optional<Decimal> decimalFromValue(const Value& value);

} // namespace corvane::util
