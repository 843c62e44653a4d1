#pragma once

#include "qt/platform/SettingsFile.h"
#include "toolkit/Window.h"

namespace corvane::qt {

/// Window state in the user's settings file.
class QtStateCoder final : public toolkit::StateCoder {
public:
    explicit QtStateCoder(SettingsFile& settings) : settings_(settings) {}
    void encodeString(std::string_view key, std::string_view value) override {
        settings_.write(group, key, value);
    }
    [[nodiscard]] std::optional<std::string> decodeString(std::string_view key) const override {
        return settings_.read(group, key);
    }

private:
    static constexpr auto group = "WindowState";
    SettingsFile& settings_;
};

} // namespace corvane::qt
