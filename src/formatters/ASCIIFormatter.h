#pragma once

#include "platform/LocalizedStrings.h"
#include "toolkit/Formatter.h"
#include "util/CharacterSet.h"

namespace corvane::formatters {

/// Any text may be typed, but only characters U+0000 to U+007F are accepted in the end. Main thread.
class ASCIIFormatter final : public toolkit::Formatter {
public:
    /// `strings` outlives the formatter.
    explicit ASCIIFormatter(const platform::LocalizedStrings& strings);

    /// A string as it is; none for any other value.
    [[nodiscard]] std::optional<std::string> stringForObjectValue(const util::Value& value) const override;
    /// A refused text gives its ASCII characters as the object value beside the description. Neither place
    /// may be null.
    [[nodiscard]] bool getObjectValueForString(util::Value* objectValue,
                                               std::optional<std::string_view> string,
                                               std::string* errorDescription) override;
    /// Always true.
    [[nodiscard]] bool isPartialStringValid(std::string_view partialString,
                                            std::optional<std::string>* newEditingString,
                                            std::string* errorDescription) override;

private:
    const platform::LocalizedStrings& strings_;
    util::CharacterSet _fNonASCIICharSet;
};

} // namespace corvane::formatters
