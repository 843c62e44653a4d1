#include <gtest/gtest.h>

#include "fakes/FakeProgram.h"
#include "fakes/RecordingPlugin.h"

using namespace corvane;
using First = fakes::RecordingPlugin<1>;
using Second = fakes::RecordingPlugin<2>;

namespace {

/// Two connectors with plug-ins, "BSD" before "LDAP" in the list, clean and unlocked.
struct ModifiedState : testing::Test {
    ModifiedState() {
        First::script() = {};
        Second::script() = {};
        First::script().name = "BSD";
        Second::script().name = "LDAP";
        First::script().answers["isDirty"] = false;
        Second::script().answers["isDirty"] = false;
        program.addPlugin("BSD", First::factory());
        program.addPlugin("LDAP", Second::factory());
        program.launchUnlocked();
        First::script().calls.clear();
        Second::script().calls.clear();
    }
    [[nodiscard]] bool edited() { return program.interface.window.isDocumentEdited(); }
    [[nodiscard]] bool applyEnabled() { return program.interface.applyButton.isEnabled(); }
    static bool asked(const fakes::PluginScript& script, const std::string& call) {
        return std::ranges::find(script.calls, call) != script.calls.end();
    }
    fakes::FakeProgram program;
    app::MainController& controller = program.controller();
};

} // namespace

TEST_F(ModifiedState, eitherFlag_marksTheWindowAndEnablesApply) {
    EXPECT_FALSE(edited() || applyEnabled());
    controller.setPluginModified(true);
    EXPECT_TRUE(edited() && applyEnabled());
    controller.setSearchPolicyModified(true);
    controller.setPluginModified(false);
    EXPECT_TRUE(edited() && applyEnabled());
    controller.setSearchPolicyModified(false);
    EXPECT_FALSE(edited() || applyEnabled());
}

TEST_F(ModifiedState, isDirty_whenMarkedOrWhenAPluginSaysSo) {
    EXPECT_FALSE(controller.isDirty());
    Second::script().answers["isDirty"] = true;
    EXPECT_TRUE(controller.isDirty());
    Second::script().answers["isDirty"] = false;
    controller.setPluginModified(true);
    EXPECT_TRUE(controller.isDirty());
}

TEST_F(ModifiedState, isDirty_stopsAskingAtTheFirstThatSaysYes) {
    First::script().answers["isDirty"] = true;
    EXPECT_TRUE(controller.isDirty());
    EXPECT_FALSE(asked(Second::script(), "isDirty"));
}

TEST_F(ModifiedState, isDirty_withAnEmptyList_isTheMark) {
    program.framework.session->config().records.clear();
    controller.buildDSConfigPaneData();
    EXPECT_FALSE(controller.isDirty());
    controller.setPluginModified(true);
    EXPECT_TRUE(controller.isDirty());
}

TEST_F(ModifiedState, isDirty_whileQuitting_isFalseEvenWithPendingEdits) {
    controller.setPluginModified(true);
    program.interface.window.close();
    EXPECT_FALSE(controller.isDirty());
}

TEST_F(ModifiedState, save_writesPoliciesThenEachConnectorInOrderAndCleansTheMark) {
    controller.setPluginModified(true);
    program.journal.clear();
    EXPECT_TRUE(controller.save());
    EXPECT_TRUE(asked(First::script(), "saveChanges"));
    EXPECT_TRUE(asked(Second::script(), "saveChanges"));
    EXPECT_FALSE(edited());
    EXPECT_TRUE(program.journal.contains("selectPlugIn.reloadData"));
}

TEST_F(ModifiedState, save_stopsAtTheFirstConnectorThatFailsAndStaysMarked) {
    controller.setPluginModified(true);
    First::script().answers["saveChanges"] = false;
    EXPECT_FALSE(controller.save());
    EXPECT_FALSE(asked(Second::script(), "saveChanges"));
    EXPECT_TRUE(edited());
    EXPECT_TRUE(program.toolkit.alerts().empty());
    First::script().answers["saveChanges"] = true;
    EXPECT_TRUE(controller.save()); // it can be tried again
}

TEST_F(ModifiedState, save_withoutRights_savesNoConnectorAndKeepsTheMark) {
    controller.setPluginModified(true);
    program.authorization->held = false;
    program.authorization->grantsWhenAsked = false;
    EXPECT_FALSE(controller.save());
    EXPECT_FALSE(asked(First::script(), "saveChanges"));
    EXPECT_TRUE(edited());
}

TEST_F(ModifiedState, save_refused_leavesConnectorsPendingAndShowsTheTableAnew) {
    First::script().answers["saveChanges"] = true;
    auto& config = program.framework.session->config();
    program.addConnector("AD", "Active", "1");
    controller.buildDSConfigPaneData();
    controller.pluginWithPrefix("AD")->setEnabled(false);
    controller.setPluginModified(true);
    program.authorization->held = false;
    program.authorization->grantsWhenAsked = false;
    program.journal.clear();
    EXPECT_FALSE(controller.save());
    EXPECT_TRUE(config.calls.empty());
    EXPECT_EQ(program.journal.count("selectPlugIn.reloadData"), 1);
    EXPECT_FALSE(controller.isPluginEnabled("AD")) << "still as wished";
    program.authorization->grantsWhenAsked = true;
    EXPECT_TRUE(controller.save());
    ASSERT_EQ(config.calls.size(), 1U);
    EXPECT_EQ(config.calls[0].code, 1001);
}

TEST_F(ModifiedState, save_thatAConnectorEnds_showsTheTableAnew) {
    controller.setPluginModified(true);
    First::script().answers["saveChanges"] = false;
    program.journal.clear();
    EXPECT_FALSE(controller.save());
    EXPECT_EQ(program.journal.count("selectPlugIn.reloadData"), 1);
}

TEST_F(ModifiedState, exceptionDuringSave_isShownAndAnswersFalse) {
    controller.setPluginModified(true);
    // A search node that raises while it is being written.
    controller.buildDSSearchPaneData();
    controller.addNodeToAuthSearchPolicy("/LDAP/two");
    program.framework.session->search().onCall = [](const auto&, auto*) -> std::optional<util::Bytes> {
        throw halden::Exception("the service went away");
    };
    program.platform.strings.marks = true;
    EXPECT_FALSE(controller.save());
    ASSERT_EQ(program.toolkit.alerts().size(), 1U);
    EXPECT_EQ(program.toolkit.alerts()[0].message, "«An unexpected error occurred»");
    EXPECT_EQ(program.toolkit.alerts()[0].information, "the service went away");
    EXPECT_EQ(program.toolkit.alerts()[0].buttons, std::vector<std::string>{"«OK»"});
    EXPECT_FALSE(program.toolkit.alerts()[0].asSheet);
    EXPECT_TRUE(edited());
}

TEST_F(ModifiedState, quit_everyPluginHearsOfItAndTheLastAnswerCounts) {
    First::script().answers["applicationWillQuitSavingChanges"] = false;
    EXPECT_TRUE(controller.applicationWillQuitSavingChanges(true));
    EXPECT_TRUE(asked(First::script(), "applicationWillQuitSavingChanges save"));
    EXPECT_TRUE(asked(Second::script(), "applicationWillQuitSavingChanges save"));
    Second::script().answers["applicationWillQuitSavingChanges"] = false;
    EXPECT_FALSE(controller.applicationWillQuitSavingChanges(false));
}

TEST_F(ModifiedState, lock_theFirstRefusalEndsTheAsking) {
    First::script().answers["applicationWillLockSavingChanges"] = false;
    EXPECT_FALSE(controller.applicationWillLockSavingChanges(true));
    EXPECT_TRUE(asked(First::script(), "applicationWillLockSavingChanges save"));
    EXPECT_FALSE(asked(Second::script(), "applicationWillLockSavingChanges save"));
}

TEST_F(ModifiedState, quitAndLockWithAnEmptyList_areAgreedTo) {
    program.framework.session->config().records.clear();
    controller.buildDSConfigPaneData();
    EXPECT_TRUE(controller.applicationWillQuitSavingChanges(false));
    EXPECT_TRUE(controller.applicationWillLockSavingChanges(false));
}

TEST_F(ModifiedState, revert_whenNothingMarkedTheWindow_doesNothing) {
    First::script().answers["isDirty"] = true;
    program.journal.clear();
    controller.revertAction();
    EXPECT_FALSE(asked(First::script(), "revertChanges"));
    EXPECT_TRUE(program.journal.entries().empty());
}

TEST_F(ModifiedState, revert_reachesEveryPluginRebuildsTheListAndCleansTheMark) {
    controller.setPluginModified(true);
    controller.pluginWithPrefix("LDAP")->setEnabled(false);
    First::script().answers["revertChanges"] = false; // the answer doesn't matter
    program.journal.clear();
    controller.revertAction();
    EXPECT_TRUE(asked(First::script(), "revertChanges"));
    EXPECT_TRUE(asked(Second::script(), "revertChanges"));
    EXPECT_TRUE(controller.isPluginEnabled("LDAP"));
    EXPECT_FALSE(edited());
    EXPECT_EQ(program.journal.only(
                  {"progressBar.indeterminate", "window.beginSheet", "/Config.query", "window.endSheet"}),
              (std::vector<std::string>{"progressBar.indeterminate", "window.beginSheet", "/Config.query",
                                        "window.endSheet"}));
    EXPECT_FALSE(program.journal.contains("/Search.details")); // no policy was edited
}

TEST_F(ModifiedState, revert_readsPoliciesThenCallsPluginsThenBuildsTheList) {
    controller.addNodeToAuthSearchPolicy("/LDAP/two");
    controller.addNodeToContactsSearchPolicy("/LDAP/two");
    program.journal.clear();
    First::script().calls.clear();
    controller.revertAction();
    const std::vector<std::string> steps = {
        "progressBar.indeterminate", "progressBar.display", "window.beginSheet", "progressBar.display",
        "/Search.details",           "/Contacts.details",   "/Config.query",     "window.endSheet"};
    EXPECT_EQ(program.journal.only(steps), steps);
    EXPECT_EQ(First::script().calls.at(0), "revertChanges"); // of the plug-in object before
    EXPECT_EQ(First::script().calls.at(1), "setPluginAPIImplementor");
    EXPECT_FALSE(edited()) << "the policies' mark is taken away too";
}

TEST_F(ModifiedState, revert_withoutASession_doesNothing) {
    controller.setPluginModified(true);
    program.framework.available = false;
    controller.setHaldenSession(nullptr);
    controller.revertAction();
    EXPECT_FALSE(asked(First::script(), "revertChanges"));
    EXPECT_TRUE(edited());
}

TEST_F(ModifiedState, save_isShownAsBusyFromTheFirstCallToTheLast) {
    controller.buildDSSearchPaneData();
    controller.addNodeToAuthSearchPolicy("/LDAP/two");
    std::vector<std::string> said;
    program.framework.session->search().onCall = [&](const auto&, auto*) -> std::optional<util::Bytes> {
        said.push_back(program.interface.busy.text());
        return util::Bytes{};
    };
    EXPECT_TRUE(controller.save());
    EXPECT_EQ(said, (std::vector<std::string>{"Saving…", "Saving…"})) << "the list and the mode";
    EXPECT_EQ(program.interface.busy.text(), "");
}

TEST_F(ModifiedState, saveThatRaises_isNoLongerShownAsBusyWhenItsAlertIsShown) {
    controller.buildDSSearchPaneData();
    controller.addNodeToAuthSearchPolicy("/LDAP/two");
    program.framework.session->search().onCall = [](const auto&, auto*) -> std::optional<util::Bytes> {
        throw halden::Exception("the service went away");
    };
    program.journal.clear();
    EXPECT_FALSE(controller.save());
    EXPECT_TRUE(program.journal.contains("busy: Saving…"));
    EXPECT_EQ(program.interface.busy.text(), "");
}

TEST_F(ModifiedState, saveThatIsCancelledInItsQuestion_isNotShownAsBusy) {
    controller.buildDSSearchPaneData();
    program.interface.selectSearchPolicy.choose(1); // Local: a directory leaves
    program.toolkit.willAnswer(1);
    program.journal.clear();
    EXPECT_FALSE(controller.save());
    EXPECT_FALSE(program.journal.contains("busy: Saving…"));
}

TEST_F(ModifiedState, applyButton_saves) {
    controller.setPluginModified(true);
    program.interface.applyButton.click();
    EXPECT_TRUE(asked(First::script(), "saveChanges"));
    EXPECT_FALSE(edited() || applyEnabled());
}

TEST_F(ModifiedState, revert_readsEditedPoliciesAgain) {
    controller.addNodeToContactsSearchPolicy("/LDAP/two");
    program.journal.clear();
    controller.revertAction();
    EXPECT_TRUE(program.journal.contains("/Contacts.details"));
    EXPECT_FALSE(program.journal.contains("/Search.details"));
    EXPECT_FALSE(controller.isNodeOnContactsSearchPolicy("/LDAP/two"));
}

TEST_F(ModifiedState, loadConfigWithSheet_buildsBehindTheSheetOnlyWhenNotLoaded) {
    program.journal.clear();
    controller.loadConfigWithSheet();
    EXPECT_TRUE(program.journal.entries().empty());
    controller.setIPAddress("server.example.com"); // every pane has to be read anew
    controller.loadConfigWithSheet();
    EXPECT_EQ(program.journal.only({"window.beginSheet", "/Config.query", "window.endSheet"}),
              (std::vector<std::string>{"window.beginSheet", "/Config.query", "window.endSheet"}));
}

TEST_F(ModifiedState, enableButtons_enablesEveryControl) {
    program.interface.addNode.setEnabled(false);
    program.interface.deleteNode.setEnabled(false);
    controller.enableButtons({&program.interface.addNode, &program.interface.deleteNode});
    EXPECT_TRUE(program.interface.addNode.isEnabled() && program.interface.deleteNode.isEnabled());
}

TEST_F(ModifiedState, refreshTable_reloadsTheTwoNodeTablesAlone) {
    program.journal.clear();
    controller.refreshTable();
    EXPECT_EQ(program.journal.entries(),
              (std::vector<std::string>{"selectNode.reloadData", "selectNodeContact.reloadData"}));
}

TEST_F(ModifiedState, markDirtyOfAPlugin_marksTheWindow) {
    const auto& host = *Second::script().host;
    host.markDirty(host.context, nullptr);
    EXPECT_TRUE(edited() && applyEnabled());
}

TEST_F(ModifiedState, questionThatThrowsAgainAndAgain_isReportedOnceAndTheNameFallsBack) {
    Second::script().throwsIn = "pluginName";
    controller.buildDSConfigPaneData();
    EXPECT_EQ(program.interface.selectPlugIn.texts("Name"), (std::vector<std::string>{"BSD", "LDAP"}));
    EXPECT_EQ(program.toolkit.alerts().size(), 1U);
    EXPECT_EQ(program.platform.log.lines.size(), 1U);
}

TEST_F(ModifiedState, actionThatThrowsAgain_isReportedAgain) {
    First::script().throwsIn = "revertChanges";
    for (const auto times : {1U, 2U}) {
        controller.setPluginModified(true);
        controller.revertAction();
        EXPECT_EQ(program.toolkit.alerts().size(), times);
        program.toolkit.answerSheet(1);
    }
}

TEST_F(ModifiedState, pluginThatThrows_isShownInASheetWithCauseAndNextStep) {
    First::script().throwsIn = "saveChanges";
    controller.setPluginModified(true);
    EXPECT_FALSE(controller.save());
    ASSERT_EQ(program.toolkit.alerts().size(), 1U);
    EXPECT_EQ(program.toolkit.alerts()[0].message, "The plug-in BSD has failed.");
    EXPECT_NE(program.toolkit.alerts()[0].information.find("the plug-in is out of order"), std::string::npos);
    EXPECT_TRUE(program.toolkit.alerts()[0].asSheet);
    EXPECT_TRUE(edited());
}
