// The host interface row by row, as a plug-in meets it: through the C table and its C++ wrapping.
#include <gtest/gtest.h>

#include <thread>

#include "fakes/FakeHost.h"
#include "plugins/PluginHostTable.h"
#include "sdk/Host.h"

using namespace corvane;
using Texts = std::vector<std::string>;

namespace {

struct HostInterface : testing::Test {
    HostInterface() {
        program.session = session;
        program.configNode = std::make_shared<directory::HaldenNodeConfig>(
            session->nodeWithType(halden::NodeType::configNode, nullptr));
        program.theAuthorization = authorizations.make();
    }

    fakes::Journal journal;
    fakes::FakeHost program;
    fakes::FakeAuthorizationService authorizations{journal};
    std::shared_ptr<fakes::FakeSession> session = std::make_shared<fakes::FakeSession>(journal);
    plugins::PluginHostTable hostTable{program.makeImplementor(), "Mine"};
    const CorvaneHost& table = hostTable.table();
    sdk::Host host{table};
};

/// What an action of a plug-in's was given.
struct Action {
    sdk::Host host;
    sdk::Object authorization;
    std::vector<std::uint8_t> form;
    CorvaneAction table{sizeof(CorvaneAction), this, nullptr, nullptr};

    explicit Action(const sdk::Host& of) : host(of) {
        table.setAuth = [](void* self, CorvaneObject* given) {
            auto& action = *static_cast<Action*>(self);
            const auto& objects = *action.host.table().objects;
            action.authorization = {objects, objects.retain(given)};
        };
        table.setRemoteAuthExtForm = [](void* self, const std::uint8_t given[32]) {
            static_cast<Action*>(self)->form.assign(given, given + 32);
        };
    }
};

} // namespace

TEST_F(HostInterface, table_saysItsSizeAndVersion) {
    EXPECT_EQ(table.size, sizeof(CorvaneHost));
    EXPECT_EQ(table.version, std::uint32_t{CORVANE_PLUGIN_VERSION});
    EXPECT_EQ(table.objects->size, sizeof(CorvaneObjects));
    EXPECT_EQ(table.directory->size, sizeof(CorvaneDirectory));
    EXPECT_EQ(table.formatters->size, sizeof(CorvaneFormatters));
}

TEST_F(HostInterface, preflights_areTheProgramsAnswers) {
    EXPECT_TRUE(host.preflightDSRef());
    EXPECT_TRUE(host.preflightAuthRights());
    program.reachable = program.rights = false;
    EXPECT_FALSE(host.preflightDSRef());
    EXPECT_FALSE(host.preflightAuthRights());
}

TEST_F(HostInterface, makeAuthExternalForm_fillsTheFormAndReturnsTheStatus) {
    sdk::AuthorizationForm form;
    EXPECT_EQ(host.makeAuthExternalForm(form), 0);
    EXPECT_EQ(form.data()[31], 0x42);
    program.formStatus = -60001;
    EXPECT_EQ(host.makeAuthExternalForm(form), -60001);
    EXPECT_EQ(form.data()[31], 0);
}

TEST_F(HostInterface, actionOnThisMachine_getsTheAuthorization) {
    Action action(host);
    host.setAuthorizationForHaldenCAction(action.table);
    EXPECT_EQ(action.authorization.kind(), CORVANE_AUTHORIZATION);
    EXPECT_TRUE(action.form.empty());
}

TEST_F(HostInterface, actionOnARemoteServer_getsTheForm) {
    program.remote = true;
    Action action(host);
    host.setAuthorizationForHaldenCAction(action.table);
    EXPECT_FALSE(action.authorization);
    EXPECT_EQ(action.form, std::vector<std::uint8_t>(32, 0x42));
}

TEST_F(HostInterface, actionOnARemoteServer_getsZerosWhenTheFormCantBeMade) {
    program.remote = true;
    program.formStatus = -1;
    Action action(host);
    host.setAuthorizationForHaldenCAction(action.table);
    EXPECT_EQ(action.form, std::vector<std::uint8_t>(32, 0));
}

TEST_F(HostInterface, actionWithoutBothSetters_isLoggedAndLeftAlone) {
    Action action(host);
    action.table.setAuth = nullptr;
    host.setAuthorizationForHaldenCAction(action.table);
    table.setAuthorizationForHaldenCAction(table.context, nullptr);
    EXPECT_EQ(program.done.size(), 2U);
    EXPECT_EQ(program.done[0], "log plug-in Mine passed an action that can't take an authorization");
}

TEST_F(HostInterface, actionOfTheFirstSizeOrALargerOne_isTaken_andAShorterOneRefused) {
    constexpr auto first = offsetof(CorvaneAction, setRemoteAuthExtForm) + sizeof(void*);
    for (const auto size : {first, first + 64}) {
        Action action(host);
        action.table.size = static_cast<std::uint32_t>(size);
        host.setAuthorizationForHaldenCAction(action.table);
        EXPECT_TRUE(action.authorization) << size;
    }
    EXPECT_TRUE(program.done.empty());
    Action action(host);
    action.table.size = first - 1;
    host.setAuthorizationForHaldenCAction(action.table);
    EXPECT_FALSE(action.authorization);
    EXPECT_EQ(program.done.size(), 1U);
}

TEST_F(HostInterface, actionThatThrows_isLoggedAndGoesNoFurther) {
    Action action(host);
    action.table.setAuth = [](void*, CorvaneObject*) { throw 5; };
    host.setAuthorizationForHaldenCAction(action.table);
    EXPECT_EQ(program.done, Texts{"log call of plug-in Mine failed: unknown exception"});
}

TEST_F(HostInterface, authorization_isTheProgramsOwnObjectAndItsName) {
    EXPECT_EQ(host.authorization().kind(), CORVANE_AUTHORIZATION);
    EXPECT_EQ(host.authorizationRef(), program.theAuthorization->authorizationRef());
    program.theAuthorization = nullptr;
    EXPECT_FALSE(host.authorization());
    EXPECT_EQ(host.authorizationRef(), 0U);
}

TEST_F(HostInterface, sessionAndNode_areTheProgramsPresentOnes) {
    EXPECT_EQ(host.haldenSession().kind(), CORVANE_SESSION);
    EXPECT_EQ(host.haldenConfigNode().kind(), CORVANE_NODE);
    program.session = nullptr;
    program.configNode = nullptr;
    EXPECT_FALSE(host.haldenSession());
    EXPECT_FALSE(host.haldenConfigNode());
}

TEST_F(HostInterface, namesForTheOlderInterface_areZero) {
    EXPECT_EQ(host.dsRef(), 0U);
    EXPECT_EQ(host.configureNodeRef(), 0U);
}

TEST_F(HostInterface, machine_isAsTheProgramKnowsIt) {
    EXPECT_EQ(host.networkSets().at(0)["path"].text(), "/Sets/A");
    EXPECT_FALSE(host.currentNetworkSet());
    program.currentSet = util::Dictionary{{"name", "Office"}};
    EXPECT_EQ(host.currentNetworkSet()["name"].text(), "Office");
    EXPECT_EQ(host.hostName(), "this-machine");
    EXPECT_EQ(host.osVersion(), "12");
    EXPECT_FALSE(host.legacyDS());
    program.version = std::nullopt;
    EXPECT_EQ(host.osVersion(), std::nullopt);
    EXPECT_TRUE(host.legacyDS());
    EXPECT_FALSE(host.isRemote());
    program.remote = true;
    EXPECT_TRUE(host.isRemote());
}

TEST_F(HostInterface, formatters_areNewOnesEachTime) {
    const auto number = host.numberFormatEnforcer();
    EXPECT_EQ(number.kind(), CORVANE_FORMATTER);
    EXPECT_EQ(host.ipv4AddressFormatter().kind(), CORVANE_FORMATTER);
    const auto& formatters = *table.formatters;
    EXPECT_TRUE(formatters.setMaximum(number.get(), "100"));
    EXPECT_FALSE(formatters.isPartialStringValid(number.get(), "101", "10"));
    const auto other = host.numberFormatEnforcer();
    EXPECT_TRUE(formatters.isPartialStringValid(other.get(), "101", "10")) << "has no bounds of its own";
}

TEST_F(HostInterface, numberFormatter_takesBoundsAsDigitsAlone) {
    const auto number = host.numberFormatEnforcer();
    const auto& formatters = *table.formatters;
    EXPECT_FALSE(formatters.setMinimum(number.get(), "many"));
    EXPECT_TRUE(formatters.setMinimum(number.get(), "10"));
    EXPECT_FALSE(formatters.isPartialStringValid(number.get(), "5", ""));
    EXPECT_TRUE(formatters.setMinimum(number.get(), nullptr));
    EXPECT_TRUE(formatters.isPartialStringValid(number.get(), "5", ""));
    EXPECT_FALSE(formatters.setMinimum(host.ipv4AddressFormatter().get(), "1"));
}

TEST_F(HostInterface, addressFormatter_refusesInTheUsersLanguageAndBeeps) {
    program.localizedStrings.marks = true;
    const auto formatter = host.ipv4AddressFormatter();
    const auto& formatters = *table.formatters;
    EXPECT_FALSE(formatters.isPartialStringValid(formatter.get(), "256", "25"));
    EXPECT_EQ(program.done, Texts{"beep"});
    CorvaneObject* value = nullptr;
    CorvaneObject* description = nullptr;
    EXPECT_FALSE(formatters.objectValueForString(formatter.get(), "1.2.3", &value, &description));
    EXPECT_EQ(value, nullptr);
    EXPECT_EQ(sdk::Object(*table.objects, description).text(), "«IPv4 address required.»");
    EXPECT_TRUE(formatters.objectValueForString(formatter.get(), "10.0.0.255", &value, &description));
    EXPECT_EQ(sdk::Object(*table.objects, value).text(), "10.0.0.255");
    EXPECT_EQ(description, nullptr);
}

TEST_F(HostInterface, validCharacterFormatter_acceptsTheCharactersOfItsText) {
    const auto formatter = host.validCharacterFormatter("abcé");
    const auto& formatters = *table.formatters;
    EXPECT_TRUE(formatters.isPartialStringValid(formatter.get(), "bébé", ""));
    EXPECT_FALSE(formatters.isPartialStringValid(formatter.get(), "bad", ""));
    const sdk::Object shown{*table.objects,
                            formatters.stringForObjectValue(formatter.get(), host.integer(7).get())};
    EXPECT_EQ(shown.text(), "7");
}

TEST_F(HostInterface, pluginEnableStateChanged_reloadsTheServicesTableWhateverItSays) {
    host.pluginEnableStateChanged("LDAP", true);
    host.pluginEnableStateChanged("", false);
    table.pluginEnableStateChanged(table.context, nullptr, 1);
    EXPECT_EQ(program.done, (Texts{"reload", "reload", "reload"}));
}

TEST_F(HostInterface, searchPolicies_areReloadedAndSaved) {
    host.reloadSearchPolicies();
    EXPECT_TRUE(host.saveSearchPolicies());
    program.saves = false;
    EXPECT_FALSE(host.saveSearchPolicies());
    EXPECT_EQ(program.done, (Texts{"reload policies", "save policies", "save policies"}));
}

TEST_F(HostInterface, nodesOfThePolicies_areAskedForEachPolicyApart) {
    EXPECT_TRUE(host.isNodeOnAuthSearchPolicy("/LDAP/a"));
    EXPECT_FALSE(host.isNodeOnContactsSearchPolicy("/LDAP/a"));
    EXPECT_TRUE(host.isNodeOnContactsSearchPolicy("/LDAP/b"));
}

TEST_F(HostInterface, nodes_areAddedToAndDeletedFromOnePolicy) {
    host.addNodeToAuthSearchPolicy("/LDAP/new");
    EXPECT_TRUE(program.authentication.contains("/LDAP/new"));
    EXPECT_FALSE(program.contacts.contains("/LDAP/new"));
    host.addNodeToContactsSearchPolicy("/LDAP/other");
    EXPECT_TRUE(program.contacts.contains("/LDAP/other"));
    host.deleteNodeFromAuthSearchPolicy("/LDAP/b");
    EXPECT_FALSE(program.authentication.contains("/LDAP/b"));
    EXPECT_TRUE(program.contacts.contains("/LDAP/b"));
    host.deleteNodeFromContactsSearchPolicy("/LDAP/b");
    EXPECT_FALSE(program.contacts.contains("/LDAP/b"));
}

TEST_F(HostInterface, nodesWithAPrefix_areDeletedFromOnePolicy) {
    program.contacts = {"/LDAP/b", "/AD/c"};
    host.deleteNodesFromAuthSearchPolicyWithPrefix("/LDAP/");
    EXPECT_EQ(program.authentication, std::set<std::string>{"/AD/c"});
    EXPECT_EQ(program.contacts.size(), 2U);
    host.deleteNodesFromContactsSearchPolicyWithPrefix("/AD");
    EXPECT_EQ(program.contacts, std::set<std::string>{"/LDAP/b"});
}

TEST_F(HostInterface, nullNamesAndPrefixes_changeNothing) {
    table.deleteNodesFromAuthSearchPolicyWithPrefix(table.context, nullptr);
    table.deleteNodesFromContactsSearchPolicyWithPrefix(table.context, nullptr);
    table.addNodeToAuthSearchPolicy(table.context, nullptr);
    table.deleteNodeFromContactsSearchPolicy(table.context, nullptr);
    EXPECT_EQ(program.authentication.size(), 3U);
    EXPECT_EQ(program.contacts.size(), 1U);
}

TEST_F(HostInterface, renamedNode_isReportedWithBothNames) {
    host.nodeNameChanged("/LDAP/a", "/LDAP/z");
    table.nodeNameChanged(table.context, "/LDAP/a", nullptr);
    EXPECT_EQ(program.done, (Texts{"rename /LDAP/a /LDAP/z", "rename /LDAP/a null"}));
}

TEST_F(HostInterface, markDirty_marksTheWindowWhateverTheSender) {
    host.markDirty();
    host.markDirty(this);
    EXPECT_EQ(program.done, (Texts{"modified", "modified"}));
}

TEST_F(HostInterface, connectors_areKnownByTheirPrefix) {
    EXPECT_EQ(host.pluginVersionWithPrefix("LDAP"), "1.2.3");
    EXPECT_EQ(host.pluginVersionWithPrefix("Other"), std::nullopt);
    EXPECT_TRUE(host.isPluginEnabled("LDAP"));
    EXPECT_FALSE(host.isPluginEnabled("BSD"));
    host.setPluginEnabled("BSD", false);
    EXPECT_EQ(program.done, Texts{"set BSD off"});
}

TEST_F(HostInterface, log_hasThePluginsNameInFront) {
    host.log("hello");
    EXPECT_EQ(program.done, Texts{"log Mine: hello"});
}

TEST_F(HostInterface, callFromAnotherThread_isRefusedAndLogged) {
    bool answer = true;
    std::thread([&] { answer = host.preflightDSRef(); }).join();
    EXPECT_FALSE(answer);
    EXPECT_EQ(program.done,
              Texts{"log plug-in Mine called from another thread than the main one, and was refused"});
}

TEST_F(HostInterface, hostThatThrows_answersNothingAndLogs) {
    struct Broken final : fakes::FakeHost {
        util::Array networkSets() override { throw std::runtime_error("out of order"); }
    } broken;
    const plugins::PluginHostTable other(broken.makeImplementor(), "Mine");
    EXPECT_FALSE(sdk::Host(other.table()).networkSets());
    EXPECT_EQ(broken.done, Texts{"log call of plug-in Mine failed: out of order"});
}

TEST_F(HostInterface, entryThatAnOlderHostLacks_answersItsNothing) {
    auto older = table;
    older.size = offsetof(CorvaneHost, pluginVersionWithPrefix);
    const sdk::Host old(older);
    EXPECT_TRUE(old.preflightDSRef());
    EXPECT_EQ(old.pluginVersionWithPrefix("LDAP"), std::nullopt);
    EXPECT_FALSE(old.isPluginEnabled("LDAP"));
}

TEST_F(HostInterface, offers_coversEveryTable) {
    auto objects = *table.objects;
    auto directory = *table.directory;
    auto formatters = *table.formatters;
    auto older = table;
    older.objects = &objects;
    older.directory = &directory;
    older.formatters = &formatters;
    const sdk::Host old(older);
    EXPECT_TRUE(old.offers(&CorvaneHost::setPluginEnabled) && old.offers(&CorvaneObjects::valueForKey));
    EXPECT_TRUE(old.offers(&CorvaneDirectory::customCallSendItems));
    EXPECT_TRUE(old.offers(&CorvaneFormatters::setMaximum));
    older.size = offsetof(CorvaneHost, setPluginEnabled);
    objects.size = offsetof(CorvaneObjects, valueForKey);
    directory.size = offsetof(CorvaneDirectory, customCallSendItems);
    formatters.setMaximum = nullptr;
    EXPECT_FALSE(old.offers(&CorvaneHost::setPluginEnabled) || old.offers(&CorvaneObjects::valueForKey));
    EXPECT_FALSE(old.offers(&CorvaneDirectory::customCallSendItems));
    EXPECT_FALSE(old.offers(&CorvaneFormatters::setMaximum));
    EXPECT_TRUE(old.offers(&CorvaneHost::isPluginEnabled) && old.offers(&CorvaneObjects::keys));
    EXPECT_FALSE(sdk::Host().offers(&CorvaneHost::isRemote));
}

TEST_F(HostInterface, textThatIsntUTF8_isRepairedAndLoggedOnce) {
    host.log("caf\xE9 \xEF\xBF\xBD");
    host.addNodeToAuthSearchPolicy("/LDAP/\xFF");
    EXPECT_TRUE(program.authentication.contains("/LDAP/\xEF\xBF\xBD"));
    ASSERT_EQ(program.done.size(), 2U);
    EXPECT_EQ(program.done[0], "log plug-in Mine passed a text that isn't UTF-8; each byte that begins no "
                               "character is replaced by U+FFFD");
    EXPECT_EQ(program.done[1], "log Mine: caf\xEF\xBF\xBD \xEF\xBF\xBD");
}
