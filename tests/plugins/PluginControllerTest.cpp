#include "plugins/PluginController.h"

#include <gtest/gtest.h>

#include "fakes/FakePlatform.h"
#include "fakes/RecordingPlugin.h"

using namespace corvane;
using plugins::PluginController;
using Recording = fakes::RecordingPlugin<0>;

namespace {

constexpr const char* builtIn = "/built-in/PlugIns/";
const std::string systemWide = PluginController::systemPlugInsPath;

const CorvanePlugin* noTable() { return nullptr; }
const CorvanePlugin* throwingFactory() { throw std::runtime_error("no"); }
const CorvanePlugin* wrongVersion() {
    static CorvanePlugin table = *sdk::tableFor<fakes::EmptyPlugin>();
    table.version = CORVANE_PLUGIN_VERSION + 1;
    return &table;
}
const CorvanePlugin* tooShort() {
    static CorvanePlugin table = *sdk::tableFor<fakes::EmptyPlugin>();
    table.size = 8;
    return &table;
}
const CorvanePlugin* noMaker() {
    static CorvanePlugin table = *sdk::tableFor<fakes::EmptyPlugin>();
    table.create = nullptr;
    return &table;
}
const CorvanePlugin* noUnmaker() {
    static CorvanePlugin table = *sdk::tableFor<fakes::EmptyPlugin>();
    table.destroy = nullptr;
    return &table;
}
const CorvanePlugin* makesNothing() {
    static CorvanePlugin table = *sdk::tableFor<fakes::EmptyPlugin>();
    table.create = []() -> void* { return nullptr; };
    return &table;
}
const CorvanePlugin* throwsWhenMaking() {
    static CorvanePlugin table = *sdk::tableFor<fakes::EmptyPlugin>();
    table.create = []() -> void* { throw std::runtime_error("no"); };
    return &table;
}
void* symbol(CorvanePluginFactory factory) { return reinterpret_cast<void*>(factory); }

struct Registry : testing::Test {
    Registry() { Recording::script() = {}; }
    [[nodiscard]] bool has(const std::string& name) { return controller.newPluginNamed(name) != nullptr; }

    fakes::Journal journal;
    fakes::FakePlatform platform{journal};
    PluginController controller{platform.environment};
};

} // namespace

TEST_F(Registry, loadPlugins_scansTheTwoFoldersInOrderAndNoOthers) {
    controller.loadPlugins();
    EXPECT_EQ(platform.bundles.scanned,
              (std::vector<std::string>{builtIn, "/Library/Application Support/Corvane/PlugIns/"}));
}

TEST_F(Registry, sameNameInBothFolders_onlyTheBuiltInOneIsLoaded) {
    platform.bundles.add(builtIn, "X.cvplug", Recording::factory());
    platform.bundles.add(systemWide, "X.cvplug", fakes::EmptyPlugin::factory());
    controller.loadPlugins();
    EXPECT_EQ(platform.bundles.loaded, std::vector<std::string>{std::string(builtIn) + "X.cvplug"});
    EXPECT_EQ(controller.newPluginNamed("X")->pluginName(), "Shown Name");
}

TEST_F(Registry, builtInOneThatCantBeLoaded_leavesTheNameToTheOther) {
    platform.bundles.add(builtIn, "X.cvplug", nullptr);
    platform.bundles.add(systemWide, "X.cvplug", Recording::factory());
    controller.loadPlugins();
    EXPECT_TRUE(has("X"));
}

TEST_F(Registry, otherSuffixes_areIgnored) {
    for (const auto* entry : {"X.CVPLUG", "X.so", "X.cvplug.bak", "cvplug"})
        platform.bundles.add(builtIn, entry, Recording::factory());
    controller.loadPlugins();
    EXPECT_TRUE(platform.bundles.loaded.empty());
    EXPECT_FALSE(has("X"));
}

TEST_F(Registry, nameWithDots_keepsAllButTheLastExtension) {
    platform.bundles.add(builtIn, "a.b.cvplug", Recording::factory());
    controller.loadPlugins();
    EXPECT_TRUE(has("a.b"));
}

TEST_F(Registry, entryThatIsNoBundleOrDoesntLoad_isSkippedWithoutAMessage) {
    platform.bundles.folders[builtIn] = {"NotThere.cvplug"};
    platform.bundles.add(builtIn, "Broken.cvplug", nullptr);
    platform.bundles.add(builtIn, "Good.cvplug", Recording::factory());
    controller.loadPlugins();
    EXPECT_FALSE(has("NotThere"));
    EXPECT_FALSE(has("Broken"));
    EXPECT_TRUE(has("Good"));
    EXPECT_TRUE(platform.log.lines.empty());
}

TEST_F(Registry, unknownName_givesNull) { EXPECT_EQ(controller.newPluginNamed("Nobody"), nullptr); }

TEST_F(Registry, nameIsMatchedExactly) {
    platform.bundles.add(builtIn, "LDAP.cvplug", Recording::factory());
    controller.loadPlugins();
    EXPECT_FALSE(has("ldap"));
}

TEST_F(Registry, knownName_givesANewObjectOnEveryCall) {
    platform.bundles.add(builtIn, "X.cvplug", Recording::factory());
    controller.loadPlugins();
    const auto first = controller.newPluginNamed("X");
    const auto second = controller.newPluginNamed("X");
    EXPECT_NE(first, second);
    EXPECT_EQ(Recording::script().alive, 2);
}

TEST_F(Registry, moduleOfAnotherVersionOrWithADamagedTable_isRefusedWithCauseAndNextStepInTheLog) {
    platform.bundles.add(builtIn, "Version.cvplug", symbol(wrongVersion));
    platform.bundles.add(builtIn, "Short.cvplug", symbol(tooShort));
    platform.bundles.add(builtIn, "None.cvplug", symbol(noTable));
    platform.bundles.add(builtIn, "Throws.cvplug", symbol(throwingFactory));
    controller.loadPlugins();
    for (const auto* name : {"Version", "Short", "None", "Throws"})
        EXPECT_FALSE(has(name)) << name;
    ASSERT_EQ(platform.log.lines.size(), 4U);
    EXPECT_EQ(
        platform.log.lines[0],
        "Plug-in /built-in/PlugIns/Version.cvplug was not loaded: it was built for plug-in version 2, this "
        "program takes 1. Install a build of it that was made for this version of Corvane.");
}

TEST_F(Registry, tableWithoutMakerOrUnmaker_isRefused) {
    platform.bundles.add(builtIn, "A.cvplug", symbol(noMaker));
    platform.bundles.add(builtIn, "B.cvplug", symbol(noUnmaker));
    controller.loadPlugins();
    EXPECT_FALSE(has("A") || has("B"));
    EXPECT_EQ(platform.log.lines.size(), 2U);
}

TEST_F(Registry, moduleThatMakesNoObject_givesNull) {
    platform.bundles.add(builtIn, "A.cvplug", symbol(makesNothing));
    platform.bundles.add(builtIn, "B.cvplug", symbol(throwsWhenMaking));
    controller.loadPlugins();
    EXPECT_FALSE(has("A") || has("B"));
}

TEST_F(Registry, anotherController_logsAndBecomesTheSharedOne) {
    PluginController second(platform.environment);
    EXPECT_EQ(platform.log.lines, std::vector<std::string>{"more than one PluginController created!"});
    EXPECT_EQ(&PluginController::sharedInstance(platform.environment), &second);
}

TEST_F(Registry, sharedInstance_isTheSameObjectEveryTime) {
    EXPECT_EQ(&PluginController::sharedInstance(platform.environment), &controller);
    EXPECT_EQ(&PluginController::sharedInstance(platform.environment), &controller);
}
