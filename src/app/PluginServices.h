#pragma once

#include <set>
#include <string>

#include "app/MainWindow.h"
#include "services/ModifiedState.h"

namespace corvane::app {

/// The services pane as plug-ins reach it, and the report of a plug-in's failure. Main thread.
class PluginServices final : public plugins::HostServices {
public:
    struct Parts {
        services::ServicesList& list;
        services::ServicesTable& table;
        services::ModifiedState& modified;
        MainWindow& window;
    };

    PluginServices(Parts parts, platform::Environment& environment)
        : parts_(parts), environment_(environment) {}

    void setPluginModified(bool modified) override { parts_.modified.setPluginModified(modified); }
    void reloadPluginTable() override { parts_.table.reloadPluginTable(); }
    [[nodiscard]] std::optional<std::string> pluginVersionWithPrefix(const std::string& prefix) override {
        return parts_.list.pluginVersionWithPrefix(prefix);
    }
    [[nodiscard]] bool isPluginEnabled(const std::string& prefix) override {
        return parts_.list.isPluginEnabled(prefix);
    }
    void setPluginEnabled(const std::string& prefix, bool enabled) override {
        parts_.list.setPluginEnabled(prefix, enabled);
    }
    /// Shown in a sheet, and logged. What is done whenever something is drawn, or the list read, is reported
    /// once: otherwise the sheet would be back as soon as it is closed.
    void pluginFailed(const std::string& plugin, const std::string& operation,
                      const std::string& reason) override;

private:
    Parts parts_;
    platform::Environment& environment_;
    std::set<std::string> failuresReported_; ///< plug-in and operation
};

} // namespace corvane::app
