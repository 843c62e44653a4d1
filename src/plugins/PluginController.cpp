#include "plugins/PluginController.h"

#include <memory>
#include <string_view>

namespace corvane::plugins {
namespace {

constexpr std::string_view suffix = ".cvplug";
PluginController* theSharedInstance = nullptr;

} // namespace

PluginController& PluginController::sharedInstance(platform::Environment& environment) {
    static std::unique_ptr<PluginController> madeHere;
    if (theSharedInstance == nullptr) madeHere = std::make_unique<PluginController>(environment);
    return *theSharedInstance;
}

PluginController::PluginController(platform::Environment& environment) : environment_(environment) {
    if (theSharedInstance != nullptr) environment_.log.log("more than one PluginController created!");
    theSharedInstance = this;
}

PluginController::~PluginController() {
    if (theSharedInstance == this) theSharedInstance = nullptr;
}

void PluginController::loadPlugins() {
    loadPluginsInDirectory(environment_.bundles.builtInPlugInsPath());
    loadPluginsInDirectory(systemPlugInsPath);
}

void PluginController::loadPluginsInDirectory(const std::string& folder) {
    for (const auto& entry : environment_.bundles.entriesOfFolder(folder)) {
        if (!std::string_view(entry).ends_with(suffix)) continue;
        const auto name = entry.substr(0, entry.size() - suffix.size());
        if (mPlugins.contains(name)) continue;
        auto bundle = environment_.bundles.bundleAtPath(folder + entry);
        if (!bundle || !bundle->load()) continue;
        if (const auto* table = tableOf(*bundle, folder + entry)) mPlugins[name] = {std::move(bundle), table};
    }
}

const CorvanePlugin* PluginController::tableOf(platform::Bundle& bundle, const std::string& path) {
    const auto factory = reinterpret_cast<CorvanePluginFactory>(bundle.symbol(CORVANE_PLUGIN_SYMBOL));
    std::string reason;
    try {
        const auto* table = factory == nullptr ? nullptr : factory();
        if (Plugin::accepts(table, &reason)) return table;
    } catch (...) {
        reason = "it failed while being loaded";
    }
    environment_.log.log("Plug-in " + path + " was not loaded: " + reason +
                         ". Install a build of it that was made for this version of Corvane.");
    return nullptr;
}

std::unique_ptr<Plugin> PluginController::newPluginNamed(const std::string& name) {
    const auto found = mPlugins.find(name);
    return found == mPlugins.end() ? nullptr : Plugin::create(*found->second.table);
}

} // namespace corvane::plugins
