#pragma once

#include <map>

#include "platform/UserDefaults.h"
#include "qt/platform/SettingsFile.h"

namespace corvane::qt {

class QtUserDefaults final : public platform::UserDefaults {
public:
    explicit QtUserDefaults(SettingsFile& file) : file_(file) {}
    /// What an absent boolean reads as; false for those that nobody registers.
    void registerBool(std::string key, bool value) { registered_[std::move(key)] = value; }

    [[nodiscard]] std::optional<std::string> stringForKey(std::string_view key) const override;
    void setString(std::string_view key, std::string_view value) override;
    [[nodiscard]] bool boolForKey(std::string_view key) const override;
    void setBool(std::string_view key, bool value) override;

private:
    SettingsFile& file_;
    std::map<std::string, bool, std::less<>> registered_;
};

} // namespace corvane::qt
