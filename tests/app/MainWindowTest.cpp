#include "app/MainWindow.h"

#include <gtest/gtest.h>

#include "app/TabTable.h"
#include "fakes/FakeProgram.h"

using namespace corvane;
using Names = std::vector<std::string>;

namespace {

struct MainWindow : testing::Test {
    [[nodiscard]] std::string page() { return ui.mainTabView.selectedTabViewItem()->identifier(); }
    [[nodiscard]] std::string area() {
        return ui.mainVsDirectoryEditorTabView.selectedTabViewItem()->identifier();
    }
    [[nodiscard]] fakes::FakeToolbar& toolbar() { return ui.window.toolbar(); }
    [[nodiscard]] fakes::FakeTabView& policyTabs() { return *program.toolkit.madeTabViews.at(0); }
    [[nodiscard]] double topEdge() { return ui.window.frame().origin.y + ui.window.frame().size.height; }

    fakes::FakeProgram program;
    fakes::FakeInterface& ui = program.interface;
    fakes::Journal& journal = program.journal;
};

} // namespace

TEST_F(MainWindow, launch_showsServicesAt590By365WithItsItemSelected) {
    program.launch();
    EXPECT_EQ(page(), "1");
    EXPECT_EQ(ui.window.contentSize(), (toolkit::Size{590, 365}));
    EXPECT_EQ(toolbar().selectedItemIdentifier(), "kServices");
    EXPECT_TRUE(ui.window.isVisible());
}

TEST_F(MainWindow, title_namesTheMachine) {
    program.platform.network.host = "workstation";
    program.launch();
    EXPECT_EQ(ui.window.title(), "Corvane: workstation");
    EXPECT_TRUE(ui.trialNotice.isHidden());
}

TEST_F(MainWindow, onATrialFolder_aStripSaysThatNothingOfThisMachineChanges) {
    program.environment.worksOnTrialFolder = true;
    program.launch();
    EXPECT_EQ(ui.trialNotice.shownMessage(), "Trial folder: nothing on this machine changes");
}

TEST_F(MainWindow, setUp_happensInItsOrder) {
    program.launch();
    const Names steps = {"selectPlugIn.sizeToFit",
                         "selectNode.registerForDraggedType DirNodeNamePasteboardType",
                         "selectNodeContact.registerForDraggedType DirNodeNamePasteboardType",
                         "authorization.obtainRights 18",
                         "selectSearchPolicy.select -1",
                         "selectNode.allowMultiple",
                         "selectContactPolicy.select -1",
                         "selectNodeContact.allowMultiple",
                         "progressBar.threaded",
                         "madeTabView.autoresizingMask 18",
                         "window.hideToolbarButton",
                         "toolbar.show"};
    EXPECT_EQ(journal.only(steps), steps);
}

TEST_F(MainWindow, setUp_readsThePageOnScreenAndAsksForTheLocksStatus) {
    program.framework.session->config().raisesOnDetails = true; // so that the list isn't loaded yet
    program.launch();
    const Names steps = {"/Config.query", "window.hideToolbarButton", "authorizationView.updateStatus"};
    EXPECT_EQ(journal.only(steps),
              (Names{"/Config.query",                  // before the window
                     "authorizationView.updateStatus", // by the lock
                     "window.hideToolbarButton",       // the toolbar
                     "/Config.query",                  // the page on screen
                     "authorizationView.updateStatus", // the lock's status once more
                     "/Config.query"}));               // when the window is loaded
}

TEST_F(MainWindow, windowSetUp_startsClean) {
    program.controller().setPluginModified(true);
    program.controller().setSearchPolicyModified(true);
    program.launch();
    EXPECT_FALSE(ui.window.isDocumentEdited());
    EXPECT_FALSE(ui.applyButton.isEnabled());
}

TEST_F(MainWindow, policyPages_moveIntoATabViewOfTheirOwn) {
    program.launch();
    EXPECT_EQ(ui.mainTabView.identifiers(), (Names{"1", "20"}));
    EXPECT_EQ(policyTabs().identifiers(), (Names{"2", "3"}));
    EXPECT_EQ(policyTabs().frame(), toolkit::Rect{});
}

TEST_F(MainWindow, toolbar_hasThreeItemsInOrderWithLabelsAndPictures) {
    program.platform.strings.marks = true;
    program.launch();
    Names shown;
    for (const auto& item : toolbar().items())
        shown.push_back(item.identifier + " " + item.label + " " + item.imageName);
    EXPECT_EQ(shown, (Names{"kServices «Services» Services_32", "kSearchPaths «Search Policy» SearchPaths_32",
                            "kDebug «Directory Editor» Halden_32"}));
    EXPECT_EQ(toolbar().identifier(), "com.velmora.Corvane.toolbar");
    EXPECT_TRUE(toolbar().autosaves());
    EXPECT_FALSE(toolbar().customizable());
    EXPECT_TRUE(toolbar().visible());
}

TEST_F(MainWindow, toolbarOfTheSecondaryWindow_hasNoItems) {
    program.launch();
    fakes::FakeToolbar other(journal, "other");
    auto& delegate = program.controller().mainWindow();
    EXPECT_TRUE(delegate.toolbarDefaultItemIdentifiers(other).empty());
    EXPECT_TRUE(delegate.toolbarAllowedItemIdentifiers(other).empty());
    EXPECT_TRUE(delegate.toolbarSelectableItemIdentifiers(other).empty());
}

TEST_F(MainWindow, unknownToolbarItem_isLabelledUnknownWithoutAPicture) {
    program.launch();
    const auto item = program.controller().mainWindow().itemForItemIdentifier(toolbar(), "kNothing", true);
    EXPECT_EQ(item.label, "Unknown");
    EXPECT_EQ(item.imageName, "");
}

TEST(TabTable, entriesCompareByTheirSortOrder) {
    const util::Dictionary first = {{"sortOrder", "08"}};
    const util::Dictionary second = {{"sortOrder", "12"}};
    EXPECT_LT(app::tabtable::toolbarValueCompare(first, second), 0);
    EXPECT_GT(app::tabtable::toolbarValueCompare(second, first), 0);
    EXPECT_EQ(app::tabtable::toolbarValueCompare(first, first), 0);
    EXPECT_FALSE(app::tabtable::table().isMutable());
}

TEST_F(MainWindow, editor_getsTheSessionEnlargesTheWindowAndKeepsItsTopEdge) {
    program.launch();
    ui.applyButton.setHidden(true);
    const auto top = topEdge();
    toolbar().clickItem("kDebug");
    EXPECT_EQ(area(), "directoryEditor");
    EXPECT_EQ(ui.directoryEditor.haldenSession, program.framework.session);
    EXPECT_EQ(ui.window.contentSize(), (toolkit::Size{790, 600}));
    EXPECT_EQ(topEdge(), top);
    EXPECT_EQ(ui.window.minimum(), (toolkit::Size{600, 500}));
    EXPECT_EQ(ui.window.maximum(), (toolkit::Size{80000, 80000}));
    EXPECT_TRUE(ui.window.showsResizeIndicator());
    EXPECT_TRUE(ui.window.zoomButtonEnabled());
    EXPECT_FALSE(ui.applyButton.isHidden());
}

TEST_F(MainWindow, backFromTheEditor_theSizeIsFixedAgain) {
    program.launch();
    const auto top = topEdge();
    toolbar().clickItem("kDebug");
    toolbar().clickItem("kServices");
    EXPECT_EQ(area(), "main");
    EXPECT_EQ(ui.window.contentSize(), (toolkit::Size{590, 365}));
    EXPECT_EQ(topEdge(), top);
    EXPECT_EQ(ui.window.minimum(), (toolkit::Size{590, 365}));
    EXPECT_EQ(ui.window.maximum(), (toolkit::Size{590, 365}));
    EXPECT_FALSE(ui.window.showsResizeIndicator());
    EXPECT_FALSE(ui.window.zoomButtonEnabled());
}

TEST_F(MainWindow, searchPolicy_loadsOnlyTheSubTabOnScreen) {
    program.launch();
    journal.clear();
    toolbar().clickItem("kSearchPaths");
    EXPECT_EQ(page(), "20");
    EXPECT_TRUE(journal.contains("/Search.details"));
    EXPECT_FALSE(journal.contains("/Contacts.details"));
    EXPECT_EQ(ui.window.contentSize(), (toolkit::Size{590, 365}));
}

TEST_F(MainWindow, searchPolicy_comesBackToTheSubTabLastSelected) {
    program.launch();
    toolbar().clickItem("kSearchPaths");
    policyTabs().clickTab("3");
    toolbar().clickItem("kServices");
    toolbar().clickItem("kSearchPaths");
    EXPECT_EQ(policyTabs().selectedTabViewItem()->identifier(), "3");
}

TEST_F(MainWindow, pane_isReadOnItsFirstVisitOnly) {
    program.launch();
    toolbar().clickItem("kSearchPaths");
    toolbar().clickItem("kServices");
    journal.clear();
    toolbar().clickItem("kSearchPaths");
    EXPECT_FALSE(journal.contains("/Search.details"));
}

TEST_F(MainWindow, loadingAPolicyPane_adjustsItsEditingControls) {
    program.launch();
    toolbar().clickItem("kSearchPaths");
    EXPECT_TRUE(ui.addNode.isHidden()); // Automatic
    policyTabs().clickTab("3");
    EXPECT_TRUE(ui.dragMessageContact.isHidden());
}

TEST_F(MainWindow, remotely_theFirstVisitOfAPaneShowsTheProgressSheetAndLaterOnesDont) {
    program.launch();
    program.controller().setIPAddress("server.example.com");
    journal.clear();
    toolbar().clickItem("kSearchPaths");
    const Names steps = {"progressBar.indeterminate", "progressBar.display", "progressBar.needsDisplay",
                         "window.beginSheet",         "progressBar.start",   "progressBar.display",
                         "/Search.details",           "progressBar.stop",    "window.endSheet",
                         "progressSheet.orderOut"};
    EXPECT_EQ(journal.only(steps), steps);
    toolbar().clickItem("kServices");
    journal.clear();
    toolbar().clickItem("kSearchPaths");
    EXPECT_FALSE(journal.contains("window.beginSheet"));
}

TEST_F(MainWindow, progressSheetWithADeterminateBar_animatesNothing) {
    program.launch();
    ui.progressBar.setIndeterminate(false);
    journal.clear();
    program.controller().showProgressBar();
    program.controller().hideProgressBar();
    EXPECT_EQ(journal.entries(), (Names{"progressBar.needsDisplay", "window.beginSheet",
                                        "progressBar.display", "window.endSheet", "progressSheet.orderOut"}));
}

TEST_F(MainWindow, locally_noSheetIsShown) {
    program.launch();
    toolbar().clickItem("kSearchPaths");
    EXPECT_FALSE(journal.contains("window.beginSheet"));
}

TEST_F(MainWindow, paneThatNeedsASession_isNotSelectedWithoutOne) {
    program.launch();
    toolbar().clickItem("kSearchPaths"); // the policy's page itself may always be shown
    program.framework.available = false;
    program.controller().setHaldenSession(nullptr);
    policyTabs().clickTab("3");
    EXPECT_EQ(policyTabs().selectedTabViewItem()->identifier(), "2");
}

TEST_F(MainWindow, loadedPane_isSelectedEvenWithoutASession) {
    program.launch();
    toolbar().clickItem("kSearchPaths");
    program.framework.available = false;
    program.controller().setHaldenSession(nullptr);
    toolbar().clickItem("kServices");
    EXPECT_EQ(page(), "1");
}

TEST_F(MainWindow, loadCurrentTab_ofAnUnknownPage_doesNothing) {
    program.launch();
    journal.clear();
    program.controller().loadCurrentTabIfNeeded("4");
    program.controller().loadCurrentTabIfNeeded("99");
    EXPECT_TRUE(journal.entries().empty());
}

TEST_F(MainWindow, firstLaunch_centresTheWindowOnce) {
    program.platform.userDefaults.setBool("FirstLaunch", true);
    program.launch();
    EXPECT_TRUE(journal.contains("window.center"));
    EXPECT_FALSE(program.platform.userDefaults.boolForKey("FirstLaunch"));
    fakes::FakeProgram later;
    later.launch();
    EXPECT_FALSE(later.journal.contains("window.center"));
    EXPECT_EQ(later.platform.userDefaults.stringForKey("FirstLaunch"), "false");
}

TEST_F(MainWindow, windowDidLoad_bringsItToFrontAndReadsTheServices) {
    program.launch();
    EXPECT_EQ(journal.only({"window.makeKeyAndOrderFront", "window.makeFirstResponder"}).at(0),
              "window.makeKeyAndOrderFront");
    EXPECT_EQ(ui.window.firstResponder(), nullptr);
    EXPECT_EQ(journal.count("/Config.query"), 2); // before the window is built, and when it is loaded
}

TEST_F(MainWindow, state_isTheSelectedItemAndTheTopLeftPoint) {
    program.launch();
    toolbar().clickItem("kSearchPaths");
    ui.window.setFrame({{12, 34.5}, {590, 443}}, false, false);
    fakes::FakeStateCoder coder;
    ui.window.delegate()->willEncodeRestorableState(ui.window, coder);
    EXPECT_EQ(coder.values["selectedToolbarItem"], "kSearchPaths");
    EXPECT_EQ(coder.values["windowTopLeft"], "{12, 477.5}");
}

TEST_F(MainWindow, restoredState_selectsItsPaneAndMovesTheWindow) {
    program.launch();
    fakes::FakeStateCoder coder;
    coder.values = {{"selectedToolbarItem", "kSearchPaths"}, {"windowTopLeft", "{300, 900}"}};
    ui.window.delegate()->didDecodeRestorableState(ui.window, coder);
    EXPECT_EQ(toolbar().selectedItemIdentifier(), "kSearchPaths");
    EXPECT_EQ(page(), "20");
    EXPECT_EQ(ui.window.frame().origin.x, 300);
    EXPECT_EQ(topEdge(), 900);
}

TEST_F(MainWindow, restoredItemThatIsUnknown_changesNoPane) {
    program.launch();
    fakes::FakeStateCoder coder;
    coder.values = {{"selectedToolbarItem", "kGone"}};
    const auto frame = ui.window.frame();
    ui.window.delegate()->didDecodeRestorableState(ui.window, coder);
    EXPECT_EQ(page(), "1");
    EXPECT_EQ(toolbar().selectedItemIdentifier(), std::nullopt);
    EXPECT_EQ(ui.window.frame(), frame);
}

TEST_F(MainWindow, restoredPointThatIsNonsense_leavesTheWindowWhereItIs) {
    program.launch();
    const auto frame = ui.window.frame();
    for (const auto* text : {"", "{", "{}", "{1}", "{a, b}", "1, 2", "{1, 2} ", "{1, 2, 3}"}) {
        fakes::FakeStateCoder coder;
        coder.values = {{"windowTopLeft", text}};
        ui.window.delegate()->didDecodeRestorableState(ui.window, coder);
        EXPECT_EQ(ui.window.frame(), frame) << text;
    }
}

TEST_F(MainWindow, stateOfAnotherWindow_isNotTouched) {
    program.launch();
    fakes::FakeWindow other(journal, "other");
    fakes::FakeStateCoder coder;
    ui.window.delegate()->willEncodeRestorableState(other, coder);
    EXPECT_TRUE(coder.values.empty());
    coder.values = {{"selectedToolbarItem", "kSearchPaths"}, {"windowTopLeft", "{1, 2}"}};
    ui.window.delegate()->didDecodeRestorableState(other, coder);
    EXPECT_EQ(page(), "1");
    EXPECT_EQ(other.frame(), fakes::FakeWindow(journal, "untouched").frame());
}

TEST_F(MainWindow, errorSheet_hasTitleMessageAndOneButton) {
    program.launch();
    program.controller().showErrorSheetWithTitle("Title", "Message");
    EXPECT_TRUE(ui.window.hasAttachedSheet());
    const auto& shown = program.toolkit.alerts().at(0);
    EXPECT_EQ(shown.message, "Title");
    EXPECT_EQ(shown.information, "Message");
    EXPECT_EQ(shown.buttons, Names{"OK"});
    program.toolkit.answerSheet(1);
    EXPECT_FALSE(ui.window.hasAttachedSheet());
}

TEST_F(MainWindow, secondErrorSheet_waitsUntilTheFirstWasRead) {
    program.launch();
    program.controller().showErrorSheetWithTitle("First", "1");
    program.controller().showErrorSheetWithTitle("Second", "2");
    EXPECT_EQ(program.toolkit.alerts().size(), 1U);
    program.toolkit.answerSheet(1);
    EXPECT_EQ(program.toolkit.alerts().at(1).message, "Second");
    EXPECT_TRUE(ui.window.hasAttachedSheet());
    program.toolkit.answerSheet(1);
    EXPECT_FALSE(ui.window.hasAttachedSheet());
}

TEST_F(MainWindow, helpButton_opensTheHelpBook) {
    program.launch();
    ui.helpButton.click();
    EXPECT_TRUE(journal.contains("application.help Corvane Help main-window"));
    program.controller().localNodeWindowHelpButtonHit();
    EXPECT_EQ(program.platform.log.lines, Names{"local node window help button hit"});
}

TEST_F(MainWindow, statusTimer_runsEvery300SecondsWhileTheApplicationIsActive) {
    program.launch();
    EXPECT_TRUE(program.platform.runLoop.intervals().empty()); // not active yet
    journal.clear();
    program.controller().applicationDidBecomeActive();
    EXPECT_EQ(journal.entries(), Names{"authorizationView.updateStatus"});
    program.controller().applicationDidBecomeActive();
    EXPECT_EQ(program.platform.runLoop.intervals(), std::vector<double>{300});
    journal.clear();
    program.platform.runLoop.fireAll();
    EXPECT_EQ(journal.entries(), Names{"authorizationView.updateStatus"});
    program.controller().applicationDidResignActive();
    EXPECT_TRUE(program.platform.runLoop.intervals().empty());
    EXPECT_EQ(journal.count("authorizationView.updateStatus"), 2);
}

TEST_F(MainWindow, launchedWhileActive_theStatusTimerRunsAtOnce) {
    program.toolkit.fakeApplication().active = true;
    program.launch();
    EXPECT_EQ(program.platform.runLoop.intervals(), std::vector<double>{300});
}

TEST_F(MainWindow, closing_savesTheFrameAndQuits) {
    program.launch();
    EXPECT_TRUE(ui.window.clickClose());
    EXPECT_EQ(journal.only({"window.saveFrame MainWindow1", "application.terminate"}),
              (Names{"window.saveFrame MainWindow1", "application.terminate"}));
}

TEST_F(MainWindow, closingWithUnsavedChanges_isCancelledByThePrompt) {
    program.launchUnlocked();
    program.controller().setPluginModified(true);
    program.toolkit.willAnswer(3);
    EXPECT_FALSE(ui.window.clickClose());
    EXPECT_FALSE(journal.contains("application.terminate"));
    program.toolkit.willAnswer(2);
    EXPECT_TRUE(ui.window.clickClose());
    EXPECT_TRUE(journal.contains("application.terminate")); // which didn't ask a second time
    EXPECT_EQ(program.toolkit.alerts().size(), 2U);
}

TEST_F(MainWindow, advancedPanel_groupsAllThreePages) {
    app::MainWindow& window = program.controller().mainWindow();
    window.createAdvancedPanel();
    EXPECT_EQ(ui.mainTabView.identifiers(), Names{"advanced"});
    EXPECT_EQ(policyTabs().identifiers(), (Names{"1", "2", "3"}));
}
