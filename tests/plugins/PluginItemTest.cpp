#include "plugins/PluginItem.h"

#include <gtest/gtest.h>

#include <cstddef>

#include "fakes/FakeHost.h"
#include "fakes/FakeToolkit.h"
#include "fakes/RecordingPlugin.h"
#include "sdk/Host.h"

using namespace corvane;
using Recording = fakes::RecordingPlugin<0>;

namespace {

struct Item : testing::Test {
    Item() {
        Recording::script() = {};
        host.configNode = std::make_shared<directory::HaldenNodeConfig>(
            framework.session->nodeWithType(halden::NodeType::configNode, nullptr));
    }
    void useRecordingPlugin() {
        platform.bundles.add("/built-in/PlugIns/", "LDAP.cvplug", Recording::factory());
        controller.loadPlugins();
    }
    [[nodiscard]] std::unique_ptr<plugins::PluginItem> make(const std::string& name = "LDAP") {
        description.set("PlugInName", name);
        auto item = std::make_unique<plugins::PluginItem>(
            plugins::PluginItem::Context{controller, toolkit, platform.environment}, description);
        implementor = host.makeImplementor();
        item->setPluginAPIImplementor(implementor);
        return item;
    }
    [[nodiscard]] const std::vector<fakes::ReceivedCall>& calls() {
        return framework.session->config().calls;
    }

    fakes::Journal journal;
    fakes::FakePlatform platform{journal};
    fakes::FakeToolkit toolkit{journal};
    fakes::FakeFramework framework{journal};
    fakes::FakeWindow window{journal, "window"};
    fakes::FakeButton button{journal, "button", &window};
    fakes::FakeHost host;
    std::shared_ptr<plugins::PluginAPIImplementor> implementor; ///< of the last item made
    plugins::PluginController controller{platform.environment};
    util::Dictionary description = util::Dictionary::makeMutable({{"PlugInLoaded", "Active"},
                                                                  {"UserSetLoaded", "Active"},
                                                                  {"PlugInVersion", "1.2.3"},
                                                                  {"PlugInIndex", 5},
                                                                  {"PlugInConfigAvail", "Not Available"},
                                                                  {"PlugInConfigFile", "Not Available"}});
};

} // namespace

TEST_F(Item, nodesToRemove_areThePluginsOrNone) {
    EXPECT_TRUE(make()->nodesToRemove().empty());
    useRecordingPlugin();
    Recording::script().nodesToRemove = {"/LDAP/one", "/LDAP/two"};
    EXPECT_EQ(make()->nodesToRemove(), (std::vector<std::string>{"/LDAP/one", "/LDAP/two"}));
}

TEST_F(Item, nodesToRemoveOfAPluginThatNeverEnds_areCutOff) {
    static CorvanePlugin endless = [] {
        auto table = *sdk::tableFor<fakes::EmptyPlugin>();
        table.nodesToRemove = [](void*, uint32_t) { return "/LDAP/again"; };
        return table;
    }();
    platform.bundles.add(
        "/built-in/PlugIns/", "LDAP.cvplug",
        reinterpret_cast<void*>(+[](const CorvaneHandshake*) -> const CorvanePlugin* { return &endless; }));
    controller.loadPlugins();
    EXPECT_EQ(make()->nodesToRemove().size(), 10'000U);
}

TEST_F(Item, nodesToRemoveOfAPluginOfBeforeThatEntry_areNone) {
    static CorvanePlugin older = [] {
        auto table = *sdk::tableFor<fakes::RecordingPlugin<3>>();
        table.size = offsetof(CorvanePlugin, nodesToRemove);
        return table;
    }();
    fakes::RecordingPlugin<3>::script().nodesToRemove = {"/LDAP/one"};
    platform.bundles.add(
        "/built-in/PlugIns/", "LDAP.cvplug",
        reinterpret_cast<void*>(+[](const CorvaneHandshake*) -> const CorvanePlugin* { return &older; }));
    controller.loadPlugins();
    EXPECT_TRUE(make()->nodesToRemove().empty());
}

TEST_F(Item, withoutPlugin_everyDefaultApplies) {
    const auto item = make();
    EXPECT_EQ(item->pluginName(), "LDAP");
    EXPECT_EQ(item->pluginPrefix(), "LDAP");
    EXPECT_EQ(item->pluginVersion(), "1.2.3");
    EXPECT_TRUE(item->isEnabledForLocation(nullptr));
    EXPECT_TRUE(item->canSetEnabledForLocation("anywhere"));
    EXPECT_FALSE(item->canConfigure());
    EXPECT_FALSE(item->canSelfTest());
    EXPECT_FALSE(item->isDirty());
    EXPECT_TRUE(item->saveChanges());
    EXPECT_TRUE(item->revertChanges());
    EXPECT_TRUE(item->applicationWillQuitSavingChanges(true));
    EXPECT_TRUE(item->applicationWillLockSavingChanges(false));
    EXPECT_TRUE(item->shouldAllowNodeNameOnSearchPolicy("/LDAP/one"));
}

TEST_F(Item, pluginThatImplementsNothing_getsTheDefaultsToo) {
    platform.bundles.add("/built-in/PlugIns/", "LDAP.cvplug", fakes::EmptyPlugin::factory());
    controller.loadPlugins();
    const auto item = make();
    EXPECT_EQ(item->pluginName(), "LDAP");
    EXPECT_FALSE(item->canSelfTest());
    EXPECT_FALSE(item->canConfigure());
    EXPECT_TRUE(item->isEnabledForLocation(nullptr));
    EXPECT_TRUE(item->canSetEnabledForLocation(nullptr));
    EXPECT_FALSE(item->isDirty());
    EXPECT_TRUE(item->saveChanges());
    EXPECT_TRUE(item->revertChanges());
    EXPECT_TRUE(item->applicationWillQuitSavingChanges(false));
    EXPECT_TRUE(item->applicationWillLockSavingChanges(false));
    EXPECT_TRUE(item->shouldAllowNodeNameOnSearchPolicy("/LDAP/one"));
    item->setEnabledForLocation(false, nullptr);
    EXPECT_FALSE(item->isEnabled());
}

TEST_F(Item, everythingThePluginImplements_isForwardedWithItsArguments) {
    useRecordingPlugin();
    const auto item = make();
    auto& script = Recording::script();
    script.answers["isDirty"] = false;
    EXPECT_EQ(item->pluginName(), "Shown Name");
    EXPECT_EQ(item->pluginPrefix(), "LDAP"); // never the plug-in's
    EXPECT_TRUE(item->isEnabledForLocation("home"));
    EXPECT_TRUE(item->canSetEnabledForLocation(nullptr));
    item->setEnabledForLocation(false, "work");
    EXPECT_TRUE(item->canConfigure());
    item->configureButtonClicked(&button);
    EXPECT_TRUE(item->canSelfTest());
    EXPECT_TRUE(item->selfTest());
    EXPECT_FALSE(item->isDirty());
    EXPECT_TRUE(item->revertChanges());
    EXPECT_TRUE(item->applicationWillQuitSavingChanges(true));
    EXPECT_TRUE(item->applicationWillLockSavingChanges(false));
    EXPECT_TRUE(item->shouldAllowNodeNameOnSearchPolicy("/LDAP/one"));
    EXPECT_EQ(script.calls,
              (std::vector<std::string>{"setPluginAPIImplementor", "pluginName", "isEnabledForLocation home",
                                        "canSetEnabledForLocation null", "setEnabledForLocation off work",
                                        "canConfigure", "configureButtonClicked sender", "selfTest",
                                        "isDirty", "revertChanges", "applicationWillQuitSavingChanges save",
                                        "applicationWillLockSavingChanges discard",
                                        "shouldAllowNodeNameOnSearchPolicy /LDAP/one"}));
    EXPECT_TRUE(item->isEnabled()); // the plug-in took the change; the description has not seen it
}

TEST_F(Item, pluginsAnswers_areTheItems) {
    useRecordingPlugin();
    const auto item = make();
    for (const auto* operation : {"isEnabledForLocation", "canSetEnabledForLocation", "canConfigure",
                                  "selfTest", "revertChanges", "applicationWillQuitSavingChanges",
                                  "applicationWillLockSavingChanges", "shouldAllowNodeNameOnSearchPolicy"})
        Recording::script().answers[operation] = false;
    EXPECT_FALSE(item->isEnabledForLocation(nullptr));
    EXPECT_FALSE(item->canSetEnabledForLocation(nullptr));
    EXPECT_FALSE(item->canConfigure());
    EXPECT_FALSE(item->selfTest());
    EXPECT_FALSE(item->revertChanges());
    EXPECT_FALSE(item->applicationWillQuitSavingChanges(true));
    EXPECT_FALSE(item->applicationWillLockSavingChanges(true));
    EXPECT_FALSE(item->shouldAllowNodeNameOnSearchPolicy("/LDAP/one"));
    EXPECT_TRUE(item->isEnabled()); // never forwarded
}

TEST_F(Item, everyAnswerButZero_isTrue) {
    static std::int8_t answer = 0;
    static CorvanePlugin odd = [] {
        auto table = *sdk::tableFor<fakes::RecordingPlugin<4>>();
        table.isDirty = table.canConfigure = [](void*) { return answer; };
        table.applicationWillQuitSavingChanges = [](void*, std::int8_t) { return answer; };
        table.applicationWillLockSavingChanges = [](void*, std::int8_t) { return answer; };
        return table;
    }();
    platform.bundles.add(
        "/built-in/PlugIns/", "LDAP.cvplug",
        reinterpret_cast<void*>(+[](const CorvaneHandshake*) -> const CorvanePlugin* { return &odd; }));
    controller.loadPlugins();
    const auto item = make();
    for (const int each : {0, 1, 2, -1, 127, -128}) {
        answer = static_cast<std::int8_t>(each);
        EXPECT_EQ(item->isDirty(), each != 0) << each;
        EXPECT_EQ(item->canConfigure(), each != 0) << each;
        EXPECT_EQ(item->applicationWillQuitSavingChanges(true), each != 0) << each;
        EXPECT_EQ(item->applicationWillLockSavingChanges(true), each != 0) << each;
    }
}

TEST_F(Item, anotherImplementor_takesThePlaceOfTheFirstWhichIsReleased) {
    useRecordingPlugin();
    const auto item = make();
    fakes::FakeHost other;
    other.remote = true;
    const std::weak_ptr<plugins::PluginAPIImplementor> first = implementor;
    implementor.reset();
    EXPECT_FALSE(first.expired());
    item->setPluginAPIImplementor(other.makeImplementor());
    EXPECT_TRUE(first.expired());
    EXPECT_EQ(std::ranges::count(Recording::script().calls, "setPluginAPIImplementor"), 2);
    EXPECT_TRUE(sdk::Host(*Recording::script().host).isRemote());
}

TEST_F(Item, description_isCopied) {
    const auto item = make();
    item->setEnabled(false);
    EXPECT_EQ(description.textForKey("UserSetLoaded"), "Active");
    description.set("UserSetLoaded", "Make InActive");
    EXPECT_FALSE(item->isEnabled());
    item->setEnabled(true);
    EXPECT_TRUE(item->isEnabled());
}

TEST_F(Item, enabled_isExactlyTheWordActive) {
    for (const auto* state : {"active", "Unknown", "Make InActive", "ACTIVE", ""}) {
        description.set("UserSetLoaded", state);
        EXPECT_FALSE(make()->isEnabled()) << state;
    }
}

TEST_F(Item, threeConnectors_maySwitchOnButNeverOff) {
    for (const auto* name : {"Local", "BSD", "Zeroconf"}) {
        const auto item = make(name);
        EXPECT_FALSE(item->canSetEnabledForLocation(nullptr)) << name;
        item->setEnabled(false);
        EXPECT_TRUE(item->canSetEnabledForLocation(nullptr)) << name;
    }
    EXPECT_TRUE(make("local")->canSetEnabledForLocation(nullptr)); // another name
}

TEST_F(Item, canConfigure_withExternalProgram_onlyOnThisMachine) {
    description.set("PlugInConfigAvail", "/usr/bin/configurator");
    const auto item = make();
    EXPECT_TRUE(item->canConfigure());
    host.remote = true;
    EXPECT_FALSE(item->canConfigure());
}

TEST_F(Item, canConfigure_ofAPluginWithAConfigurationAlone_isTrue) {
    struct OnlyConfigures {
        void configureButtonClicked(void* /*sender*/) {}
    };
    platform.bundles.add("/built-in/PlugIns/", "LDAP.cvplug",
                         reinterpret_cast<void*>(&sdk::tableForHost<OnlyConfigures>));
    controller.loadPlugins();
    EXPECT_TRUE(make()->canConfigure());
}

TEST_F(Item, everyMakingAndDropping_makesAndDropsAPluginObject) {
    useRecordingPlugin();
    auto item = make();
    EXPECT_EQ(Recording::script().alive, 1);
    item.reset();
    EXPECT_EQ(Recording::script().alive, 0);
}

TEST_F(Item, saveChanges_refusedByThePlugin_leavesTheEnabledStateUnsaved) {
    useRecordingPlugin();
    const auto item = make();
    Recording::script().answers["saveChanges"] = false;
    item->setEnabled(false);
    EXPECT_FALSE(item->saveChanges());
    EXPECT_TRUE(calls().empty());
}

TEST_F(Item, saveChanges_flipsAChangedStateWithCall1000PlusIndex) {
    const auto item = make();
    item->setEnabled(false);
    EXPECT_TRUE(item->saveChanges());
    ASSERT_EQ(calls().size(), 1U);
    EXPECT_EQ(calls()[0].code, 1005);
    EXPECT_EQ(calls()[0].request, util::Bytes(32, 0x42));
    EXPECT_TRUE(item->saveChanges()); // saved: nothing is sent again
    EXPECT_EQ(calls().size(), 1U);
}

TEST_F(Item, saveEnableState_unchanged_sendsNothingButStillNeedsTheAuthorization) {
    const auto item = make();
    EXPECT_TRUE(item->saveEnableState());
    host.formStatus = -60001;
    EXPECT_FALSE(item->saveEnableState());
    EXPECT_TRUE(calls().empty());
}

TEST_F(Item, saveEnableState_withoutIndex_answersTrueAndSendsNothing) {
    description.remove("PlugInIndex");
    const auto item = make();
    item->setEnabled(false);
    EXPECT_TRUE(item->saveEnableState());
    EXPECT_TRUE(calls().empty());
}

TEST_F(Item, saveEnableState_withoutAConfigurationNode_failsWhereThereIsSomethingToWrite) {
    const auto item = make();
    host.configNode = nullptr;
    EXPECT_TRUE(item->saveEnableState());
    item->setEnabled(false);
    EXPECT_FALSE(item->saveEnableState());
    EXPECT_TRUE(calls().empty());
}

TEST_F(Item, saveEnableState_refusedByTheService_isTriedAgainNextTime) {
    const auto item = make();
    item->setEnabled(false);
    framework.session->config().nextError = {1, "no", "", ""};
    EXPECT_FALSE(item->saveEnableState());
    EXPECT_TRUE(item->saveEnableState());
    EXPECT_EQ(calls().size(), 2U);
}

TEST_F(Item, inactiveConnectorSwitchedOnAndOffAgain_sendsTheFlipAllTheSame) {
    description.set("PlugInLoaded", "Inactive");
    description.set("UserSetLoaded", "Inactive");
    const auto item = make();
    item->setEnabled(true);
    item->setEnabled(false);
    EXPECT_TRUE(item->saveEnableState());
    EXPECT_EQ(calls().size(), 1U);
}

TEST_F(Item, thrownException_staysInsideAndIsReported) {
    useRecordingPlugin();
    const auto item = make();
    Recording::script().throwsIn = "saveChanges";
    EXPECT_FALSE(item->saveChanges());
    EXPECT_EQ(host.done, std::vector<std::string>{"failed LDAP saveChanges: the plug-in is out of order"});
}

TEST_F(Item, pluginWhoseObjectCantBeMade_isReportedWithItsReason) {
    struct CantBeMade {
        CantBeMade() { throw std::runtime_error("no licence"); }
    };
    platform.bundles.add("/built-in/PlugIns/", "LDAP.cvplug",
                         reinterpret_cast<void*>(&sdk::tableForHost<CantBeMade>));
    controller.loadPlugins();
    const auto item = make();
    EXPECT_EQ(host.done, std::vector<std::string>{"failed LDAP create: no licence"});
    EXPECT_EQ(item->pluginName(), "LDAP");
}

TEST_F(Item, destroyThatThrows_isReported) {
    static CorvanePlugin table = [] {
        auto made = *sdk::tableFor<fakes::EmptyPlugin>();
        made.destroy = [](void* self) {
            sdk::tableFor<fakes::EmptyPlugin>()->destroy(self);
            throw std::runtime_error("still busy");
        };
        return made;
    }();
    platform.bundles.add(
        "/built-in/PlugIns/", "LDAP.cvplug",
        reinterpret_cast<void*>(+[](const CorvaneHandshake*) -> const CorvanePlugin* { return &table; }));
    controller.loadPlugins();
    (void)make();
    EXPECT_EQ(host.done, std::vector<std::string>{"failed LDAP destroy: still busy"});
}

TEST_F(Item, nameThatIsntUTF8_isRepairedAndLoggedWithThePluginsName) {
    useRecordingPlugin();
    Recording::script().name = "Caf\xE9";
    const auto item = make();
    EXPECT_EQ(item->pluginName(), "Caf\xEF\xBF\xBD");
    EXPECT_EQ(item->pluginName(), "Caf\xEF\xBF\xBD");
    EXPECT_EQ(host.done,
              std::vector<std::string>{"log plug-in LDAP passed a text that isn't UTF-8; each byte "
                                       "that begins no character is replaced by U+FFFD"});
}
