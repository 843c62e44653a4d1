#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>

#include "util/Decimal.h"

namespace corvane::formatters {

/// One section of a number format, such as "$#,##0.00": what stands before and behind the number, and how
/// many digits it shows.
struct NumberPattern {
    /// Reads a section: "#" is a digit where there is one, "0" a digit in any case, "," groups thousands, "."
    /// begins the fraction. A section without digits shows a number as it is.
    [[nodiscard]] static NumberPattern fromSection(std::string_view section);

    std::string prefix;
    std::string suffix;
    std::size_t minimumIntegerDigits = 1;
    std::size_t minimumFractionDigits = 0;
    std::size_t maximumFractionDigits = std::numeric_limits<std::size_t>::max();
    bool grouped = false;
};

/// The sections of a format: "positive", "positive;negative" or "positive;zero;negative".
struct NumberFormat {
    [[nodiscard]] static NumberFormat fromText(std::string_view format);

    NumberPattern positive;
    NumberPattern zero;
    NumberPattern negative; ///< its prefix holds the sign
};

/// The digits of `number` without a sign, as `pattern` shows them.
[[nodiscard]] std::string digitsText(const util::Decimal& number, const NumberPattern& pattern,
                                     std::string_view decimalSeparator, std::string_view thousandSeparator);

} // namespace corvane::formatters
