// Loads every plug-in of a folder as the program does and says what became of each, one line a plug-in:
// name, what it calls itself, and whether it can be configured. Where it opens a form, what a user meets
// there.
#include <filesystem>
#include <iostream>
#include <set>

#include "fakes/FakeHost.h"
#include "fakes/FakePlatform.h"
#include "linux/SharedObjectLoader.h"
#include "plugins/PluginController.h"
#include "plugins/PluginHostTable.h"

using namespace corvane;

namespace {

const char* answer(const std::optional<bool>& given) { return !given ? "default" : *given ? "yes" : "no"; }

/// A program that says at once what plug-ins report.
struct InspectingHost final : fakes::FakeHost {
    void pluginFailed(const std::string& plugin, const std::string& operation,
                      const std::string& reason) override {
        std::cout << plugin << ": reported " << operation << ": " << reason << "\n";
    }
};

/// Fills in a form with a server, a port and a realm, making each mistake that it knows of.
void useForm(plugins::Plugin& plugin, fakes::FakeHost& program, const std::string& name) {
    auto& form = program.formPresenter.front();
    const auto ok = [&] {
        form.press("ok");
        const bool isOpen = !program.formPresenter.open.empty();
        std::cout << name << ": OK: " << (isOpen ? form.problem : "closed") << "\n";
    };
    ok();
    form.type("server", "localhost");
    form.type("port", "");
    ok();
    form.type("port", "750");
    ok();
    const auto& realm = form.required("realm");
    const bool takesSmall = form.form.formatterOf(realm)->isPartialStringValid("a", nullptr, nullptr);
    std::cout << name << ": small letters in the realm: " << (takesSmall ? "yes" : "no") << "\n";
    form.type("realm", "EXAMPLE.COM");
    form.type("server", "kdc.example.com");
    ok();
    const bool saves = plugin.ask("saveChanges", &CorvanePlugin::saveChanges).value_or(false);
    for (const auto& line : program.done)
        std::cout << name << ": host: " << line << "\n";
    std::cout << name << ": saves: " << (saves ? "yes" : "no") << "\n";
}

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
    InspectingHost program;
    plugins::PluginHostTable host(program.makeImplementor(), name);
    plugin->tell("setPluginAPIImplementor", &CorvanePlugin::setPluginAPIImplementor, &host.table());
    const auto title = plugin->pluginName().value_or("no name");
    const auto* configurable = answer(plugin->ask("canConfigure", &CorvanePlugin::canConfigure));
    const auto* dirty = answer(plugin->ask("isDirty", &CorvanePlugin::isDirty));
    std::cout << name << ": " << title << ", can be configured: " << configurable << ", dirty: " << dirty
              << "\n";
    plugin->tell("configureButtonClicked", &CorvanePlugin::configureButtonClicked,
                 static_cast<void*>(nullptr));
    if (!program.formPresenter.open.empty()) useForm(*plugin, program, name);
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
