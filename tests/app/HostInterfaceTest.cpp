#include <gtest/gtest.h>

#include "fakes/FakeProgram.h"
#include "fakes/RecordingPlugin.h"
#include "sdk/Host.h"

using namespace corvane;
using Recording = fakes::RecordingPlugin<0>;

namespace {

/// The program with a plug-in, its window not shown yet.
struct HostOfAPlugin : testing::Test {
    HostOfAPlugin() {
        Recording::script() = {};
        program.addPlugin("LDAP", Recording::factory());
        plugins::PluginController::sharedInstance(program.platform.environment).loadPlugins();
        program.framework.session->config().details.set(halden::attribute::operatingSystemVersion,
                                                        util::Array{"12"});
        program.controller().buildDSConfigPaneData();
        host = sdk::Host(*Recording::script().host);
    }
    fakes::FakeProgram program;
    sdk::Host host;
};

} // namespace

TEST_F(HostOfAPlugin, everyOperation_worksBeforeTheWindowWasShown) {
    ASSERT_FALSE(program.interface.window.isVisible());
    EXPECT_TRUE(host.preflightDSRef());
    // The lock control comes with the window: until then there is nobody to hold rights.
    EXPECT_FALSE(host.preflightAuthRights());
    sdk::AuthorizationForm form;
    EXPECT_NE(host.makeAuthExternalForm(form), 0);
    EXPECT_FALSE(host.authorization());
    EXPECT_EQ(host.authorizationRef(), 0U);
    EXPECT_EQ(host.haldenSession().kind(), CORVANE_SESSION);
    EXPECT_EQ(host.haldenConfigNode().kind(), CORVANE_NODE);
    EXPECT_EQ(host.networkSets().kind(), CORVANE_ARRAY);
    EXPECT_FALSE(host.currentNetworkSet());
    EXPECT_EQ(host.hostName(), "this-machine");
    EXPECT_FALSE(host.isRemote());
    EXPECT_EQ(host.osVersion(), "12");
    EXPECT_FALSE(host.legacyDS());
    host.pluginEnableStateChanged("anything", true);
    host.reloadSearchPolicies();
    EXPECT_FALSE(host.saveSearchPolicies());
}

TEST_F(HostOfAPlugin, authorization_isThereWithTheWindow) {
    program.launchUnlocked();
    host = sdk::Host(*Recording::script().host);
    sdk::AuthorizationForm form;
    EXPECT_TRUE(host.preflightAuthRights());
    EXPECT_EQ(host.makeAuthExternalForm(form), 0);
    EXPECT_EQ(host.authorization().kind(), CORVANE_AUTHORIZATION);
    EXPECT_NE(host.authorizationRef(), 0U);
    EXPECT_TRUE(host.saveSearchPolicies());
}

TEST_F(HostOfAPlugin, policies_areEditedBeforeTheWindowWasShown) {
    EXPECT_FALSE(host.isNodeOnAuthSearchPolicy("/LDAP/new"));
    host.addNodeToAuthSearchPolicy("/LDAP/new");
    host.addNodeToContactsSearchPolicy("/LDAP/new");
    EXPECT_TRUE(host.isNodeOnAuthSearchPolicy("/LDAP/new"));
    EXPECT_TRUE(host.isNodeOnContactsSearchPolicy("/LDAP/new"));
    host.nodeNameChanged("/LDAP/new", "/LDAP/newer");
    EXPECT_TRUE(host.isNodeOnAuthSearchPolicy("/LDAP/newer"));
    host.deleteNodeFromAuthSearchPolicy("/LDAP/newer");
    host.deleteNodesFromContactsSearchPolicyWithPrefix("/LDAP/new");
    EXPECT_FALSE(host.isNodeOnAuthSearchPolicy("/LDAP/newer"));
    EXPECT_FALSE(host.isNodeOnContactsSearchPolicy("/LDAP/newer"));
}

TEST_F(HostOfAPlugin, deletions_reachThePolicyThatTheyName) {
    for (const auto* node : {"/LDAP/x", "/LDAP/y"}) {
        host.addNodeToAuthSearchPolicy(node);
        host.addNodeToContactsSearchPolicy(node);
    }
    host.deleteNodeFromAuthSearchPolicy("/LDAP/x");
    EXPECT_FALSE(host.isNodeOnAuthSearchPolicy("/LDAP/x"));
    EXPECT_TRUE(host.isNodeOnContactsSearchPolicy("/LDAP/x"));
    host.deleteNodeFromContactsSearchPolicy("/LDAP/y");
    EXPECT_TRUE(host.isNodeOnAuthSearchPolicy("/LDAP/y"));
    EXPECT_FALSE(host.isNodeOnContactsSearchPolicy("/LDAP/y"));
    host.deleteNodesFromContactsSearchPolicyWithPrefix("/LDAP/");
    EXPECT_TRUE(host.isNodeOnAuthSearchPolicy("/LDAP/y"));
    EXPECT_FALSE(host.isNodeOnContactsSearchPolicy("/LDAP/x"));
    host.addNodeToContactsSearchPolicy("/LDAP/z");
    host.deleteNodesFromAuthSearchPolicyWithPrefix("/LDAP/");
    EXPECT_FALSE(host.isNodeOnAuthSearchPolicy("/LDAP/y"));
    EXPECT_TRUE(host.isNodeOnContactsSearchPolicy("/LDAP/z"));
}

TEST_F(HostOfAPlugin, theControllersOwnDeletions_reachThePolicyThatTheyName) {
    auto& controller = program.controller();
    for (const auto* node : {"/LDAP/x", "/LDAP/y"}) {
        controller.addNodeToAuthSearchPolicy(node);
        controller.addNodeToContactsSearchPolicy(node);
    }
    controller.deleteNodeFromAuthSearchPolicy("/LDAP/x");
    controller.deleteNodeFromContactsSearchPolicy("/LDAP/y");
    EXPECT_FALSE(controller.isNodeOnAuthSearchPolicy("/LDAP/x"));
    EXPECT_TRUE(controller.isNodeOnContactsSearchPolicy("/LDAP/x"));
    EXPECT_TRUE(controller.isNodeOnAuthSearchPolicy("/LDAP/y"));
    EXPECT_FALSE(controller.isNodeOnContactsSearchPolicy("/LDAP/y"));
    controller.deleteNodesFromAuthSearchPolicyWithPrefix("/LDAP/");
    EXPECT_FALSE(controller.isNodeOnAuthSearchPolicy("/LDAP/y"));
    EXPECT_TRUE(controller.isNodeOnContactsSearchPolicy("/LDAP/x"));
    controller.deleteNodesFromContactsSearchPolicyWithPrefix("/LDAP/");
    EXPECT_FALSE(controller.isNodeOnContactsSearchPolicy("/LDAP/x"));
}

TEST_F(HostOfAPlugin, markingAndReporting_workBeforeTheWindowWasShown) {
    ASSERT_FALSE(program.interface.window.isVisible());
    host.markDirty();
    EXPECT_TRUE(program.interface.window.isDocumentEdited());
    host.log("hello");
    host.table().pluginFailed(host.table().context, "saveChanges", "out of order");
    EXPECT_EQ(program.platform.log.lines,
              (std::vector<std::string>{"LDAP: hello", "plug-in LDAP failed in saveChanges: out of order"}));
    EXPECT_EQ(program.toolkit.alerts().at(0).message, "The plug-in LDAP has failed.");
    EXPECT_TRUE(host.numberFormatEnforcer());
    EXPECT_TRUE(host.ipv4AddressFormatter());
    EXPECT_TRUE(host.validCharacterFormatter("abc"));
}

TEST_F(HostOfAPlugin, actionOfAPlugin_getsAnAnswerBeforeTheWindowWasShown) {
    struct Given {
        int authorizations = 0;
        CorvaneObject* authorization = nullptr;
    } given;
    CorvaneAction action{sizeof(CorvaneAction), &given, nullptr, nullptr};
    action.setAuth = [](void* self, CorvaneObject* authorization) {
        ++static_cast<Given*>(self)->authorizations;
        static_cast<Given*>(self)->authorization = authorization;
    };
    action.setRemoteAuthExtForm = [](void* /*self*/, const std::uint8_t* /*form*/) {};
    host.setAuthorizationForHaldenCAction(action);
    EXPECT_EQ(given.authorizations, 1);
    EXPECT_EQ(given.authorization, nullptr); // there is none before the lock control is set up
}

TEST_F(HostOfAPlugin, connectors_areAskedAboutBeforeTheWindowWasShown) {
    EXPECT_TRUE(host.pluginVersionWithPrefix("LDAP"));
    EXPECT_TRUE(host.isPluginEnabled("LDAP"));
    host.setPluginEnabled("LDAP", false);
    EXPECT_FALSE(host.isPluginEnabled("LDAP"));
}

TEST_F(HostOfAPlugin, markDirty_marksTheWindowAndEnablesApply) {
    program.launchUnlocked();
    EXPECT_FALSE(program.interface.applyButton.isEnabled());
    sdk::Host(*Recording::script().host).markDirty();
    EXPECT_TRUE(program.interface.window.isDocumentEdited());
    EXPECT_TRUE(program.interface.applyButton.isEnabled());
}
