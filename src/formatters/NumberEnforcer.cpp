#include "formatters/NumberEnforcer.h"

#include <algorithm>

namespace corvane::formatters {

NumberEnforcer::NumberEnforcer(const platform::LocalizedStrings& strings,
                               const NumberFormatter* numberFormatter)
    : NumberFormatter(strings) {
    if (!numberFormatter) return;
    setDecimalSeparator(numberFormatter->decimalSeparator());
    setThousandSeparator(numberFormatter->thousandSeparator());
    setHasThousandSeparators(numberFormatter->hasThousandSeparators());
    setLocalizesFormat(numberFormatter->localizesFormat());
    setAllowsFloats(numberFormatter->allowsFloats());
    setRoundingBehavior(numberFormatter->roundingBehavior());
    setMinimum(numberFormatter->minimum());
    setMaximum(numberFormatter->maximum());
    setFormat(numberFormatter->format());
}

bool NumberEnforcer::stringIsValid(std::string_view string) const {
    // No sign and no separator, even where the settings allow negative numbers or fractions: what is enforced
    // is an unsigned whole number, on purpose.
    if (!std::ranges::all_of(string, [](char c) { return c >= '0' && c <= '9'; })) return false;
    const auto number = util::Decimal::fromText(string);
    // A bound that isn't set is not a number, and nothing is greater or less than that. The empty text is
    // none too.
    return !(number > maximum()) && !(number < minimum());
}

bool NumberEnforcer::isPartialEditValid(std::string& partialString,
                                        toolkit::TextRange& /*proposedSelectedRange*/,
                                        std::string_view originalString,
                                        toolkit::TextRange /*originalSelectedRange*/,
                                        std::string* /*errorDescription*/) {
    return stringIsValid(partialString) || !stringIsValid(originalString);
}

} // namespace corvane::formatters
