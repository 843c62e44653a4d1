#pragma once

#include "formatters/NumberFormatter.h"

namespace corvane::formatters {

/// Lets only digits be typed, and only what lies within the bounds. Nothing beeps. Main thread.
class NumberEnforcer final : public NumberFormatter {
public:
    /// With the settings of `numberFormatter`, or as a plain number formatter where there is none. The source
    /// isn't kept. `strings` outlives the formatter.
    explicit NumberEnforcer(const platform::LocalizedStrings& strings,
                            const NumberFormatter* numberFormatter = nullptr);

    /// Nothing, or the digits 0 to 9 alone and a number within the bounds.
    [[nodiscard]] bool stringIsValid(std::string_view string) const;

    /// A valid text can't become an invalid one; one that is invalid already takes any edit, so that it can
    /// be repaired. Nothing that is handed over is changed.
    [[nodiscard]] bool isPartialEditValid(std::string& partialString,
                                          toolkit::TextRange& proposedSelectedRange,
                                          std::string_view originalString,
                                          toolkit::TextRange originalSelectedRange,
                                          std::string* errorDescription) override;
};

} // namespace corvane::formatters
