#pragma once

#include "platform/LocalizedStrings.h"

namespace corvane::qt {

/// Texts from the translators that are installed in the application (context "Corvane"), English without any.
/// A key may hold an apostrophe as the six characters \U02BC; people see the apostrophe.
class QtLocalizedStrings final : public platform::LocalizedStrings {
public:
    [[nodiscard]] std::string localized(std::string_view key) const override;
};

} // namespace corvane::qt
