#pragma once

#include <memory>
#include <string>

#include "plugins/PluginAPIImplementor.h"
#include "sdk/PluginTable.h"

namespace corvane::plugins {

/// The host interface in the form that crosses the module boundary: one table per plug-in object, so that the
/// host knows who is calling. Nothing that the host throws reaches the plug-in. Main thread.
class PluginHostTable {
public:
    PluginHostTable(std::shared_ptr<PluginAPIImplementor> implementor, std::string pluginName);
    PluginHostTable(const PluginHostTable&) = delete;
    PluginHostTable& operator=(const PluginHostTable&) = delete;

    [[nodiscard]] const CorvaneHost& table() const { return table_; }

private:
    struct Entry;
    void fillMessages();
    void fillAuthorization();
    void fillEnabledState();

    CorvaneHost table_{};
    std::shared_ptr<PluginAPIImplementor> implementor_;
    std::string pluginName_;
};

} // namespace corvane::plugins
