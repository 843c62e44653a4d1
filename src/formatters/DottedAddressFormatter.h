#pragma once

#include "formatters/ValidCharacterFormatter.h"

namespace corvane::formatters {

/// Decimal digits (of any script) and dots. The set is its own, and the one that is in force: a set that is
/// given to `setValidCharacterSet` is kept and never asked, on purpose, so that no owner can widen what an
/// address is made of.
class DottedAddressFormatter : public ValidCharacterFormatter {
public:
    explicit DottedAddressFormatter(Needs& needs);
    [[nodiscard]] std::shared_ptr<const util::CharacterSet> getValidCharacterSet() const override {
        return _validCharacterSet;
    }

private:
    const std::shared_ptr<const util::CharacterSet> _validCharacterSet;
};

} // namespace corvane::formatters
