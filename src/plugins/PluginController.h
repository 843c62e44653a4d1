#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/Environment.h"
#include "plugins/Plugin.h"

namespace corvane::plugins {

/// Finds the configuration plug-ins at start-up, keeps them by name and makes objects of them. Loaded modules
/// stay loaded; there is no rescan. Main thread.
class PluginController {
public:
    /// The folder of plug-ins that come with other packages.
    static constexpr const char* systemPlugInsPath = "/Library/Application Support/Corvane/PlugIns/";

    /// The controller of this process: made with `environment` on the first call unless one was made by hand
    /// before, the same object from then on.
    [[nodiscard]] static PluginController& sharedInstance(platform::Environment& environment);

    /// Becomes the shared instance. If there was one already, that is logged and the older one stays alive.
    explicit PluginController(platform::Environment& environment);
    PluginController(const PluginController&) = delete;
    PluginController& operator=(const PluginController&) = delete;
    ~PluginController();

    /// Looks in the program's own folder, then in `systemPlugInsPath`, and in no other.
    void loadPlugins();
    /// Loads what ends in ".cvplug" (case matters) and whose name isn't known yet. What can't be loaded is
    /// skipped without a message of this class; the loader writes the reason to the log.
    void loadPluginsInDirectory(const std::string& folder);
    /// A new object of the plug-in with exactly this name, the caller's own; null when there is none. A
    /// plug-in that makes no object is logged, and `failure`, when given, receives its reason.
    [[nodiscard]] std::unique_ptr<Plugin> newPluginNamed(const std::string& name,
                                                         std::string* failure = nullptr);

private:
    struct LoadedPlugin {
        std::unique_ptr<platform::Bundle> bundle;
        const CorvanePlugin* table;
        std::string path;
    };
    /// Null, with a line in the log, for a module that can't be used.
    [[nodiscard]] const CorvanePlugin* tableOf(platform::Bundle& bundle, const std::string& path,
                                               const std::string& connector);
    [[nodiscard]] static const CorvanePlugin* tableFrom(platform::Bundle& bundle,
                                                        const std::string& connector, std::string& reason);
    void logAbout(const CorvanePlugin& table, const std::string& path);

    platform::Environment& environment_;
    std::map<std::string, LoadedPlugin> mPlugins;
};

} // namespace corvane::plugins
