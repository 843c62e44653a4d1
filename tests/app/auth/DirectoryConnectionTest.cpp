#include "auth/DirectoryConnection.h"

#include <gtest/gtest.h>

#include "fakes/FakeProgram.h"

using namespace corvane;
using Names = std::vector<std::string>;

namespace {

struct Connection : testing::Test {
    Connection() {
        program.launchUnlocked();
        program.journal.clear();
    }
    fakes::FakeProgram program;
    app::MainController& controller = program.controller();
};

} // namespace

TEST_F(Connection, nodes_areOpenedOnceAndKept) {
    EXPECT_EQ(controller.localHaldenNode(), controller.localHaldenNode());
    EXPECT_EQ(controller.haldenConfigNode(), controller.haldenConfigNode());
    EXPECT_LE(program.journal.count("open /Config"), 1);
    EXPECT_EQ(controller.haldenConfigNode()->name(), "/Config");
}

TEST_F(Connection, anotherSession_dropsNodesPoliciesAndAuthentication) {
    const auto node = controller.localHaldenNode();
    EXPECT_TRUE(controller.isAuthed());
    (void)controller.isNodeOnAuthSearchPolicy("/LDAP/one");
    (void)controller.isNodeOnContactsSearchPolicy("/LDAP/one");
    const auto other = std::make_shared<fakes::FakeSession>(program.journal);
    other->search().details = util::Dictionary::makeMutable();
    program.setPolicy(other->search(), halden::attribute::customSearchPath, {"/LDAP/other"});
    program.setPolicy(other->contacts(), halden::attribute::customSearchPath, {"/LDAP/other"});
    controller.setHaldenSession(other);
    EXPECT_FALSE(controller.isAuthed());
    EXPECT_NE(controller.localHaldenNode(), node);
    EXPECT_TRUE(controller.isNodeOnAuthSearchPolicy("/LDAP/other"));
    EXPECT_TRUE(controller.isNodeOnContactsSearchPolicy("/LDAP/other"));
}

TEST_F(Connection, withoutASession_theDefaultOneIsTakenAndKept) {
    controller.setHaldenSession(nullptr);
    EXPECT_EQ(controller.haldenSession(), program.framework.session);
    EXPECT_EQ(controller.haldenSession(), program.framework.session);
    EXPECT_EQ(program.journal.count("defaultSession"), 1);
}

TEST_F(Connection, withoutAnyService_nodesAreNullAndNothingBreaks) {
    program.framework.available = false;
    controller.setHaldenSession(nullptr);
    EXPECT_EQ(controller.haldenSession(), nullptr);
    EXPECT_EQ(controller.localHaldenNode(), nullptr);
    EXPECT_EQ(controller.haldenConfigNode(), nullptr);
    controller.buildDSConfigPaneData();
    EXPECT_EQ(program.interface.selectPlugIn.numberOfRows(), 0);
}

TEST_F(Connection, remote_hidesTheLockControlAndNamesTheServerInTheTitle) {
    controller.setIPAddress("server.example.com");
    EXPECT_TRUE(controller.isRemote());
    EXPECT_TRUE(program.interface.authorizationView.isHidden());
    EXPECT_EQ(program.interface.window.title(), "Corvane: server.example.com");
}

TEST_F(Connection, sameAddressAgain_changesNothing) {
    controller.setIPAddress("server.example.com");
    controller.buildDSConfigPaneData();
    program.interface.window.setTitle("untouched");
    program.journal.clear();
    controller.setIPAddress("server.example.com");
    EXPECT_EQ(program.interface.window.title(), "untouched");
    controller.loadCurrentTabIfNeeded("1");
    EXPECT_TRUE(program.journal.entries().empty());
}

TEST_F(Connection, anotherAddress_letsEveryPaneBeReadAnew) {
    for (const auto* page : {"1", "2", "3"})
        controller.loadCurrentTabIfNeeded(page);
    controller.setIPAddress("server.example.com");
    program.journal.clear();
    for (const auto* page : {"1", "2", "3"})
        controller.loadCurrentTabIfNeeded(page);
    for (const auto* read : {"/Config.query", "/Search.details", "/Contacts.details"})
        EXPECT_TRUE(program.journal.contains(read)) << read;
}

TEST_F(Connection, anotherServerWhileRemote_leavesTheLockControlAlone) {
    controller.setIPAddress("server.example.com");
    program.journal.clear();
    controller.setIPAddress("other.example.com");
    EXPECT_FALSE(program.journal.contains("authorizationView.hide"));
    EXPECT_EQ(program.interface.window.title(), "Corvane: other.example.com");
}

TEST_F(Connection, sameAddressAfterADisconnection_countsAsANewOne) {
    controller.setIPAddress("server.example.com");
    controller.disconnect();
    program.interface.window.setTitle("untouched");
    controller.setIPAddress("server.example.com");
    EXPECT_EQ(program.interface.window.title(), "Corvane: server.example.com");
}

TEST_F(Connection, disconnect_givesUpTheRightsOnceAndLocksButStaysRemote) {
    controller.setRemoteAuth(std::make_shared<fakes::FakeRemoteAuthorization>(program.journal));
    controller.setHaldenSession(std::make_shared<fakes::FakeSession>(program.journal));
    controller.setIPAddress("server.example.com");
    program.journal.clear();
    controller.disconnect();
    EXPECT_EQ(program.journal.entries().at(0), "remote.destroyRights");
    EXPECT_EQ(program.journal.count("remote.destroyRights"), 1);
    EXPECT_FALSE(controller.unlocked());
    EXPECT_TRUE(controller.isRemote());
    EXPECT_EQ(controller.haldenSession(), program.framework.session);
}

TEST_F(Connection, remoteAuthorization_dropsTheSession) {
    controller.setRemoteAuth(std::make_shared<fakes::FakeRemoteAuthorization>(program.journal));
    program.journal.clear();
    (void)controller.haldenSession();
    EXPECT_EQ(program.journal.entries(), Names{"defaultSession"});
}
