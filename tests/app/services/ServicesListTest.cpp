#include <gtest/gtest.h>

#include "fakes/FakeProgram.h"
#include "fakes/RecordingPlugin.h"
#include "sdk/Host.h"

using namespace corvane;
namespace attribute = halden::attribute;
using Recording = fakes::RecordingPlugin<0>;

namespace {

struct ServicesList : testing::Test {
    ServicesList() { Recording::script() = {}; }
    [[nodiscard]] std::vector<std::string> shown() { return program.interface.selectPlugIn.texts("Name"); }
    void setSystemVersion(const std::string& version) {
        program.framework.session->config().details.set(attribute::operatingSystemVersion,
                                                        util::Array{version});
    }
    fakes::FakeProgram program;
    fakes::FakeSession& session = *program.framework.session;
};

} // namespace

TEST_F(ServicesList, isSortedByNameWithoutRegardToCase) {
    program.addConnector("ad", "Active", "1");
    program.addConnector("Zoo", "Active", "1");
    program.addConnector("AD", "Active", "1");
    program.launch();
    const auto names = shown();
    EXPECT_EQ(names.size(), 5U);
    EXPECT_EQ(names.back(), "Zoo");
    EXPECT_EQ((std::set<std::string>{names[0], names[1]}), (std::set<std::string>{"ad", "AD"}));
}

TEST_F(ServicesList, nameOfEachPlugin_isAskedOnceForSorting) {
    for (int i = 0; i < 20; ++i)
        program.addConnector("C" + std::to_string(i), "Active", "1");
    program.addPlugin("C7", Recording::factory());
    program.controller().buildDSConfigPaneData();
    plugins::PluginController::sharedInstance(program.platform.environment).loadPlugins();
    Recording::script().calls.clear();
    program.controller().buildDSConfigPaneData();
    EXPECT_EQ(std::ranges::count(Recording::script().calls, "pluginName"), 1);
}

TEST_F(ServicesList, recordsAttributes_becomeTheDescription) {
    program.addConnector("AD", "Inactive", "2.20");
    program.launch();
    const auto item = program.controller().pluginWithPrefix("AD");
    ASSERT_NE(item, nullptr);
    EXPECT_FALSE(item->isEnabled());
    EXPECT_EQ(item->pluginVersion(), "2.20");
}

TEST_F(ServicesList, recordWithoutStateAndVersion_isUnknownAndHasNoIndex) {
    program.addConnector("AD", "", "");
    program.launch();
    const auto item = program.controller().pluginWithPrefix("AD");
    EXPECT_EQ(item->pluginVersion(), "Unknown");
    EXPECT_FALSE(item->isEnabled());
    item->setEnabled(true);
    EXPECT_TRUE(item->saveEnableState());
    EXPECT_TRUE(session.config().calls.empty()); // no index, no call
}

TEST_F(ServicesList, index_isTheLengthOfTheVersionText) {
    program.launch();
    program.controller().setPluginEnabled("BSD", false); // its version is 1.2.3
    ASSERT_EQ(session.config().calls.size(), 1U);
    EXPECT_EQ(session.config().calls[0].code, 1005);
}

TEST_F(ServicesList, index_countsCharactersNotBytes) {
    program.addConnector("AD", "Active", "1.β");
    program.launch();
    program.controller().setPluginEnabled("AD", false);
    EXPECT_EQ(session.config().calls.at(0).code, 1003);
}

TEST_F(ServicesList, oneLegacyConnector_isNeverShown) {
    program.addConnector("FlatFile", "Active", "1");
    program.addConnector("flatfile", "Active", "1");
    program.launch();
    EXPECT_EQ(shown(), (std::vector<std::string>{"BSD", "flatfile", "LDAP"}));
}

TEST_F(ServicesList, zeroconfConnectorsFormerName_isShownAsTheCurrentOneWithItsPlugin) {
    program.addConnector("ZeroconfDiscovery", "Active", "1");
    program.addPlugin("Zeroconf", Recording::factory());
    Recording::script().name = "Bonded";
    program.launch();
    EXPECT_NE(program.controller().pluginWithPrefix("Zeroconf"), nullptr);
    EXPECT_EQ(program.controller().pluginWithPrefix("ZeroconfDiscovery"), nullptr);
    EXPECT_NE(program.controller().pluginWithName("Bonded"), nullptr);
}

TEST_F(ServicesList, onALegacySystem_everyConnectorIsListed) {
    setSystemVersion("10.6.8");
    program.addPlugin("LDAP", Recording::factory());
    program.controller().buildDSConfigPaneData();
    plugins::PluginController::sharedInstance(program.platform.environment).loadPlugins();
    program.controller().buildDSConfigPaneData();
    EXPECT_EQ(std::ranges::count(Recording::script().calls, "canConfigure"), 0)
        << "the answer wouldn't matter";
    program.launch();
    EXPECT_EQ(shown().size(), 2U);
}

TEST_F(ServicesList, onALaterSystem_onlyConnectorsThatCanBeConfigured) {
    setSystemVersion("10.10");
    program.addPlugin("LDAP", Recording::factory());
    program.launch();
    EXPECT_EQ(shown(), std::vector<std::string>{"Shown Name"});
}

TEST_F(ServicesList, systemVersion_isAskedAfreshForEveryRecord) {
    (void)program.controller();
    program.journal.clear();
    program.controller().buildDSConfigPaneData();
    EXPECT_EQ(program.journal.count("/Config.details"), 2);
}

TEST_F(ServicesList, queryAsksForEveryConnectorAndEveryAttribute) {
    program.addConnector("AD", "Active", "1").with(attribute::configAvailable, {"/bin/x"});
    session.config().records.push_back(
        std::make_shared<fakes::FakeRecord>(std::string(halden::recordType::recordTypes), "no connector"));
    program.launch();
    EXPECT_EQ(shown().size(), 3U);
    EXPECT_TRUE(program.controller().pluginWithPrefix("AD")->canConfigure());
}

TEST_F(ServicesList, query_isTheWildcardForRecordNamesWithoutALimit) {
    program.controller().buildDSConfigPaneData();
    const auto& query = session.config().queries.back();
    EXPECT_EQ(query.recordTypes, std::vector<std::string>{"dsRecTypeStandard:Plugins"});
    EXPECT_EQ(query.attribute, attribute::recordName);
    EXPECT_EQ(query.matchType, halden::MatchType::equalTo);
    EXPECT_EQ(query.values, std::vector<std::string>{"dsRecordsAll"});
    EXPECT_EQ(query.attributesToReturn, std::vector<std::string>{std::string(attribute::all)});
    EXPECT_EQ(query.maximumResults, 0U);
}

TEST_F(ServicesList, failingQuery_leavesAnEmptyListWithoutAnAlert) {
    program.launch();
    session.config().nextError = {1, "down", "", ""};
    program.controller().buildDSConfigPaneData();
    EXPECT_TRUE(shown().empty());
    EXPECT_TRUE(program.toolkit.alerts().empty());
}

TEST_F(ServicesList, exceptionWhileBuilding_keepsWhatIsThereHidesTheProgressAndReloads) {
    program.launch();
    program.controller().setHaldenSession(program.framework.session);
    program.controller().showProgressBar();
    program.journal.clear();
    session.config().raisesOnDetails = true; // raised by the question for the system's version
    program.controller().buildDSConfigPaneData();
    EXPECT_TRUE(shown().empty()); // nothing was added before it
    EXPECT_FALSE(program.interface.window.hasAttachedSheet());
    EXPECT_EQ(program.journal.count("selectPlugIn.reloadData"), 1);
}

TEST_F(ServicesList, exceptionBeforeTheRecordsAreThere_keepsThePreviousList) {
    program.launch();
    const auto before = program.controller().pluginWithPrefix("LDAP");
    session.config().raisesOnQuery = true;
    program.controller().buildDSConfigPaneData();
    EXPECT_EQ(shown(), (std::vector<std::string>{"BSD", "LDAP"}));
    EXPECT_EQ(program.controller().pluginWithPrefix("LDAP"), before);
}

TEST_F(ServicesList, exceptionAtTheThirdRecord_keepsTheTwoBefore) {
    program.addConnector("AD", "Active", "1");
    program.launch();
    ASSERT_EQ(shown().size(), 3U);
    session.config().raisesOnDetails = true;
    session.config().detailsBeforeRaising = 2;
    program.controller().buildDSConfigPaneData();
    EXPECT_EQ(shown(), (std::vector<std::string>{"LDAP", "BSD"})) << "as they came, for nothing sorts them";
}

TEST_F(ServicesList, thirdRecordThatCantBeRead_leavesTheTwoBefore) {
    program.addConnector("AD", "Active", "1").raisesOnceFetched = true;
    program.launch();
    EXPECT_EQ(shown(), (std::vector<std::string>{"LDAP", "BSD"}));
}

TEST_F(ServicesList, exceptionInALaterBuild_leavesTheListLoaded) {
    program.launch();
    session.config().raisesOnQuery = true;
    program.controller().buildDSConfigPaneData();
    program.journal.clear();
    program.controller().loadCurrentTabIfNeeded("1");
    EXPECT_FALSE(program.journal.contains("/Config.query"));
}

TEST_F(ServicesList, exceptionBeforeItWasEverLoaded_letsTheNextVisitTryAgain) {
    session.config().raisesOnDetails = true;
    program.launch();
    EXPECT_TRUE(shown().empty());
    session.config().raisesOnDetails = false;
    program.controller().loadCurrentTabIfNeeded("1");
    EXPECT_EQ(shown().size(), 2U);
}

TEST_F(ServicesList, rebuild_makesNewItemsAndPluginObjects) {
    program.addPlugin("LDAP", Recording::factory());
    program.launch();
    const auto before = program.controller().pluginWithPrefix("LDAP");
    program.controller().buildDSConfigPaneData();
    EXPECT_NE(program.controller().pluginWithPrefix("LDAP"), before);
}

TEST_F(ServicesList, lookUps_areExactAndFindNothingBeforeTheFirstBuild) {
    auto& controller = program.controller();
    EXPECT_EQ(controller.pluginWithPrefix("LDAP"), nullptr);
    EXPECT_EQ(controller.pluginWithName("LDAP"), nullptr);
    EXPECT_FALSE(controller.isPluginEnabled("LDAP"));
    program.launch();
    EXPECT_NE(controller.pluginWithPrefix("LDAP"), nullptr);
    EXPECT_EQ(controller.pluginWithPrefix("ldap"), nullptr);
    EXPECT_EQ(controller.pluginVersionWithPrefix("LDAP"), "1.10");
    EXPECT_EQ(controller.pluginVersionWithPrefix("none"), std::nullopt);
    EXPECT_TRUE(controller.isPluginEnabled("LDAP"));
    EXPECT_FALSE(controller.isPluginEnabled("none"));
}

TEST_F(ServicesList, pluginWithName_looksAtTheShownNameAndWithPrefixAtTheRecords) {
    program.addPlugin("LDAP", Recording::factory());
    program.launch();
    EXPECT_NE(program.controller().pluginWithName("Shown Name"), nullptr);
    EXPECT_EQ(program.controller().pluginWithName("LDAP"), nullptr);
    EXPECT_NE(program.controller().pluginWithPrefix("LDAP"), nullptr);
}

TEST_F(ServicesList, setPluginEnabled_writesAtOnceAndMarksNothing) {
    program.launchUnlocked();
    program.journal.clear();
    program.controller().setPluginEnabled("LDAP", false);
    EXPECT_EQ(session.config().calls.at(0).code, 1004);
    EXPECT_FALSE(program.interface.window.isDocumentEdited());
    EXPECT_TRUE(program.journal.contains("selectPlugIn.reloadData"));
    EXPECT_FALSE(program.controller().isPluginEnabled("LDAP"));
}

TEST_F(ServicesList, setPluginEnabledOfAnUnknownOne_onlyReloads) {
    program.launch();
    program.journal.clear();
    program.controller().setPluginEnabled("none", true);
    EXPECT_TRUE(program.journal.contains("selectPlugIn.reloadData"));
    EXPECT_TRUE(session.config().calls.empty());
}

TEST_F(ServicesList, changeListener_watchesOneKeyUnderItsNameAndPostsTheNotification) {
    program.launch();
    auto& store = program.platform.dynamicStore;
    EXPECT_EQ(store.names, std::vector<std::string>{"com.velmora.dsSearchPolicyListener"});
    ASSERT_EQ(store.inRunLoop.size(), 1U);
    EXPECT_EQ(
        store.inRunLoop[0]->keys,
        (std::vector<std::string>{"com.velmora.DirectoryService.NotifyTypeStandard:SearchPolicyChanged"}));
    int heard = 0;
    const auto observer =
        program.platform.notifications.observe("DSSearchPathNodeChange", [&heard] { ++heard; });
    store.signal("com.velmora.DirectoryService.NotifyTypeStandard:SearchPolicyChanged");
    EXPECT_EQ(heard, 1);
}

TEST_F(ServicesList, changeListenerThatCantBeMade_isNoMatter) {
    program.platform.dynamicStore.canCreate = false;
    program.launch();
    EXPECT_EQ(shown().size(), 2U);
    EXPECT_TRUE(program.platform.log.lines.empty());
}

TEST_F(ServicesList, changeListenerWithoutItsKey_isNotPutIntoTheRunLoop) {
    program.platform.dynamicStore.canWatch = false;
    program.launch();
    EXPECT_TRUE(program.platform.dynamicStore.inRunLoop.empty());
    EXPECT_TRUE(program.platform.dynamicStore.lastSession.expired()); // nobody else holds it
}

TEST_F(ServicesList, pluginWhoseConstructorThrows_isLoggedAndShownWithItsMessage_onceForAllReadings) {
    struct CantBeMade {
        CantBeMade() { throw std::runtime_error("no licence was found"); }
    };
    program.addConnector("AD", "Active", "1");
    program.addPlugin("AD", reinterpret_cast<void*>(&sdk::tableForHost<CantBeMade>));
    program.launch();
    ASSERT_EQ(program.toolkit.alerts().size(), 1U);
    EXPECT_EQ(program.toolkit.alerts()[0].message, "The plug-in AD has failed.");
    EXPECT_NE(program.toolkit.alerts()[0].information.find("“create”: no licence was found"),
              std::string::npos);
    EXPECT_TRUE(std::ranges::any_of(program.platform.log.lines, [](const auto& line) {
        return line.find("AD.cvplug made no object: no licence was found") != line.npos;
    }));
    program.toolkit.answerSheet(1);
    program.controller().buildDSConfigPaneData();
    EXPECT_EQ(program.toolkit.alerts().size(), 1U);
}

namespace {

/// Asks the host while the list of connectors is being read, and while it is destroyed with the list.
struct AsksAtOnce {
    inline static int made = 0;
    inline static std::vector<std::string> answers;
    corvane::sdk::Host host;

    ~AsksAtOnce() { (void)host.isPluginEnabled("BSD"); }
    void setPluginAPIImplementor(const CorvaneHost& given) {
        host = sdk::Host(given);
        ++made;
        if (made < 20) host.reloadSearchPolicies();
        note("set");
    }
    bool canConfigure() {
        if (made < 20) host.reloadSearchPolicies();
        note("can");
        return true;
    }
    void note(const std::string& when) const {
        for (const auto* name : {"AD", "BSD", "Zoo", "Nobody"})
            answers.push_back(when + " " + name + (host.isPluginEnabled(name) ? " on " : " off ") +
                              host.pluginVersionWithPrefix(name).value_or("none"));
    }
};

} // namespace

TEST_F(ServicesList, pluginThatAsksWhileTheListIsRead_isMadeOnceAReadingAndHearsTheTruth) {
    AsksAtOnce::made = 0;
    AsksAtOnce::answers.clear();
    setSystemVersion("12"); // connectors are asked whether they can be configured
    program.addConnector("AD", "Active", "1");
    program.addConnector("Zoo", "Active", "2.0");
    program.addPlugin("AD", reinterpret_cast<void*>(&sdk::tableForHost<AsksAtOnce>));
    program.launch();
    EXPECT_EQ(AsksAtOnce::made, 2) << "the list is read before the window is there, and with it";
    const std::vector<std::string> truth = {" AD on 1", " BSD on 1.2.3", " Zoo on 2.0", " Nobody off none"};
    ASSERT_GE(AsksAtOnce::answers.size(), 4U);
    for (std::size_t i = 0; i < truth.size(); ++i)
        EXPECT_EQ(AsksAtOnce::answers[i], "set" + truth[i]);
    AsksAtOnce::made = 0;
    AsksAtOnce::answers.clear();
    program.controller().buildDSConfigPaneData();
    EXPECT_EQ(AsksAtOnce::made, 1);
    ASSERT_GE(AsksAtOnce::answers.size(), 8U);
    for (std::size_t i = 0; i < truth.size(); ++i) {
        EXPECT_EQ(AsksAtOnce::answers[i], "set" + truth[i]);
        EXPECT_EQ(AsksAtOnce::answers[i + 4], "can" + truth[i]);
    }
    EXPECT_EQ(std::ranges::count(shown(), "AD"), 1);
}
