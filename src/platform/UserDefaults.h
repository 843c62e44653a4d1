#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvane::platform {

/// The user's own settings of this program, kept between runs. A write is kept even if it can't be stored
/// at once; failures are logged by the implementation. Main thread.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;
    [[nodiscard]] virtual std::optional<std::string> stringForKey(std::string_view key) const = 0;
    virtual void setString(std::string_view key, std::string_view value) = 0;
    /// What an absent key reads as is the implementation's to say; false unless it was told otherwise.
    [[nodiscard]] virtual bool boolForKey(std::string_view key) const = 0;
    virtual void setBool(std::string_view key, bool value) = 0;
};

} // namespace corvane::platform
