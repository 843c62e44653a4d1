#include "auth/LocalAuthorization.h"

#include <gtest/gtest.h>

#include "fakes/FakeProgram.h"

using namespace corvane;
using Names = std::vector<std::string>;
using State = platform::AuthorizationViewState;

namespace {

struct Lock : testing::Test {
    [[nodiscard]] fakes::FakeAuthorizationView& lock() { return program.interface.authorizationView; }
    [[nodiscard]] std::vector<util::Bytes>& credentials() {
        return program.framework.session->local().credentials;
    }
    void becomeRemote(std::shared_ptr<auth::RemoteAuthorization> authorization) {
        controller.setRemoteAuth(std::move(authorization));
        controller.setHaldenSession(program.framework.session);
        controller.setIPAddress("server.example.com");
        program.journal.clear();
    }
    [[nodiscard]] std::shared_ptr<fakes::FakeRemoteAuthorization> remoteRights() {
        return std::make_shared<fakes::FakeRemoteAuthorization>(program.journal);
    }
    fakes::FakeProgram program;
    app::MainController& controller = program.controller();
    fakes::FakeInterface& ui = program.interface;
};

constexpr const char* attempt = "/Local/Accounts.credentials dsRecTypeStandard:Users "
                                "dsAuthTypeStandard:AuthorizationExternalForm";

} // namespace

TEST_F(Lock, rights_areTheTwoInTheirOrderWithoutValues) {
    program.launch();
    const platform::AuthorizationRights expected = {{"system.services.directory.configure", "", 0},
                                                    {"system.preferences", "", 0}};
    EXPECT_EQ(lock().rights(), expected);
    EXPECT_EQ(program.authorization->lastRights, expected);
}

TEST_F(Lock, startingWithoutRights_isLocked) {
    program.launch();
    EXPECT_FALSE(controller.unlocked());
    EXPECT_FALSE(ui.addNode.isEnabled());
    EXPECT_FALSE(ui.selectSearchPolicy.isEnabled());
}

TEST_F(Lock, startingWithRightsAlreadyHeld_opensTheLockAndSelectsTheFirstConnector) {
    program.authorization->held = true;
    program.launch();
    EXPECT_TRUE(controller.unlocked());
    EXPECT_TRUE(ui.addNode.isEnabled() && ui.addNodeContact.isEnabled());
    EXPECT_TRUE(ui.selectSearchPolicy.isEnabled() && ui.selectContactPolicy.isEnabled());
    EXPECT_EQ(ui.selectPlugIn.selectedRow(), 0);
}

TEST_F(Lock, settingUp_opensTheLockAsTheRightsSayThenUpdatesTheControl) {
    program.authorization->held = true;
    program.launch();
    const Names steps = {"authorization.obtainRights 18", "addNode.enable", "authorizationView.updateStatus",
                         "selectSearchPolicy.select -1"};
    auto seen = program.journal.only(steps);
    seen.resize(steps.size());
    EXPECT_EQ(seen, steps);
}

TEST_F(Lock, haveAuthRights_asksNobody) {
    program.launch();
    program.journal.clear();
    EXPECT_FALSE(controller.haveAuthRights());
    EXPECT_EQ(program.journal.entries(), Names{"authorization.obtainRights 18"});
}

TEST_F(Lock, opening_unlocksUpdatesAuthenticatesAndNotifiesTheEditorInThisOrder) {
    program.launch();
    program.journal.clear();
    lock().click();
    EXPECT_TRUE(controller.isAuthed());
    EXPECT_EQ(
        program.journal.only({"addNode.enable", "authorizationView.updateStatus", attempt, "editor.setAuth"}),
        (Names{"addNode.enable", "authorizationView.updateStatus", attempt, "editor.setAuth"}));
    EXPECT_EQ(ui.directoryEditor.authorization, program.authorization);
}

TEST_F(Lock, opening_doesItsStepsInOrder) {
    program.launch();
    program.journal.clear();
    controller.setUnlocked(true);
    EXPECT_EQ(program.journal.entries(),
              (Names{"selectPlugIn.reloadData", "selectNode.reloadData", "selectNodeContact.reloadData",
                     "addNode.enable", "addNodeContact.enable", "selectSearchPolicy.enable",
                     "selectContactPolicy.enable", "configPlugIn.disable", "deleteNode.disable",
                     "deleteNodeContact.disable", "applyButton.disable", "selectPlugIn.forbidEmpty",
                     "window.makeFirstResponder", "selectPlugIn.select 0", "configPlugIn.disable"}));
    EXPECT_EQ(ui.window.firstResponder(), &ui.selectPlugIn);
}

TEST_F(Lock, openingOnAnotherTab_leavesTheKeyboardWhereItIs) {
    program.launch();
    ui.window.toolbar().clickItem("kSearchPaths");
    program.journal.clear();
    controller.setUnlocked(true);
    EXPECT_FALSE(program.journal.contains("window.makeFirstResponder"));
}

TEST_F(Lock, closing_doesItsStepsInOrder) {
    program.launchUnlocked();
    controller.setPluginModified(true);
    program.journal.clear();
    controller.setUnlocked(false);
    EXPECT_EQ(
        program.journal.entries(),
        (Names{"selectPlugIn.reloadData", "selectNode.reloadData", "selectNodeContact.reloadData",
               "configPlugIn.disable", "addNode.disable", "addNodeContact.disable", "deleteNode.disable",
               "deleteNodeContact.disable", "selectSearchPolicy.disable", "selectContactPolicy.disable",
               "selectPlugIn.allowEmpty", "selectNode.deselectAll", "selectNodeContact.deselectAll",
               "selectPlugIn.deselectAll", "configPlugIn.disable", "applyButton.disable"}));
    EXPECT_FALSE(ui.applyButton.isEnabled()); // though changes are pending
    EXPECT_TRUE(ui.window.isDocumentEdited());
}

TEST_F(Lock, clickedShut_locksUpdatesAndNotifiesTheEditorInThisOrder) {
    program.launchUnlocked();
    program.journal.clear();
    EXPECT_TRUE(lock().click());
    const Names steps = {"addNode.disable", "authorizationView.updateStatus", "editor.clearAuth"};
    EXPECT_EQ(program.journal.only(steps), steps);
}

TEST_F(Lock, closing_clearsEverySelection) {
    program.setPolicy(program.framework.session->search(), halden::attribute::customSearchPath,
                      {"/Local/Accounts", "/BSD/Files", "/LDAP/one"});
    program.launchUnlocked();
    controller.loadCurrentTabIfNeeded("2");
    EXPECT_TRUE(ui.selectNode.clickRow(2));
    lock().click();
    EXPECT_EQ(ui.selectNode.selectedRow(), -1);
    EXPECT_EQ(ui.selectPlugIn.selectedRow(), -1);
    EXPECT_FALSE(controller.isAuthed());
    EXPECT_EQ(ui.directoryEditor.authorization, nullptr);
}

TEST_F(Lock, closingWithUnsavedChanges_asksFirstAndCancelKeepsItOpen) {
    program.launchUnlocked();
    controller.setPluginModified(true);
    program.toolkit.willAnswer(3);
    EXPECT_FALSE(lock().click());
    EXPECT_TRUE(controller.unlocked());
    EXPECT_EQ(lock().state, State::unlocked);
    EXPECT_EQ(program.toolkit.alerts().at(0).message, "Save Changes?");
}

TEST_F(Lock, authToLocalNode_sendsTheFormAsTheOnlyItemAndOnlyOnce) {
    program.launchUnlocked();
    controller.authToLocalNode();
    ASSERT_EQ(credentials().size(), 1U);
    EXPECT_EQ(credentials()[0], util::Bytes(32, 7));
}

TEST_F(Lock, authToLocalNode_whileTheLockControlIsntOpen_doesNothing) {
    program.launch();
    controller.authToLocalNode();
    EXPECT_TRUE(credentials().empty());
    EXPECT_FALSE(controller.isAuthed());
}

TEST_F(Lock, externalFormThatCantBeMade_isLoggedWithItsStatus) {
    program.platform.authorizationService.status = -60008;
    program.launchUnlocked();
    EXPECT_FALSE(controller.isAuthed());
    EXPECT_EQ(program.platform.log.lines, Names{"-[MainController authToLocalNode]: Got error -60008 while "
                                                "externalizing the authRef!"});
    EXPECT_TRUE(program.toolkit.alerts().empty());
}

TEST_F(Lock, nodeThatRefusesTheCredentials_isLoggedWithItsCode) {
    program.launch();
    program.framework.session->local().nextError = {5000, "no", "", ""};
    lock().click();
    EXPECT_FALSE(controller.isAuthed());
    EXPECT_EQ(program.platform.log.lines,
              Names{"-[MainController authToLocalNode]: Got error 5000 attempting to auth to local node!"});
    EXPECT_TRUE(controller.unlocked());
}

TEST_F(Lock, deauthToLocalNode_forgetsAndNothingElse) {
    program.launchUnlocked();
    program.journal.clear();
    controller.deauthToLocalNode();
    EXPECT_FALSE(controller.isAuthed());
    EXPECT_TRUE(program.journal.entries().empty());
}

TEST_F(Lock, createdAndReleasedAuthorization_areFollowed) {
    program.launch();
    lock().delegate().authorizationViewReleasedAuthorization(lock());
    EXPECT_EQ(controller.authorization(), nullptr);
    EXPECT_EQ(controller.authorizationRef(), 0U);
    EXPECT_FALSE(controller.haveAuthRights());
    lock().delegate().authorizationViewCreatedAuthorization(lock());
    EXPECT_EQ(controller.authorization(), program.authorization);
    EXPECT_EQ(controller.authorizationRef(), 7U);
}

TEST_F(Lock, hostedEditorLockingByItself_isFollowed) {
    program.launch();
    controller.didAuthenticate();
    EXPECT_TRUE(controller.unlocked());
    controller.didDeauthenticate();
    EXPECT_FALSE(controller.unlocked());
}

TEST_F(Lock, localPreflight_alwaysTakesTheDefaultSessionAfreshThenAsksWithInteraction) {
    program.launch();
    program.journal.clear();
    EXPECT_TRUE(controller.preflightAuthRights());
    EXPECT_EQ(program.journal.entries(),
              (Names{"defaultSession", "authorization.obtainRights 19", "authorizationView.updateStatus"}));
}

TEST_F(Lock, localPreflight_asksForBothRightsThroughTheFreshSession) {
    program.launch();
    const auto former = program.framework.session;
    const auto fresh = std::make_shared<fakes::FakeSession>(program.journal);
    program.framework.session = fresh;
    EXPECT_TRUE(controller.preflightAuthRights());
    EXPECT_EQ(controller.haldenSession(), fresh) << "a service that was restarted is noticed";
    EXPECT_NE(controller.haldenSession(), former);
    const platform::AuthorizationRights expected = {{"system.services.directory.configure", "", 0},
                                                    {"system.preferences", "", 0}};
    EXPECT_EQ(program.authorization->lastRights, expected);
}

TEST_F(Lock, opening_withoutALocalNode_signsNobodyInAndContinues) {
    program.framework.session->failingTypes[halden::NodeType::localNodes] = {1, "down", "", ""};
    program.launch();
    lock().click();
    EXPECT_TRUE(controller.unlocked());
    EXPECT_FALSE(controller.isAuthed());
    EXPECT_TRUE(credentials().empty());
    EXPECT_EQ(ui.directoryEditor.authorization, program.authorization);
}

TEST_F(Lock, remoteForm_withoutARemoteAuthorization_cantBeMade) {
    program.launch();
    becomeRemote(nullptr);
    util::AuthorizationExternalForm form;
    EXPECT_EQ(controller.makeAuthExternalForm(form), -1);
    controller.authToLocalNode();
    EXPECT_TRUE(credentials().empty());
}

TEST_F(Lock, preflightDSRef_locally_takesTheSessionThatComesBack) {
    program.launch();
    program.framework.available = false;
    controller.setHaldenSession(nullptr);
    EXPECT_FALSE(controller.preflightDSRef());
    program.framework.available = true;
    EXPECT_TRUE(controller.preflightDSRef());
    EXPECT_EQ(controller.haldenSession(), program.framework.session);
}

TEST_F(Lock, preflightDSRef_locally_asksForASessionTwice) {
    program.launch();
    controller.setHaldenSession(nullptr);
    program.framework.refusals = 1;
    EXPECT_TRUE(controller.preflightDSRef());
    controller.setHaldenSession(nullptr);
    program.framework.refusals = 2;
    EXPECT_FALSE(controller.preflightDSRef());
}

TEST_F(Lock, localPreflight_refused_answersFalseWithoutUpdating) {
    program.launch();
    program.authorization->grantsWhenAsked = false;
    program.journal.clear();
    EXPECT_FALSE(controller.preflightAuthRights());
    EXPECT_FALSE(program.journal.contains("authorizationView.updateStatus"));
}

TEST_F(Lock, localPreflight_withoutAnAuthorization_answersFalse) {
    program.launch();
    lock().delegate().authorizationViewReleasedAuthorization(lock());
    EXPECT_FALSE(controller.preflightAuthRights());
}

TEST_F(Lock, remotePreflight_withRightsHeld_asksNobody) {
    program.launch();
    becomeRemote(remoteRights());
    EXPECT_TRUE(controller.preflightAuthRights());
    EXPECT_EQ(program.interface.dialog, nullptr);
}

TEST_F(Lock, remotePreflight_withRightsButWithoutASession_asksAgain) {
    program.launch();
    becomeRemote(remoteRights());
    program.framework.available = false;
    controller.setHaldenSession(nullptr);
    EXPECT_FALSE(controller.preflightAuthRights()); // the dialog is cancelled
    EXPECT_TRUE(program.journal.contains("dialog.runModal"));
}

TEST_F(Lock, remotePreflight_withoutRights_runsThePasswordDialogModally) {
    program.launch();
    auto rights = remoteRights();
    rights->held = false;
    becomeRemote(rights);
    (void)program.delegate.authDialog();
    EXPECT_FALSE(controller.preflightAuthRights()); // the dialog is cancelled
    EXPECT_TRUE(controller.isRemote());
    EXPECT_EQ(program.journal.only({"dialog.passwordOnly", "dialog.runModal"}),
              (Names{"dialog.passwordOnly", "dialog.runModal"}));
}

TEST_F(Lock, remotePreflight_accepted_handsTheConnectionOverAndAsksForTheRightsAgain) {
    program.launch();
    auto rights = remoteRights();
    rights->held = false;
    becomeRemote(rights);
    auto& dialog = static_cast<fakes::FakeConnectionDialog&>(program.delegate.authDialog());
    dialog.modalResult = 1;
    dialog.session = program.framework.session;
    dialog.authorization = remoteRights();
    EXPECT_TRUE(controller.preflightAuthRights());
    EXPECT_TRUE(program.journal.contains("authorizationView.updateStatus"));
    EXPECT_TRUE(program.journal.contains("dialog.reset"));
}

TEST_F(Lock, remoteAuthToLocalNode_isMadeAtEveryCall) {
    program.launch();
    becomeRemote(remoteRights());
    controller.authToLocalNode();
    controller.authToLocalNode();
    ASSERT_EQ(credentials().size(), 2U);
    EXPECT_EQ(credentials()[0], util::Bytes(32, 0xEE));
}

TEST_F(Lock, preflightDSRef_withASession_isTrueAtOnce) {
    program.launch();
    EXPECT_TRUE(controller.preflightDSRef());
}

TEST_F(Lock, preflightDSRef_withoutAny_isFalse) {
    program.launch();
    program.framework.available = false;
    controller.setHaldenSession(nullptr);
    EXPECT_FALSE(controller.preflightDSRef());
}

TEST_F(Lock, remotePreflightDSRef_cancelled_isFalseAndStaysRemote) {
    program.launch();
    becomeRemote(nullptr);
    program.framework.available = false;
    controller.setHaldenSession(nullptr);
    EXPECT_FALSE(controller.preflightDSRef());
    EXPECT_TRUE(program.journal.contains("dialog.runModal"));
    EXPECT_FALSE(program.journal.contains("dialog.reset")); // nothing was handed over
    EXPECT_TRUE(controller.isRemote());
}

TEST_F(Lock, remotePreflightDSRef_accepted_letsThePanesBeReadAgainUnlessEdited) {
    program.launch();
    becomeRemote(nullptr);
    auto& dialog = static_cast<fakes::FakeConnectionDialog&>(program.delegate.authDialog());
    dialog.modalResult = 1;
    for (const bool edited : {true, false}) {
        controller.setHaldenSession(program.framework.session);
        for (const auto* page : {"1", "2", "3"})
            controller.loadCurrentTabIfNeeded(page);
        controller.setPluginModified(edited);
        program.framework.available = false;
        controller.setHaldenSession(nullptr);
        dialog.session = program.framework.session;
        program.journal.clear();
        EXPECT_TRUE(controller.preflightDSRef());
        EXPECT_TRUE(program.journal.contains("dialog.reset"));
        for (const auto* page : {"1", "2", "3"})
            controller.loadCurrentTabIfNeeded(page);
        const bool readAgain = !edited;
        EXPECT_EQ(program.journal.contains("/Config.query"), readAgain);
        EXPECT_EQ(program.journal.contains("/Search.details"), readAgain);
        EXPECT_EQ(program.journal.contains("/Contacts.details"), readAgain);
    }
}

TEST_F(Lock, lockStatus_isAskedForUnderItsOddName) {
    program.launch();
    program.journal.clear();
    controller.udpateAuthStatus();
    EXPECT_EQ(program.journal.entries(), Names{"authorizationView.updateStatus"});
}
