#pragma once

#include "formatters/DottedAddressFormatter.h"
#include "platform/LocalizedStrings.h"

namespace corvane::formatters {

/// Four numbers from 0 to 255 with dots between them, or nothing. While typing, what can still become an
/// address is good. The value is the text; nothing is made of it.
class IPv4AddressFormatter final : public DottedAddressFormatter {
public:
    /// `strings` outlives the formatter, as `needs` does.
    IPv4AddressFormatter(Needs& needs, const platform::LocalizedStrings& strings)
        : DottedAddressFormatter(needs), strings_(strings) {}

    [[nodiscard]] bool getObjectValueForString(util::Value* objectValue,
                                               std::optional<std::string_view> string,
                                               std::string* errorDescription) override;
    [[nodiscard]] bool isPartialStringValid(std::string_view partialString,
                                            std::optional<std::string>* newEditingString,
                                            std::string* errorDescription) override;

private:
    const platform::LocalizedStrings& strings_;
};

} // namespace corvane::formatters
