#pragma once

#include <string>
#include <string_view>

namespace corvane::platform {

/// The user's language. The English text is the key. Main thread.
class LocalizedStrings {
public:
    virtual ~LocalizedStrings() = default;
    /// The user's text for `key`; the key's English text where no translation is there.
    [[nodiscard]] virtual std::string localized(std::string_view key) const = 0;
};

} // namespace corvane::platform
