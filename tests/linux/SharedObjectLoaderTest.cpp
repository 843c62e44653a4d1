#include "linux/SharedObjectLoader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "contract/platform/DesktopContracts.h"
#include "contract/platform/PlatformContracts.h"
#include "fakes/FakePlatform.h"
#include "plugins/PluginController.h"

using namespace corvane;
using namespace corvane::contract;
using Names = std::vector<std::string>;

namespace {

const std::string modules = CORVANE_TEST_MODULES;

class RealModules final : public BundleLoaderUnderTest {
public:
    platform::BundleLoader& loader() override { return loader_; }
    std::string folder() override { return modules + "good/"; }
    const std::vector<std::string>& logged() override { return log_.lines; }

private:
    fakes::FakeLog log_;
    linux_::SharedObjectLoader loader_{modules + "good/", log_};
};

/// The program's registry on real modules.
struct RealPlugins : testing::Test {
    [[nodiscard]] std::unique_ptr<plugins::Plugin> make(const std::string& name) {
        auto plugin = controller.newPluginNamed(name);
        if (plugin)
            plugin->tell("setPluginAPIImplementor", &CorvanePlugin::setPluginAPIImplementor,
                         static_cast<const CorvaneHost*>(&host));
        return plugin;
    }
    [[nodiscard]] static bool wasLoaded(const char* module) {
        return std::getenv((std::string("loaded ") + module).c_str()) != nullptr;
    }
    /// Asks every question and gives every order that there is; the answers in their order.
    static std::vector<bool> callEverything(const plugins::Plugin& plugin) {
        using T = CorvanePlugin;
        const char* anywhere = "anywhere";
        plugin.tell("setEnabledForLocation", &T::setEnabledForLocation, int8_t{1}, anywhere);
        plugin.tell("configureButtonClicked", &T::configureButtonClicked, static_cast<void*>(nullptr));
        const std::optional<bool> answers[] = {
            plugin.ask("isEnabledForLocation", &T::isEnabledForLocation, anywhere),
            plugin.ask("canSetEnabledForLocation", &T::canSetEnabledForLocation,
                       static_cast<const char*>(nullptr)),
            plugin.ask("canConfigure", &T::canConfigure),
            plugin.ask("selfTest", &T::selfTest),
            plugin.ask("isDirty", &T::isDirty),
            plugin.ask("saveChanges", &T::saveChanges),
            plugin.ask("revertChanges", &T::revertChanges),
            plugin.ask("applicationWillQuitSavingChanges", &T::applicationWillQuitSavingChanges, int8_t{1}),
            plugin.ask("applicationWillLockSavingChanges", &T::applicationWillLockSavingChanges, int8_t{0}),
            plugin.ask("shouldAllowNodeNameOnSearchPolicy", &T::shouldAllowNodeNameOnSearchPolicy,
                       "/LDAP/one")};
        std::vector<bool> given;
        for (const auto& answer : answers)
            if (answer) given.push_back(*answer);
        return given;
    }

    fakes::Journal journal;
    fakes::FakePlatform fake{journal};
    Names said;   ///< lines that plug-ins wrote to the host's log
    Names failed; ///< operations that plug-ins reported as failed
    CorvaneHost host = [this] {
        CorvaneHost table{};
        table.size = sizeof table;
        table.version = CORVANE_PLUGIN_VERSION;
        table.context = this;
        table.log = [](void* context, const char* line) {
            static_cast<RealPlugins*>(context)->said.emplace_back(line);
        };
        table.pluginFailed = [](void* context, const char* operation, const char* reason) {
            static_cast<RealPlugins*>(context)->failed.push_back(std::string(operation) + ": " + reason);
        };
        return table;
    }();
    linux_::SharedObjectLoader loader{modules + "built-in/", fake.log};
    platform::Environment environment{
        fake.runLoop,      fake.userDefaults,  fake.workspace, fake.strings, fake.authorizationService,
        fake.dynamicStore, fake.propertyLists, loader,         fake.network, fake.notifications,
        fake.log};
    plugins::PluginController controller{environment};
};

} // namespace

namespace corvane::contract {
INSTANTIATE_TEST_SUITE_P(SharedObjects, BundleLoaderContract,
                         testing::Values(BundleLoaderCase{"SharedObjects",
                                                          [] { return std::make_unique<RealModules>(); }}),
                         nameOfCase);
} // namespace corvane::contract

TEST_F(RealPlugins, moduleWithEveryMethod_isCalledForEachWithItsArguments) {
    controller.loadPluginsInDirectory(modules + "built-in/");
    const auto plugin = make("Full");
    ASSERT_NE(plugin, nullptr);
    EXPECT_EQ(plugin->pluginName(), "Full Name");
    EXPECT_EQ(callEverything(*plugin), std::vector<bool>(10, true));
    EXPECT_EQ(said, (Names{"setPluginAPIImplementor", "pluginName", "setEnabledForLocation on anywhere",
                           "configureButtonClicked null", "isEnabledForLocation anywhere",
                           "canSetEnabledForLocation", "canConfigure", "selfTest", "isDirty", "saveChanges",
                           "revertChanges", "applicationWillQuitSavingChanges save",
                           "applicationWillLockSavingChanges discard",
                           "shouldAllowNodeNameOnSearchPolicy /LDAP/one"}));
    EXPECT_TRUE(failed.empty());
}

TEST_F(RealPlugins, moduleThatThrowsEverywhere_answersFalseAndReportsEachFailure) {
    controller.loadPluginsInDirectory(modules + "built-in/");
    const auto plugin = make("Throws");
    ASSERT_NE(plugin, nullptr);
    EXPECT_EQ(plugin->pluginName(), std::nullopt);
    EXPECT_EQ(callEverything(*plugin), std::vector<bool>(10, false));
    ASSERT_EQ(failed.size(), 14U);
    EXPECT_EQ(failed.front(), "setPluginAPIImplementor: out of order");
    EXPECT_NE(std::ranges::find(failed, "saveChanges: out of order"), failed.end());
    EXPECT_NE(std::ranges::find(failed, "revertChanges: an unknown exception"), failed.end());
}

TEST_F(RealPlugins, moduleOfAnotherVersionAndTextUnderAModulesName_areRefusedWithALine) {
    controller.loadPluginsInDirectory(modules + "built-in/");
    EXPECT_EQ(controller.newPluginNamed("WrongVersion"), nullptr);
    EXPECT_EQ(controller.newPluginNamed("NoModule"), nullptr);
    ASSERT_EQ(fake.log.lines.size(), 2U);
    for (const auto* name : {"WrongVersion", "NoModule"})
        EXPECT_TRUE(std::ranges::any_of(fake.log.lines, [&](const auto& line) {
            return line.find(name + std::string(".cvplug")) != line.npos;
        })) << name;
}

// Its own process: what another test of this program has loaded stays loaded.
TEST_F(RealPlugins, moduleInBothFolders_isTheBuiltInOneAndTheOthersCodeNeverRuns) {
    EXPECT_EXIT(
        {
            controller.loadPluginsInDirectory(loader.builtInPlugInsPath());
            controller.loadPluginsInDirectory(modules + "system/");
            const auto plugin = make("Both");
            std::fprintf(stderr, "made %s, ran%s%s%s\n", plugin->pluginName().value_or("none").c_str(),
                         wasLoaded("built-in/Both") ? " built-in/Both" : "",
                         wasLoaded("system/Both") ? " system/Both" : "",
                         wasLoaded("system/SystemOnly") ? " system/SystemOnly" : "");
            std::exit(0);
        },
        testing::ExitedWithCode(0), "made built-in/Both, ran built-in/Both system/SystemOnly\n");
}
