#include "searchpolicy/NodePaneController.h"

#include <gtest/gtest.h>

#include "fakes/FakeProgram.h"
#include "fakes/RecordingPlugin.h"

using namespace corvane;
namespace attribute = halden::attribute;
using Names = std::vector<std::string>;
using Recording = fakes::RecordingPlugin<0>;

namespace {

/// The panel open over a custom authentication policy of four nodes.
struct NodePane : testing::Test {
    NodePane() {
        program.setPolicy(program.framework.session->search(), attribute::customSearchPath,
                          {"/Local/Accounts", "/BSD/Files", "/L/one", "/L/two"});
        program.launchUnlocked();
        controller.loadCurrentTabIfNeeded("2");
        program.framework.session->names = {"/L/zulu",       "/L/one",    "/Local/Accounts", "/L/alpha",
                                            "/SMB/share",    "/Search",   "/L/mike",         "/Contacts",
                                            "/Local/Former", "/BSD/Files"};
    }
    void open() { program.interface.addNode.click(); }
    [[nodiscard]] Names offered() { return panel.texts("NodeName"); }
    [[nodiscard]] Names list() { return program.interface.selectNode.texts("NodeName"); }
    void select(const std::vector<int>& rows) {
        panel.deselectAll();
        for (const int row : rows)
            panel.selectRow(row, true);
    }

    fakes::FakeProgram program;
    app::MainController& controller = program.controller();
    fakes::FakeTableView& panel = program.interface.panelNodes;
};

} // namespace

TEST_F(NodePane, offersTheSessionsNodesInItsOrderWithoutHiddenOnesAndThoseOnTheList) {
    open();
    EXPECT_EQ(offered(), (Names{"/L/zulu", "/L/alpha", "/L/mike"}));
    EXPECT_EQ(panel.selectedRow(), 0);
}

TEST_F(NodePane, nodesThatTheirPluginRefuses_neverAppear) {
    Recording::script() = {};
    Recording::script().answers["shouldAllowNodeNameOnSearchPolicy"] = false;
    program.addPlugin("L", Recording::factory());
    plugins::PluginController::sharedInstance(program.platform.environment).loadPlugins();
    program.addConnector("L", "Active", "1");
    controller.buildDSConfigPaneData();
    open();
    EXPECT_TRUE(offered().empty());
}

TEST_F(NodePane, everythingAlreadyOnTheList_leavesThePanelEmpty) {
    program.framework.session->names = {"/L/one", "/L/two", "/Search"};
    open();
    EXPECT_TRUE(offered().empty());
    program.interface.panelAdd.click(); // nothing selected: the sheet just ends
    EXPECT_FALSE(program.interface.window.hasAttachedSheet());
    EXPECT_EQ(list().size(), 4U);
}

TEST_F(NodePane, severalNodes_areInsertedInTheOrderOfTheirRows) {
    program.interface.selectNode.selectRow(2, false);
    open();
    select({2, 0, 1});
    program.interface.panelAdd.click();
    EXPECT_EQ(list(),
              (Names{"/Local/Accounts", "/BSD/Files", "/L/one", "/L/zulu", "/L/alpha", "/L/mike", "/L/two"}));
}

TEST_F(NodePane, threeNodesAtPlace2_standAt2To4) {
    program.setPolicy(program.framework.session->contacts(), attribute::customSearchPath,
                      {"/L/one", "/L/two", "/L/three"});
    controller.loadCurrentTabIfNeeded("3");
    program.interface.selectNodeContact.selectRow(0, false); // among as many rows as there are local nodes: 2
    program.interface.addNodeContact.click();
    EXPECT_EQ(offered(), (Names{"/L/zulu", "/Local/Accounts", "/L/alpha", "/L/mike", "/BSD/Files"}));
    select({3, 0, 2});
    program.interface.panelAdd.click();
    EXPECT_EQ(program.interface.selectNodeContact.texts("NodeName"),
              (Names{"/L/one", "/L/two", "/L/zulu", "/L/alpha", "/L/mike", "/L/three"}));
}

TEST_F(NodePane, withoutAPlace_theFirstIsAppendedAndTheOthersFollow) {
    open();
    select({1, 2});
    program.interface.panelAdd.click();
    EXPECT_EQ(list(), (Names{"/Local/Accounts", "/BSD/Files", "/L/one", "/L/two", "/L/alpha", "/L/mike"}));
}

TEST_F(NodePane, doubleClick_addsTheClickedRow) {
    open();
    panel.doubleClickRow(1);
    EXPECT_EQ(list().back(), "/L/alpha");
    EXPECT_FALSE(program.interface.window.hasAttachedSheet());
}

TEST_F(NodePane, everyChosenRow_refreshesBothTablesAndSetsTheServicesMark) {
    open();
    select({0, 1});
    program.journal.clear();
    program.interface.panelAdd.click();
    EXPECT_EQ(program.journal.count("selectNode.reloadData"), 2);
    EXPECT_EQ(program.journal.count("selectNodeContact.reloadData"), 2);
    controller.setPluginModified(false);
    EXPECT_FALSE(program.interface.window.isDocumentEdited());
}

TEST_F(NodePane, oneDuplicate_isReportedAfterTheOthersWereAdded) {
    program.platform.strings.marks = true;
    open();
    controller.addNodeToAuthSearchPolicy("/L/alpha"); // the list has changed since
    select({0, 1});
    program.interface.panelAdd.click();
    ASSERT_EQ(program.toolkit.alerts().size(), 1U);
    EXPECT_EQ(program.toolkit.alerts()[0].message, "«Edit of Custom path»");
    EXPECT_EQ(program.toolkit.alerts()[0].information,
              "«This directory domain is already within your custom path.»");
    EXPECT_EQ(program.toolkit.alerts()[0].buttons, Names{"«OK»"});
    EXPECT_EQ(std::ranges::count(list(), "/L/alpha"), 1);
    EXPECT_EQ(std::ranges::count(list(), "/L/zulu"), 1);
    EXPECT_FALSE(program.interface.window.hasAttachedSheet());
}

TEST_F(NodePane, duplicateAlone_setsTheServicesMarkAndRefreshesToo) {
    open();
    controller.addNodeToAuthSearchPolicy("/L/zulu");
    controller.setSearchPolicyModified(false);
    ASSERT_FALSE(program.interface.window.isDocumentEdited());
    program.journal.clear();
    program.interface.panelAdd.click();
    EXPECT_EQ(program.journal.count("selectNodeContact.reloadData"), 1);
    EXPECT_TRUE(program.interface.window.isDocumentEdited());
}

TEST_F(NodePane, severalDuplicates_haveATextOfTheirOwn) {
    open();
    controller.addNodeToAuthSearchPolicy("/L/alpha");
    controller.addNodeToAuthSearchPolicy("/L/mike");
    select({0, 1, 2});
    program.interface.panelAdd.click();
    EXPECT_EQ(program.toolkit.alerts().at(0).information,
              "Some of the selected directory domains are already within your custom path.");
}

TEST_F(NodePane, done_endsTheSheetAndAddsNothing) {
    open();
    program.interface.panelDone.click();
    EXPECT_FALSE(program.interface.window.hasAttachedSheet());
    EXPECT_EQ(list().size(), 4U);
}

TEST_F(NodePane, failingListing_leavesTheRowsWithoutAnAlert) {
    open();
    program.interface.panelDone.click();
    program.framework.session->names = {"no connector in this name"}; // admission raises
    open();
    EXPECT_EQ(offered(), (Names{"/L/zulu", "/L/alpha", "/L/mike"}));
    EXPECT_TRUE(program.toolkit.alerts().empty());
}

TEST_F(NodePane, listingThatReturnsNothing_leavesTheRowsToo) {
    open();
    program.interface.panelDone.click();
    program.framework.session->listingFails = true;
    open();
    EXPECT_EQ(offered(), (Names{"/L/zulu", "/L/alpha", "/L/mike"}));
    EXPECT_TRUE(program.toolkit.alerts().empty());
}

TEST_F(NodePane, typing_narrowsTheRowsWithoutRegardToCase_andOpeningAgainShowsAll) {
    open();
    program.interface.panelFilter.type("LPH");
    EXPECT_EQ(offered(), Names{"/L/alpha"});
    EXPECT_EQ(panel.selectedRow(), 0);
    program.interface.panelAdd.click();
    EXPECT_EQ(list().back(), "/L/alpha");
    open();
    EXPECT_EQ(offered(), (Names{"/L/zulu", "/L/mike"}));
}

TEST_F(NodePane, onePanel_servesBothPolicies) {
    EXPECT_EQ(&controller.sharedNodePaneController(), &controller.sharedNodePaneController());
    EXPECT_EQ(program.journal.count("panel.autosaveFrame AddNodes"), 1);
}

TEST_F(NodePane, outsideTheRows_everyAnswerIsHarmless) {
    open();
    EXPECT_EQ(panel.textAt("NodeName", -1), "DefaultEntry");
    EXPECT_EQ(panel.textAt("NodeName", 3), "DefaultEntry");
    EXPECT_EQ(panel.textAt("Other", 0), "DefaultEntry");
}

TEST_F(NodePane, beforeTheFirstOpening_isEmpty) {
    (void)controller.sharedNodePaneController();
    EXPECT_EQ(panel.numberOfRows(), 0);
    EXPECT_EQ(panel.textAt("NodeName", 0), "DefaultEntry");
}

TEST_F(NodePane, nullParentAndNullList_areIgnored) {
    open();
    auto& controllerOfPanel = controller.sharedNodePaneController();
    controllerOfPanel.setParentController(nullptr);
    controllerOfPanel.setCustomNodeArray(util::Array());
    select({0});
    program.interface.panelAdd.click();
    EXPECT_EQ(list().back(), "/L/zulu");
}

TEST_F(NodePane, openingWithoutAList_offersNothingAndLeavesTheListOfTheOpeningBefore) {
    open();
    program.interface.panelDone.click();
    program.setPolicy(program.framework.session->contacts(), attribute::customSearchPath, {"/L/one"});
    controller.loadCurrentTabIfNeeded("3");
    program.framework.session->contacts().raisesOnDetails = true;
    controller.buildDSContactsPaneData();
    program.interface.addNodeContact.click();
    EXPECT_EQ(offered(), Names{});
    program.interface.panelAdd.click();
    controller.refreshTable();
    EXPECT_EQ(list(), (Names{"/Local/Accounts", "/BSD/Files", "/L/one", "/L/two"}));
    EXPECT_FALSE(program.interface.window.hasAttachedSheet());
}

TEST_F(NodePane, afterItHasClosed_addsToNoList) {
    open();
    program.interface.panelDone.click();
    select({0});
    controller.sharedNodePaneController().addNodeAction();
    EXPECT_EQ(list(), (Names{"/Local/Accounts", "/BSD/Files", "/L/one", "/L/two"}));
}

TEST_F(NodePane, policyThatIsReadAgainAfterItHasClosed_isNotAddedTo) {
    open();
    program.interface.panelDone.click();
    controller.buildDSSearchPaneData();
    select({0});
    controller.sharedNodePaneController().addNodeAction();
    EXPECT_EQ(list(), (Names{"/Local/Accounts", "/BSD/Files", "/L/one", "/L/two"}));
}

TEST_F(NodePane, closingItsWindow_stopsAModalRun) {
    controller.sharedNodePaneController().windowWillClose();
    EXPECT_TRUE(program.journal.contains("application.stopModal 0"));
}

TEST_F(NodePane, policyThatIsReadAgainUnderThePanel_getsWhatIsAdded) {
    program.interface.selectNode.selectRow(3, false);
    open();
    program.setPolicy(program.framework.session->search(), attribute::customSearchPath,
                      {"/Local/Accounts", "/BSD/Files"});
    controller.buildDSSearchPaneData(); // a plug-in may ask for it at any time
    program.interface.panelAdd.click();
    EXPECT_EQ(list(), (Names{"/Local/Accounts", "/BSD/Files", "/L/zulu"}));
    program.toolkit.willAnswer(2); // directories leave the login policy? no matter here
    EXPECT_TRUE(controller.save());
    const auto& calls = program.framework.session->search().calls;
    ASSERT_FALSE(calls.empty());
    EXPECT_EQ(calls[0].code, 444);
}

TEST_F(NodePane, policyThatCanNoLongerBeReadUnderThePanel_getsNothing) {
    open();
    program.framework.session->search().raisesOnDetails = true;
    controller.buildDSSearchPaneData();
    program.interface.panelAdd.click();
    EXPECT_TRUE(list().empty());
    program.framework.session->search().raisesOnDetails = false;
    controller.buildDSSearchPaneData();
    EXPECT_EQ(list(), (Names{"/Local/Accounts", "/BSD/Files", "/L/one", "/L/two"}));
}

TEST_F(NodePane, theOtherPolicyReadAgain_leavesThePanelsListAlone) {
    open();
    controller.buildDSContactsPaneData();
    program.interface.panelAdd.click();
    EXPECT_EQ(list().back(), "/L/zulu");
}
