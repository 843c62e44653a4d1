// Loads every plug-in of a folder as the program does and says what became of each, one line a plug-in:
// name, what it calls itself, and whether it can be configured.
#include <filesystem>
#include <iostream>
#include <set>

#include "fakes/FakePlatform.h"
#include "linux/SharedObjectLoader.h"
#include "plugins/PluginController.h"

using namespace corvane;

namespace {

const char* answer(const std::optional<bool>& given) { return !given ? "default" : *given ? "yes" : "no"; }

void inspect(plugins::PluginController& controller, const std::string& name) {
    std::string cause;
    const auto plugin = controller.newPluginNamed(name, &cause);
    if (!plugin) {
        std::cout << name << ": refused" << (cause.empty() ? "" : ": ") << cause << "\n";
        return;
    }
    plugin->setFailureReporter([&](const std::string& operation, const std::string& reason) {
        std::cout << name << ": failed in " << operation << ": " << reason << "\n";
    });
    CorvaneHost host{};
    host.size = sizeof host;
    host.version = CORVANE_PLUGIN_VERSION;
    host.context = const_cast<std::string*>(&name);
    host.pluginFailed = [](void* context, const char* operation, const char* reason) {
        std::cout << *static_cast<std::string*>(context) << ": reported " << operation << ": " << reason
                  << "\n";
    };
    plugin->tell("setPluginAPIImplementor", &CorvanePlugin::setPluginAPIImplementor, &host);
    const auto title = plugin->pluginName().value_or("no name");
    const auto* configurable = answer(plugin->ask("canConfigure", &CorvanePlugin::canConfigure));
    const auto* dirty = answer(plugin->ask("isDirty", &CorvanePlugin::isDirty));
    std::cout << name << ": " << title << ", can be configured: " << configurable << ", dirty: " << dirty
              << "\n";
}

/// What the module answers hosts that can use other versions than this one.
void shakeHands(platform::BundleLoader& loader, const std::string& folder, const std::string& name) {
    const auto bundle = loader.bundleAtPath(folder + name + ".cvplug");
    if (!bundle || !bundle->load()) return;
    const auto factory = reinterpret_cast<CorvanePluginFactory>(bundle->symbol(CORVANE_PLUGIN_SYMBOL));
    if (factory == nullptr) return;
    std::cout << name << ": for hosts of version";
    const char* between = " ";
    for (const auto& [oldest, newest] : {std::pair{1U, 1U}, {2U, 2U}, {1U, 2U}, {2U, 3U}, {3U, 3U}}) {
        const CorvaneHandshake host{sizeof host, oldest, newest, name.c_str()};
        const auto* table = factory(&host);
        std::cout << between << oldest << (oldest == newest ? "" : " to " + std::to_string(newest)) << ": "
                  << (table == nullptr ? "no table" : "version " + std::to_string(table->version));
        between = "; ";
    }
    std::cout << "\n";
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) return 2;
    const std::string folder = std::string(arguments[1]) + "/";
    fakes::Journal journal;
    fakes::FakePlatform fake{journal};
    linux_::SharedObjectLoader loader{folder, fake.log};
    platform::Environment environment{
        fake.runLoop,      fake.userDefaults,  fake.workspace, fake.strings, fake.authorizationService,
        fake.dynamicStore, fake.propertyLists, loader,         fake.network, fake.notifications,
        fake.log};
    plugins::PluginController controller{environment};
    controller.loadPluginsInDirectory(folder);
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.path().extension() == ".cvplug") names.insert(entry.path().stem());
    for (const auto& name : names)
        inspect(controller, name);
    shakeHands(loader, folder, "TwoHosts");
    for (const auto& line : fake.log.lines)
        std::cout << "log: " << line << "\n";
    return 0;
}
