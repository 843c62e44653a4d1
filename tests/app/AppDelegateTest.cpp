#include "app/AppDelegate.h"

#include <gtest/gtest.h>

#include "app/DSApplication.h"
#include "fakes/FakeProgram.h"
#include "fakes/RecordingPlugin.h"

using namespace corvane;
using Names = std::vector<std::string>;
using Plugin = fakes::RecordingPlugin<0>;

namespace {

constexpr int save = 1;
constexpr int dontSave = 2;
constexpr int cancel = 3;

/// Launched and unlocked, with one plug-in that agrees to everything and saves nothing by itself.
struct Delegate : testing::Test {
    Delegate() {
        Plugin::script() = {};
        Plugin::script().name = "LDAP";
        Plugin::script().answers["isDirty"] = false;
        program.addPlugin("LDAP", Plugin::factory());
        program.launchUnlocked();
        Plugin::script().calls.clear();
        program.journal.clear();
    }
    void edit() { controller.setPluginModified(true); }
    [[nodiscard]] bool edited() { return program.interface.window.isDocumentEdited(); }
    [[nodiscard]] static bool asked(const std::string& call) {
        return std::ranges::count(Plugin::script().calls, call) > 0;
    }
    [[nodiscard]] bool enabled(const std::string& action) {
        fakes::FakeMenuItem item(action);
        return delegate.validateMenuItem(item);
    }
    [[nodiscard]] std::string rootTitle() {
        fakes::FakeMenuItem item("enableRootUser");
        (void)delegate.validateMenuItem(item);
        return item.title();
    }
    /// Goes through the connection dialog as a user does.
    void connect() {
        delegate.connect();
        auto& dialog = *program.interface.dialog;
        dialog.session = dialogSession = std::make_shared<fakes::FakeSession>(program.journal);
        dialog.authorization = std::make_shared<fakes::FakeRemoteAuthorization>(program.journal);
        dialog.owner->authAccepted();
    }
    fakes::FakeProgram program;
    std::shared_ptr<fakes::FakeSession> dialogSession;
    app::AppDelegate& delegate = program.delegate;
    app::MainController& controller = program.controller();
};

} // namespace

TEST(AppDelegateLaunch, loadsPluginsBeforeTheWindowIsBuilt) {
    fakes::FakeProgram program;
    bool loadedBefore = false;
    app::AppDelegate delegate(program.environment, [&]() -> app::MainController& {
        loadedBefore = program.platform.bundles.scanned.size() == 2;
        return program.controller();
    });
    delegate.applicationDidFinishLaunching();
    EXPECT_TRUE(loadedBefore);
    EXPECT_EQ(program.journal.only({"/Config.query", "window.makeKeyAndOrderFront"}).at(0), "/Config.query");
}

TEST_F(Delegate, withNothingModified_nobodyIsAsked) {
    EXPECT_TRUE(delegate.applicationShouldTerminate());
    EXPECT_TRUE(delegate.applicationShouldSaveChanges(false));
    delegate.connect();
    EXPECT_TRUE(program.toolkit.alerts().empty());
    connect();
    delegate.disconnect();
    EXPECT_TRUE(program.toolkit.alerts().empty());
    EXPECT_TRUE(enabled("connect"));
}

TEST_F(Delegate, prompt_hasItsTextsAndThreeButtonsInOrder) {
    program.platform.strings.marks = true;
    edit();
    (void)delegate.applicationShouldSaveChanges(true);
    (void)delegate.applicationShouldSaveChanges(false);
    const auto& quitting = program.toolkit.alerts().at(0);
    EXPECT_EQ(quitting.message, "«Save Changes?»");
    EXPECT_EQ(quitting.information, "«Do you want to save changes before quitting?»");
    EXPECT_EQ(quitting.buttons, (Names{"«Save»", "«Don\\U02BCt Save»", "«Cancel»"}));
    EXPECT_FALSE(quitting.asSheet);
    EXPECT_EQ(program.toolkit.alerts().at(1).information, "«Do you want to save changes before locking?»");
}

TEST_F(Delegate, save_asksThePluginsAndApplies) {
    edit();
    program.toolkit.willAnswer(save);
    EXPECT_TRUE(delegate.applicationShouldSaveChanges(true));
    EXPECT_TRUE(asked("applicationWillQuitSavingChanges save"));
    EXPECT_TRUE(asked("saveChanges"));
    EXPECT_FALSE(edited());
}

TEST_F(Delegate, save_refusedByAPluginOnLocking_cancelsAndSavesNothing) {
    edit();
    Plugin::script().answers["applicationWillLockSavingChanges"] = false;
    program.toolkit.willAnswer(save);
    EXPECT_FALSE(program.interface.authorizationView.click());
    EXPECT_TRUE(asked("applicationWillLockSavingChanges save"));
    EXPECT_FALSE(asked("saveChanges"));
    EXPECT_TRUE(edited());
}

TEST_F(Delegate, save_thatFails_stillLetsTheQuitGoOn) {
    edit();
    Plugin::script().answers["saveChanges"] = false;
    program.toolkit.willAnswer(save);
    EXPECT_TRUE(delegate.applicationShouldTerminate());
}

TEST_F(Delegate, discardOnQuitting_isThePluginsAnswerAndRevertsNothing) {
    edit();
    Plugin::script().answers["applicationWillQuitSavingChanges"] = false;
    program.toolkit.willAnswer(dontSave);
    EXPECT_FALSE(delegate.applicationShouldTerminate());
    EXPECT_TRUE(asked("applicationWillQuitSavingChanges discard"));
    EXPECT_FALSE(asked("revertChanges"));
}

TEST_F(Delegate, discardOnLocking_revertsEvenWhenAPluginRefused_yetTheLockIsRefused) {
    edit();
    Plugin::script().answers["applicationWillLockSavingChanges"] = false;
    program.toolkit.willAnswer(dontSave);
    EXPECT_FALSE(delegate.applicationShouldSaveChanges(false));
    EXPECT_TRUE(asked("revertChanges"));
    EXPECT_FALSE(edited());
}

TEST_F(Delegate, cancelOrClosing_changesNothing) {
    edit();
    for (const int answer : {cancel, toolkit::Alert::closed}) {
        program.toolkit.willAnswer(answer);
        EXPECT_FALSE(delegate.applicationShouldSaveChanges(true));
    }
    EXPECT_TRUE(edited());
    EXPECT_FALSE(asked("saveChanges"));
}

TEST_F(Delegate, termination_disconnects) {
    connect();
    program.journal.clear();
    delegate.applicationWillTerminate();
    EXPECT_TRUE(program.journal.contains("remote.destroyRights"));
    EXPECT_FALSE(controller.unlocked());
}

TEST(AppDelegateAtTheEnd, pluginObjects_areDestroyedInTheListsOrderWhileTheHostStillAnswers) {
    using Last = fakes::RecordingPlugin<7>;
    using First = fakes::RecordingPlugin<8>;
    fakes::FakeProgram program;
    program.addConnector("Zoo", "Active", "1");
    program.addConnector("AD", "Active", "1");
    program.addPlugin("Zoo", Last::factory());
    program.addPlugin("AD", First::factory());
    First::script() = {};
    Last::script() = {};
    First::script().name = "AD";
    Last::script().name = "Zoo";
    program.delegate.applicationDidFinishLaunching();
    std::vector<std::string> destroyed;
    First::script().whenDestroyed = [&] {
        const auto* host = First::script().host;
        destroyed.push_back(host->isPluginEnabled(host->context, "AD") != 0 ? "AD, host answers" : "AD");
    };
    Last::script().whenDestroyed = [&] { destroyed.emplace_back("Zoo"); };
    program.delegate.applicationWillTerminate();
    EXPECT_EQ(destroyed, (std::vector<std::string>{"AD, host answers", "Zoo"}));
    EXPECT_EQ(First::script().alive + Last::script().alive, 0);
    First::script() = {};
    Last::script() = {};
}

TEST_F(Delegate, connect_asksThenShowsTheDialogWithAllItsFields) {
    edit();
    program.toolkit.willAnswer(cancel);
    delegate.connect();
    EXPECT_EQ(program.interface.dialog, nullptr);
    program.toolkit.willAnswer(dontSave);
    delegate.connect();
    EXPECT_EQ(program.journal.only({"dialog.allFields", "dialog.showWindow"}),
              (Names{"dialog.allFields", "dialog.showWindow"}));
}

TEST_F(Delegate, connectionAccepted_isHandedOverInOrder) {
    connect();
    EXPECT_EQ(controller.haldenSession(), dialogSession);
    EXPECT_EQ(dialogSession->local().credentials, std::vector<util::Bytes>{util::Bytes(32, 0xEE)});
    EXPECT_TRUE(controller.isAuthed());
    const Names authentication = {"/Local/Accounts.credentials dsRecTypeStandard:Users "
                                  "dsAuthTypeStandard:AuthorizationExternalForm",
                                  "addNode.enable"};
    EXPECT_EQ(program.journal.only(authentication), authentication);
    EXPECT_TRUE(controller.isRemote());
    EXPECT_TRUE(controller.unlocked());
    EXPECT_EQ(program.interface.selectPlugIn.numberOfRows(), 0); // the server has no connectors
    EXPECT_EQ(program.interface.window.title(), "Corvane: server.example.com");
    EXPECT_EQ(program.interface.dialog->session, nullptr); // reset
    EXPECT_EQ(program.journal.only({"dialog.reset", "addNode.enable", "window.makeKeyAndOrderFront"}),
              (Names{"addNode.enable", "dialog.reset", "window.makeKeyAndOrderFront"}));
    EXPECT_TRUE(enabled("disconnect"));
    EXPECT_FALSE(enabled("connect"));
}

TEST_F(Delegate, connectWhileConnected_doesNothing) {
    connect();
    program.journal.clear();
    delegate.connect();
    EXPECT_FALSE(program.journal.contains("dialog.showWindow"));
}

TEST_F(Delegate, whileTheDialogIsUp_neitherConnectedNorDisconnected) {
    delegate.connect();
    EXPECT_FALSE(enabled("disconnect"));
    EXPECT_TRUE(enabled("connect")); // not remote yet
    program.interface.dialog->owner->authCanceled();
    EXPECT_TRUE(enabled("connect"));
    EXPECT_FALSE(enabled("disconnect"));
}

TEST_F(Delegate, dialogCancelledWhileConnected_leavesTheConnection) {
    connect();
    program.interface.dialog->owner->authCanceled();
    EXPECT_TRUE(enabled("disconnect"));
    EXPECT_TRUE(enabled("connect")); // none is pending any more
    program.interface.dialog->owner->authAccepted();
    EXPECT_FALSE(enabled("connect"));
}

TEST_F(Delegate, disconnect_onlyWhenConnectedAndAgreed) {
    delegate.disconnect();
    EXPECT_TRUE(controller.unlocked());
    connect();
    edit();
    program.toolkit.willAnswer(cancel);
    delegate.disconnect();
    EXPECT_TRUE(enabled("disconnect"));
    program.toolkit.willAnswer(dontSave);
    delegate.disconnect();
    EXPECT_FALSE(enabled("disconnect"));
    EXPECT_TRUE(enabled("connect"));
    EXPECT_FALSE(controller.unlocked());
}

TEST(AppDelegateBeforeTheWindow, cancelledConnection_savesTheDialogsFrameAndQuits) {
    fakes::FakeProgram program;
    program.delegate.showAuthDialogAction();
    program.interface.dialog->owner->authCanceled();
    EXPECT_EQ(program.journal.only({"dialog.saveFrame", "application.terminate"}),
              (Names{"dialog.saveFrame", "application.terminate"}));
}

TEST_F(Delegate, dialog_isMadeOnce) { EXPECT_EQ(&delegate.authDialog(), &delegate.authDialog()); }

TEST_F(Delegate, saveItem_isEnabledWhileTheWindowIsEdited) {
    EXPECT_FALSE(enabled("saveChanges"));
    edit();
    EXPECT_TRUE(enabled("saveChanges"));
    delegate.saveChanges();
    EXPECT_FALSE(enabled("saveChanges"));
}

TEST_F(Delegate, withASheet_connectAndDisconnectAreDisabledAndOthersNot) {
    EXPECT_TRUE(enabled("connect"));
    controller.showErrorSheetWithTitle("t", "m");
    EXPECT_FALSE(enabled("connect"));
    EXPECT_TRUE(enabled("enableRootUser"));
    EXPECT_TRUE(enabled("anything else"));
    program.toolkit.answerSheet(1);
    connect();
    EXPECT_TRUE(enabled("disconnect"));
    controller.showErrorSheetWithTitle("t", "m");
    EXPECT_FALSE(enabled("disconnect"));
}

TEST_F(Delegate, withASheet_savingAndTheRootPasswordStayAvailable) {
    program.framework.session->local().records = {
        std::make_shared<fakes::FakeRecord>(std::string(halden::recordType::users), "root")};
    edit();
    controller.showErrorSheetWithTitle("t", "m");
    EXPECT_TRUE(enabled("saveChanges"));
    EXPECT_TRUE(enabled("changeRootPassword"));
}

TEST_F(Delegate, whatThisVersionCantDo_isNotOfferedEvenUnlocked) {
    program.environment.canConnectToServers = false;
    program.environment.canChangeRootUser = false;
    for (const auto* action : {"connect", "enableRootUser", "changeRootPassword"})
        EXPECT_FALSE(enabled(action)) << action;
}

TEST_F(Delegate, rootItem_saysWhatItWouldDo) {
    auto root = std::make_shared<fakes::FakeRecord>(std::string(halden::recordType::users), "root");
    program.framework.session->local().records = {root};
    EXPECT_EQ(rootTitle(), "Disable Root User");
    EXPECT_TRUE(enabled("enableRootUser") && enabled("changeRootPassword"));
    root->with(halden::attribute::password, {"*"});
    EXPECT_EQ(rootTitle(), "Enable Root User");
    EXPECT_TRUE(enabled("enableRootUser"));
    EXPECT_FALSE(enabled("changeRootPassword"));
}

TEST_F(Delegate, rootItem_whileLocked_isDisabledUnderItsPlainTitle) {
    program.interface.authorizationView.click();
    EXPECT_EQ(rootTitle(), "Root User…");
    EXPECT_FALSE(enabled("enableRootUser"));
    program.journal.clear();
    EXPECT_FALSE(enabled("changeRootPassword"));
    EXPECT_TRUE(program.journal.contains("/Local/Accounts.query"))
        << "the account is asked for before the rights";
}

TEST_F(Delegate, about_opensThePanelWithTwoYears) {
    delegate.showAboutWindow();
    const auto& options = program.toolkit.fakeApplication().aboutOptions;
    EXPECT_EQ(options.size(), 2U);
    for (const auto& [key, year] : options)
        EXPECT_EQ(year.size(), 4U) << key;
}

TEST_F(Delegate, menuItem_runsItsCommand) {
    edit();
    delegate.performMenuItem(fakes::FakeMenuItem("saveChanges"));
    EXPECT_FALSE(edited());
    delegate.performMenuItem(fakes::FakeMenuItem("mainWindowHelpButtonHit"));
    EXPECT_TRUE(program.journal.contains("application.help Corvane Help main-window"));
    delegate.performMenuItem(fakes::FakeMenuItem("showAboutWindow"));
    EXPECT_TRUE(program.journal.contains("application.aboutPanel"));
    edit();
    delegate.performMenuItem(fakes::FakeMenuItem("revertAction"));
    EXPECT_FALSE(edited());
    delegate.performMenuItem(fakes::FakeMenuItem("connect"));
    EXPECT_TRUE(program.journal.contains("dialog.showWindow"));
    connect();
    delegate.performMenuItem(fakes::FakeMenuItem("disconnect"));
    EXPECT_TRUE(program.journal.contains("remote.destroyRights"));
}

TEST_F(Delegate, menuItemsOfALaterVersion_sayWhatToDoInstead) {
    for (const auto* action : {"enableRootUser", "changeRootPassword"}) {
        delegate.performMenuItem(fakes::FakeMenuItem(action));
        EXPECT_NE(program.toolkit.alerts().back().information.find("passwd"), std::string::npos) << action;
        program.toolkit.answerSheet(1);
    }
}

TEST(AppDelegateBeforeTheWindow, menu_isHarmless) {
    fakes::FakeProgram program;
    for (const auto* action : {"saveChanges", "revertAction", "enableRootUser", "changeRootPassword",
                               "disconnect", "mainWindowHelpButtonHit"}) {
        fakes::FakeMenuItem item(action);
        (void)program.delegate.validateMenuItem(item);
        program.delegate.performMenuItem(item);
    }
    EXPECT_TRUE(program.delegate.applicationShouldTerminate());
    program.delegate.applicationWillTerminate();
    EXPECT_TRUE(program.journal.entries().empty());
}

TEST(DSApplication, takesCommandControlDWhateverElseIsHeld) {
    int toggled = 0;
    const app::DSApplication application([&] { ++toggled; });
    const auto press = [&](toolkit::Modifiers modifiers, const char* characters) {
        return application.sendEvent({toolkit::EventType::keyDown, modifiers, characters});
    };
    EXPECT_TRUE(press({true, true, false, false}, "d"));
    EXPECT_TRUE(press({true, true, true, false}, "d"));
    EXPECT_EQ(toggled, 2);
    EXPECT_FALSE(press({true, false, false, false}, "d"));
    EXPECT_FALSE(press({false, true, false, false}, "d"));
    EXPECT_FALSE(press({true, true, false, true}, "D"));
    EXPECT_FALSE(press({true, true, false, false}, "e"));
    EXPECT_FALSE(application.sendEvent({toolkit::EventType::keyUp, {true, true, false, false}, "d"}));
    EXPECT_EQ(toggled, 2);
}
