#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "directory/HaldenNodeConfig.h"
#include "util/AuthorizationExternalForm.h"

namespace corvane::plugins {

/// The one object through which plug-ins call the host. It holds no state of its own: every answer is that of
/// the moment. Main thread.
class PluginAPIImplementor {
public:
    /// The program behind the interface.
    struct Host {
        virtual ~Host() = default;
        [[nodiscard]] virtual bool isRemote() = 0;
        [[nodiscard]] virtual bool preflightAuthRights() = 0;
        [[nodiscard]] virtual std::int32_t makeAuthExternalForm(util::AuthorizationExternalForm& form) = 0;
        [[nodiscard]] virtual std::shared_ptr<directory::HaldenNodeConfig> haldenConfigNode() = 0;
        virtual void setPluginModified(bool modified) = 0;
        virtual void reloadPluginTable() = 0;
        [[nodiscard]] virtual bool isPluginEnabled(const std::string& prefix) = 0;
        virtual void setPluginEnabled(const std::string& prefix, bool enabled) = 0;
        /// A plug-in's code failed unexpectedly.
        virtual void pluginFailed(const std::string& plugin, const std::string& operation,
                                  const std::string& reason) = 0;
        virtual void log(const std::string& line) = 0;
    };

    explicit PluginAPIImplementor(Host& host) : host_(host) {}

    [[nodiscard]] bool isRemote() { return host_.isRemote(); }
    [[nodiscard]] bool preflightAuthRights() { return host_.preflightAuthRights(); }
    /// 0 on success.
    [[nodiscard]] std::int32_t makeAuthExternalForm(util::AuthorizationExternalForm& form) {
        return host_.makeAuthExternalForm(form);
    }
    /// The configuration node of the current connection; null when the service can't be reached.
    [[nodiscard]] std::shared_ptr<directory::HaldenNodeConfig> haldenConfigNode() {
        return host_.haldenConfigNode();
    }
    void markDirty() { host_.setPluginModified(true); }
    /// Whatever the arguments say, the services table is shown anew.
    void pluginEnableStateChanged(const std::string& /*name*/, bool /*enabled*/) {
        host_.reloadPluginTable();
    }
    [[nodiscard]] bool isPluginEnabled(const std::string& prefix) { return host_.isPluginEnabled(prefix); }
    void setPluginEnabled(const std::string& prefix, bool enabled) {
        host_.setPluginEnabled(prefix, enabled);
    }
    void pluginFailed(const std::string& plugin, const std::string& operation, const std::string& reason) {
        host_.pluginFailed(plugin, operation, reason);
    }
    void log(const std::string& line) { host_.log(line); }

private:
    Host& host_;
};

} // namespace corvane::plugins
