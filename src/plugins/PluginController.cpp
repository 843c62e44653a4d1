#include "plugins/PluginController.h"

#include <memory>
#include <string_view>

#include "plugins/ReceivedText.h"

namespace corvane::plugins {
namespace {

constexpr std::string_view suffix = ".cvplug";
constexpr const char* symbolOfVersion1 = "corvane_plugin";
PluginController* theSharedInstance = nullptr;

std::string textOf(const char* text) { return receivedText::repaired(text); }

/// What a plug-in says of itself, in one line: "Example 1.0, by Jane Doe, https://example.com". "" for
/// nothing.
std::string aboutText(const CorvanePlugin& table) {
    const auto* about = table.about;
    if (about == nullptr || about->size < sizeof(CorvaneAbout)) return "";
    std::string text = textOf(about->name);
    const auto add = [&text](const char* between, const std::string& part) {
        if (!part.empty()) text += (text.empty() ? "" : between) + part;
    };
    add(" ", textOf(about->version));
    add(", by ", textOf(about->author));
    add(", ", textOf(about->homePage));
    return text;
}

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
        const auto path = folder + entry;
        auto bundle = environment_.bundles.bundleAtPath(path);
        if (!bundle || !bundle->load()) continue;
        const auto* table = tableOf(*bundle, path, name);
        if (table == nullptr) continue;
        logAbout(*table, path);
        mPlugins[name] = {std::move(bundle), table, path};
    }
}

const CorvanePlugin* PluginController::tableOf(platform::Bundle& bundle, const std::string& path,
                                               const std::string& connector) {
    std::string reason;
    try {
        const auto* table = tableFrom(bundle, connector, reason);
        if (table != nullptr) return table;
    } catch (const std::exception& failure) {
        reason = std::string("it failed while it was being loaded: ") + failure.what();
    } catch (...) {
        reason = "it failed while it was being loaded: an unknown exception";
    }
    environment_.log.log("Plug-in " + path + " was not loaded: " + reason +
                         ". Install a build of it that was made for this version of Corvane.");
    return nullptr;
}

const CorvanePlugin* PluginController::tableFrom(platform::Bundle& bundle, const std::string& connector,
                                                 std::string& reason) {
    const auto factory = reinterpret_cast<CorvanePluginFactory>(bundle.symbol(CORVANE_PLUGIN_SYMBOL));
    if (factory == nullptr) {
        // Version 1 had no handshake, and a function of another name.
        const bool isOfVersion1 = bundle.symbol(symbolOfVersion1) != nullptr;
        reason = isOfVersion1 ? Plugin::otherVersion(1)
                              : std::string("it doesn't export the function ") + CORVANE_PLUGIN_SYMBOL;
        return nullptr;
    }
    const CorvaneHandshake handshake{sizeof handshake, Plugin::oldestVersion, Plugin::newestVersion,
                                     connector.c_str()};
    const auto* table = factory(&handshake);
    return Plugin::accepts(table, &reason) ? table : nullptr;
}

void PluginController::logAbout(const CorvanePlugin& table, const std::string& path) {
    const auto about = aboutText(table);
    if (!about.empty()) environment_.log.log("Plug-in " + path + ": " + about);
}

std::unique_ptr<Plugin> PluginController::newPluginNamed(const std::string& name, std::string* failure) {
    const auto found = mPlugins.find(name);
    if (found == mPlugins.end()) return nullptr;
    std::string reason;
    auto plugin = Plugin::create(*found->second.table, name, reason);
    if (plugin) return plugin;
    environment_.log.log("Plug-in " + found->second.path + " made no object: " + reason + ". The connector " +
                         name +
                         " can't be configured. Ask the plug-in's developer, or install another build.");
    if (failure != nullptr) *failure = reason;
    return nullptr;
}

} // namespace corvane::plugins
