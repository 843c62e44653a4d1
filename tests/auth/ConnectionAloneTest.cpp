// The connection and the authorization on their own: what they ask of the program above them, and in which
// order.
#include <gtest/gtest.h>

#include "auth/LocalAuthorization.h"
#include "fakes/FakeDirectory.h"
#include "fakes/FakePlatform.h"

using namespace corvane;
using Names = std::vector<std::string>;

namespace {

struct NoEditor final : auth::DirectoryEditor {
    void setHaldenSession(std::shared_ptr<halden::Session> /*session*/) override {}
    void setAuthForLocalNode(std::shared_ptr<platform::Authorization> /*authorization*/) override {}
};

struct Rights final : auth::RemoteAuthorization {
    [[nodiscard]] bool haveAuthRights() override { return held; }
    [[nodiscard]] std::int32_t makeExternalForm(util::AuthorizationExternalForm& form) override {
        form.bytes.fill(0xEE);
        return 0;
    }
    bool held = true;
};

struct ConnectionAlone : testing::Test, auth::DirectoryConnection::Needs, auth::LocalAuthorization::Needs {
    void sessionWasReplaced() override { asked.emplace_back("session replaced"); }
    void setLockControlHidden(bool hidden) override {
        asked.emplace_back(hidden ? "hide lock" : "show lock");
    }
    void invalidateLoadedPanes() override { asked.emplace_back("invalidate"); }
    void showServerInTitle(const std::string& address) override { asked.push_back("title " + address); }
    void setUnlocked(bool unlocked) override { asked.emplace_back(unlocked ? "unlock" : "lock"); }
    void lockStateChanged(bool unlocked) override { asked.emplace_back(unlocked ? "open" : "closed"); }
    bool applicationShouldSaveChangesBeforeLocking() override { return true; }
    bool runPasswordDialog() override {
        asked.emplace_back("password");
        return passwordIsRight;
    }
    void authAccepted() override {
        asked.emplace_back("accepted");
        connection.setRemoteAuth(rights);
        connection.setHaldenSession(framework.session);
        asked.pop_back(); // the session's replacement, which is not what these tests are about
    }
    void invalidatePanesUnlessEdited() override { asked.emplace_back("invalidate unless edited"); }

    Names asked;
    bool passwordIsRight = true;
    std::shared_ptr<Rights> rights = std::make_shared<Rights>();
    NoEditor editor;
    fakes::Journal journal;
    fakes::FakePlatform platform{journal};
    fakes::FakeFramework framework{journal};
    fakes::FakeAuthorizationView view{journal, platform.authorizationService.make()};
    auth::DirectoryConnection connection{framework, *this};
    auth::LocalAuthorization authorization{platform.environment, connection, view, editor, *this};
};

} // namespace

TEST_F(ConnectionAlone, anAddress_hidesTheLockThenInvalidatesThePanesThenNamesTheServer) {
    connection.setIPAddress("server.example.com");
    EXPECT_EQ(asked, (Names{"hide lock", "invalidate", "title server.example.com"}));
    EXPECT_TRUE(connection.isRemote());
    EXPECT_EQ(connection.ipAddress(), "server.example.com");
}

TEST_F(ConnectionAlone, anotherSession_isReportedOnceItsNodesAreGone) {
    const auto before = connection.haldenConfigNode();
    connection.setHaldenSession(std::make_shared<fakes::FakeSession>(journal));
    EXPECT_EQ(asked, Names{"session replaced"});
    EXPECT_EQ(connection.openedConfigNode(), nullptr);
    EXPECT_NE(connection.haldenConfigNode(), before);
}

TEST_F(ConnectionAlone, disconnection_releasesTheRightsBeforeItLocks) {
    connection.setIPAddress("server.example.com");
    connection.setRemoteAuth(rights);
    asked.clear();
    const std::weak_ptr<Rights> held = rights;
    rights.reset();
    connection.disconnect();
    EXPECT_TRUE(held.expired());
    EXPECT_EQ(asked, Names{"lock"});
    EXPECT_EQ(connection.ipAddress(), "");
}

TEST_F(ConnectionAlone, remoteRightsThatAreGone_areAskedForByPasswordThenLookedAtAgain) {
    connection.setIPAddress("server.example.com");
    asked.clear();
    EXPECT_TRUE(authorization.preflightAuthRights());
    EXPECT_EQ(asked, (Names{"password", "accepted"}));
    rights->held = false;
    EXPECT_FALSE(authorization.preflightAuthRights());
    passwordIsRight = false;
    rights->held = true;
    connection.setRemoteAuth(nullptr);
    EXPECT_FALSE(authorization.preflightAuthRights());
}

TEST_F(ConnectionAlone, remoteSessionThatIsGone_isTakenAfterThePanesAreInvalidated) {
    connection.setIPAddress("server.example.com");
    connection.setRemoteAuth(nullptr); // drops the session
    framework.available = false;
    asked.clear();
    EXPECT_TRUE(authorization.preflightDSRef());
    EXPECT_EQ(asked, (Names{"password", "invalidate unless edited", "accepted"}));
}

TEST_F(ConnectionAlone, externalForm_isTheLocalAuthorizationsOrTheRemoteRights) {
    util::AuthorizationExternalForm form;
    EXPECT_NE(authorization.makeAuthExternalForm(form), 0) << "before the lock control is set up";
    authorization.setUpLockControl();
    EXPECT_EQ(authorization.makeAuthExternalForm(form), 0);
    EXPECT_NE(form.bytes[0], 0xEE);
    connection.setIPAddress("server.example.com");
    connection.setRemoteAuth(rights);
    EXPECT_EQ(authorization.makeAuthExternalForm(form), 0);
    EXPECT_EQ(form.bytes[0], 0xEE);
}
