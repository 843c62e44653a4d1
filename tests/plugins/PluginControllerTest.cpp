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

const CorvanePlugin* noTable(const CorvaneHandshake* /*host*/) { return nullptr; }
const CorvanePlugin* throwingFactory(const CorvaneHandshake* /*host*/) {
    throw std::runtime_error("no licence");
}
const CorvanePlugin* wrongVersion(const CorvaneHandshake* /*host*/) {
    static CorvanePlugin table = *sdk::tableFor<fakes::EmptyPlugin>();
    table.version = CORVANE_PLUGIN_VERSION + 1;
    return &table;
}
const CorvanePlugin* tooShort(const CorvaneHandshake* /*host*/) {
    static CorvanePlugin table = *sdk::tableFor<fakes::EmptyPlugin>();
    table.size = 8;
    return &table;
}
const CorvanePlugin* noMaker(const CorvaneHandshake* /*host*/) {
    static CorvanePlugin table = *sdk::tableFor<fakes::EmptyPlugin>();
    table.create = nullptr;
    return &table;
}
const CorvanePlugin* noUnmaker(const CorvaneHandshake* /*host*/) {
    static CorvanePlugin table = *sdk::tableFor<fakes::EmptyPlugin>();
    table.destroy = nullptr;
    return &table;
}
const CorvanePlugin* makesNothing(const CorvaneHandshake* /*host*/) {
    static CorvanePlugin table = *sdk::tableFor<fakes::EmptyPlugin>();
    table.create = [](CorvaneReasonTaker, void*) -> void* { return nullptr; };
    return &table;
}
const CorvanePlugin* throwsWhenMaking(const CorvaneHandshake* /*host*/) {
    static CorvanePlugin table = *sdk::tableFor<fakes::EmptyPlugin>();
    table.create = [](CorvaneReasonTaker, void*) -> void* { throw std::runtime_error("out of order"); };
    return &table;
}
struct Introduced {
    static constexpr sdk::About about{"Example", "1.0", "Jane Doe", "https://example.com"};
};
struct Nameless {
    static constexpr sdk::About about{nullptr, "", "Jane Doe", nullptr};
};
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

TEST_F(Registry, unknownName_returnsNull) { EXPECT_EQ(controller.newPluginNamed("Nobody"), nullptr); }

TEST_F(Registry, nameIsMatchedExactly) {
    platform.bundles.add(builtIn, "LDAP.cvplug", Recording::factory());
    controller.loadPlugins();
    EXPECT_FALSE(has("ldap"));
}

TEST_F(Registry, knownName_returnsANewObjectOnEveryCall) {
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
        "Plug-in /built-in/PlugIns/Version.cvplug was not loaded: it was built for plug-in version 3, and "
        "this program takes version 2. Install a build of it that was made for this version of Corvane.");
    EXPECT_NE(platform.log.lines[2].find("None.cvplug was not loaded: it has no function table for plug-in "
                                         "version 2."),
              std::string::npos);
    EXPECT_NE(platform.log.lines[3].find("Throws.cvplug was not loaded: it failed while it was being loaded: "
                                         "no licence."),
              std::string::npos);
}

TEST_F(Registry, tableWithoutMakerOrUnmaker_isRefused) {
    platform.bundles.add(builtIn, "A.cvplug", symbol(noMaker));
    platform.bundles.add(builtIn, "B.cvplug", symbol(noUnmaker));
    controller.loadPlugins();
    EXPECT_FALSE(has("A") || has("B"));
    EXPECT_EQ(platform.log.lines.size(), 2U);
}

TEST_F(Registry, moduleThatMakesNoObject_returnsNullAndIsLoggedWithItsFileAndReason) {
    platform.bundles.add(builtIn, "A.cvplug", symbol(makesNothing));
    platform.bundles.add(builtIn, "B.cvplug", symbol(throwsWhenMaking));
    controller.loadPlugins();
    std::string reason;
    EXPECT_EQ(controller.newPluginNamed("A", &reason), nullptr);
    EXPECT_EQ(reason, "it answered no object, and no reason");
    EXPECT_EQ(controller.newPluginNamed("B", &reason), nullptr);
    EXPECT_EQ(reason, "out of order");
    ASSERT_EQ(platform.log.lines.size(), 2U);
    EXPECT_EQ(platform.log.lines[1],
              "Plug-in /built-in/PlugIns/B.cvplug made no object: out of order. The connector B can't be "
              "configured. Ask the plug-in's developer, or install another build.");
}

TEST_F(Registry, factory_isGivenTheVersionsOfThisProgramAndTheConnectorsName) {
    static std::string seen;
    platform.bundles.add(
        builtIn, "a.b.cvplug", symbol([](const CorvaneHandshake* host) -> const CorvanePlugin* {
            seen = std::to_string(host->size == sizeof *host) + " " + host->connector + " " +
                   std::to_string(host->oldestVersion) + " " + std::to_string(host->newestVersion);
            return nullptr;
        }));
    controller.loadPlugins();
    EXPECT_EQ(seen, "1 a.b 2 2");
}

TEST_F(Registry, moduleWithoutAFactory_isRefusedByName_andOneOfVersion1ByItsVersion) {
    platform.bundles.add(builtIn, "Old.cvplug", symbol(noTable));
    platform.bundles.exported["/built-in/PlugIns/Old.cvplug"] = "corvane_plugin";
    platform.bundles.add(builtIn, "Other.cvplug", symbol(noTable));
    platform.bundles.exported["/built-in/PlugIns/Other.cvplug"] = "something_else";
    controller.loadPlugins();
    ASSERT_EQ(platform.log.lines.size(), 2U);
    EXPECT_EQ(
        platform.log.lines[0],
        "Plug-in /built-in/PlugIns/Old.cvplug was not loaded: it was built for plug-in version 1, and "
        "this program takes version 2. Install a build of it that was made for this version of Corvane.");
    EXPECT_EQ(platform.log.lines[1],
              "Plug-in /built-in/PlugIns/Other.cvplug was not loaded: it doesn't export the function "
              "corvane_plugin_for_host. Install a build of it that was made for this version of Corvane.");
}

TEST_F(Registry, whatAPluginSaysOfItself_isLoggedWithItsFile) {
    platform.bundles.add(builtIn, "A.cvplug", symbol(&sdk::tableForHost<Introduced>));
    platform.bundles.add(builtIn, "B.cvplug", symbol(&sdk::tableForHost<Nameless>));
    platform.bundles.add(builtIn, "C.cvplug", fakes::EmptyPlugin::factory());
    controller.loadPlugins();
    EXPECT_EQ(platform.log.lines,
              (std::vector<std::string>{
                  "Plug-in /built-in/PlugIns/A.cvplug: Example 1.0, by Jane Doe, https://example.com",
                  "Plug-in /built-in/PlugIns/B.cvplug: Jane Doe"}));
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
