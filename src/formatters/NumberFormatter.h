#pragma once

#include "platform/LocalizedStrings.h"
#include "toolkit/Formatter.h"
#include "util/Decimal.h"

namespace corvane::formatters {

/// How a number is brought to fewer digits. Without digits nothing is rounded.
struct RoundingBehavior {
    util::RoundingMode mode = util::RoundingMode::plain;
    std::optional<std::size_t> fractionDigits;
    friend bool operator==(const RoundingBehavior&, const RoundingBehavior&) = default;
};

/// What a number formatter is set to.
struct NumberSettings {
    std::string decimalSeparator = ".";
    std::string thousandSeparator = ",";
    bool hasThousandSeparators = false; ///< thousands are grouped, even where the format doesn't say so
    bool localizesFormat = false;       ///< the separators are those of the user's locale
    bool allowsFloats = true;
    RoundingBehavior roundingBehavior;
    util::Decimal minimum; ///< not a number: no bound
    util::Decimal maximum; ///< likewise
    std::string format;    ///< see `NumberFormat`; "" shows numbers as they are
};

/// The general formatter of numbers, exact with any number of digits. Anything may be typed; what is refused
/// when the edit is committed is described. Main thread.
class NumberFormatter : public toolkit::Formatter {
public:
    /// `strings` outlives the formatter.
    explicit NumberFormatter(const platform::LocalizedStrings& strings) : strings_(strings) {}

    void setDecimalSeparator(std::string_view separator) { settings_.decimalSeparator = separator; }
    [[nodiscard]] const std::string& decimalSeparator() const { return settings_.decimalSeparator; }
    void setThousandSeparator(std::string_view separator) { settings_.thousandSeparator = separator; }
    [[nodiscard]] const std::string& thousandSeparator() const { return settings_.thousandSeparator; }
    void setHasThousandSeparators(bool has) { settings_.hasThousandSeparators = has; }
    [[nodiscard]] bool hasThousandSeparators() const { return settings_.hasThousandSeparators; }
    void setLocalizesFormat(bool localizes) { settings_.localizesFormat = localizes; }
    [[nodiscard]] bool localizesFormat() const { return settings_.localizesFormat; }
    void setAllowsFloats(bool allows) { settings_.allowsFloats = allows; }
    [[nodiscard]] bool allowsFloats() const { return settings_.allowsFloats; }
    void setRoundingBehavior(const RoundingBehavior& behavior) { settings_.roundingBehavior = behavior; }
    [[nodiscard]] const RoundingBehavior& roundingBehavior() const { return settings_.roundingBehavior; }
    void setMinimum(const util::Decimal& minimum) { settings_.minimum = minimum; }
    [[nodiscard]] const util::Decimal& minimum() const { return settings_.minimum; }
    void setMaximum(const util::Decimal& maximum) { settings_.maximum = maximum; }
    [[nodiscard]] const util::Decimal& maximum() const { return settings_.maximum; }
    void setFormat(std::string_view format) { settings_.format = format; }
    [[nodiscard]] const std::string& format() const { return settings_.format; }

    /// A number, or a string that holds one with a ".", as the format shows it; none for other values.
    [[nodiscard]] std::optional<std::string> stringForObjectValue(const util::Value& value) const override;
    /// Reads what `stringForObjectValue` writes, and the number alone. The value is what
    /// `util::valueFromDecimal` makes; the empty string is no number and gives a null value.
    [[nodiscard]] bool getObjectValueForString(util::Value* objectValue,
                                               std::optional<std::string_view> string,
                                               std::string* errorDescription) override;
    /// Always true.
    [[nodiscard]] bool isPartialStringValid(std::string_view partialString,
                                            std::optional<std::string>* newEditingString,
                                            std::string* errorDescription) override;

private:
    struct Separators {
        std::string decimal;
        std::string thousand;
    };
    [[nodiscard]] Separators separators() const;
    [[nodiscard]] util::Decimal numberFromText(std::string_view text) const;
    /// Empty when the number is good.
    [[nodiscard]] std::string objectionTo(const util::Decimal& number, std::string_view text) const;

    const platform::LocalizedStrings& strings_;
    NumberSettings settings_;
};

} // namespace corvane::formatters
