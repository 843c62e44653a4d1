#include "searchpolicy/SearchPolicyPane.h"

#include <gtest/gtest.h>

#include "fakes/FakeProgram.h"

using namespace corvane;
namespace attribute = halden::attribute;
using Names = std::vector<std::string>;
using toolkit::TextColor;

namespace {

/// Both policies in Custom mode: the authentication list has the two local nodes in front, the contacts list
/// has one of them in its place and another one elsewhere.
struct Panes : testing::Test {
    Panes() {
        program.addConnector("AD", "Inactive", "12345");
        program.setPolicy(search, attribute::customSearchPath,
                          {"/Local/Accounts", "/BSD/Files", "/LDAP/one", "/AD/example"});
        program.setPolicy(contacts, attribute::customSearchPath,
                          {"/Local/Accounts", "/LDAP/one", "/BSD/Files", "/AD/example"});
        program.launchUnlocked();
        controller.loadCurrentTabIfNeeded("2");
        controller.loadCurrentTabIfNeeded("3");
    }
    [[nodiscard]] TextColor colour(fakes::FakeTableView& table, int row,
                                   TextColor before = TextColor::black) {
        toolkit::Cell cell;
        cell.textColor = before;
        return table.drawnCell("NodeName", row, cell).textColor;
    }
    void lock() { controller.setUnlocked(false); }

    fakes::FakeProgram program;
    app::MainController& controller = program.controller();
    fakes::FakeNodeState& search = program.framework.session->search();
    fakes::FakeNodeState& contacts = program.framework.session->contacts();
    fakes::FakeTableView& nodes = program.interface.selectNode;
    fakes::FakeTableView& contactNodes = program.interface.selectNodeContact;
    fakes::FakePopUpButton& mode = program.interface.selectSearchPolicy;
    fakes::FakePopUpButton& contactMode = program.interface.selectContactPolicy;
};

constexpr int automatic = 0;
constexpr int localOnly = 1;
constexpr int custom = 2;

} // namespace

TEST_F(Panes, table_showsTheListOfTheChosenMode) {
    mode.choose(automatic);
    EXPECT_EQ(nodes.texts("NodeName"), (Names{"/Local/Accounts", "/BSD/Files", "/LDAP/one"}));
    mode.choose(localOnly);
    EXPECT_EQ(nodes.texts("NodeName"), fakes::localNodes);
    mode.choose(custom);
    EXPECT_EQ(nodes.texts("NodeName"), (Names{"/Local/Accounts", "/BSD/Files", "/LDAP/one", "/AD/example"}));
}

TEST_F(Panes, outsideTheTable_everyAnswerIsHarmless) {
    EXPECT_EQ(nodes.textAt("NodeName", -1), "DefaultEntry");
    EXPECT_EQ(nodes.textAt("NodeName", 4), "DefaultEntry");
    EXPECT_EQ(nodes.textAt("Other", 0), "DefaultEntry");
}

TEST(PanesBeforeTheFirstRead, tableIsEmptyAndEveryCellADefault) {
    fakes::FakeProgram program;
    program.launchUnlocked();
    EXPECT_TRUE(program.interface.selectNode.clickRow(0)); // nothing is known of it
    EXPECT_TRUE(program.interface.selectNodeContact.clickRow(0));
    EXPECT_EQ(program.interface.selectNode.numberOfRows(), 0);
    EXPECT_EQ(program.interface.selectNode.textAt("NodeName", 0), "DefaultEntry");
    toolkit::Cell cell;
    cell.textColor = TextColor::red;
    EXPECT_EQ(program.interface.selectNode.drawnCell("NodeName", 0, cell).textColor, TextColor::red);
}

TEST_F(Panes, authenticationColours_inCustomMode) {
    EXPECT_EQ(colour(nodes, 0), TextColor::gray);
    EXPECT_EQ(colour(nodes, 1), TextColor::gray);
    EXPECT_EQ(colour(nodes, 2), TextColor::black);
    EXPECT_EQ(colour(nodes, 3), TextColor::red); // its connector is switched off
}

TEST_F(Panes, aNodeWhoseConnectorIsSwitchedOff_saysSoInWords) {
    EXPECT_EQ(nodes.drawnCell("NodeName", 3).note, "switched off");
    toolkit::Cell ofTheRowBefore;
    ofTheRowBefore.note = "switched off";
    EXPECT_EQ(nodes.drawnCell("NodeName", 2, ofTheRowBefore).note, "");
}

TEST_F(Panes, contactsColours_haveNoGrayHeadInCustomMode) {
    EXPECT_EQ(colour(contactNodes, 0), TextColor::black);
    EXPECT_EQ(colour(contactNodes, 2), TextColor::black);
    EXPECT_EQ(colour(contactNodes, 3), TextColor::red);
}

TEST_F(Panes, nodeOfAnUnknownConnector_isBlack) {
    controller.addNodeToAuthSearchPolicy("/Unknown/node");
    EXPECT_EQ(colour(nodes, 4), TextColor::black);
}

TEST_F(Panes, otherModes_areGray) {
    for (const int each : {automatic, localOnly}) {
        mode.choose(each);
        contactMode.choose(each);
        EXPECT_EQ(colour(nodes, 0), TextColor::gray);
        EXPECT_EQ(colour(contactNodes, 0), TextColor::gray);
    }
}

TEST_F(Panes, locked_isGray) {
    lock();
    EXPECT_EQ(colour(nodes, 2), TextColor::gray);
    EXPECT_EQ(colour(contactNodes, 3), TextColor::gray);
}

TEST_F(Panes, customListShorterThanTheShownOne_leavesTheColourAsItWas) {
    program.setPolicy(search, attribute::automaticSearchPath, {"/Local/Accounts"});
    controller.buildDSSearchPaneData();
    EXPECT_EQ(colour(nodes, 2, TextColor::red), TextColor::red);
    toolkit::Cell cell;
    cell.note = "of another row";
    EXPECT_EQ(nodes.drawnCell("NodeName", 2, cell).note, "");
}

TEST_F(Panes, contactsOutsideCustomMode_areGrayHoweverShortTheCustomList) {
    program.setPolicy(contacts, attribute::customSearchPath, {"/LDAP/one"});
    controller.buildDSContactsPaneData();
    contactMode.choose(localOnly);
    EXPECT_EQ(colour(contactNodes, 1, TextColor::red), TextColor::gray);
}

TEST_F(Panes, locked_nothingCanBeSelected) {
    lock();
    EXPECT_FALSE(nodes.clickRow(2));
    EXPECT_FALSE(contactNodes.clickRow(3));
}

TEST_F(Panes, authenticationSelection_isAfterTheHeadInCustomModeOnly) {
    EXPECT_FALSE(nodes.clickRow(0));
    EXPECT_FALSE(nodes.clickRow(1));
    EXPECT_TRUE(nodes.clickRow(2));
    mode.choose(automatic);
    for (int row = 0; row < 3; ++row)
        EXPECT_FALSE(nodes.clickRow(row));
    mode.choose(localOnly);
    for (int row = 0; row < 2; ++row)
        EXPECT_FALSE(nodes.clickRow(row));
}

TEST_F(Panes, contactsSelection_protectsOnlyALocalNodeInItsOwnPlace) {
    EXPECT_FALSE(contactNodes.clickRow(0)); // "/Local/Accounts" stands where the local-only list has it
    EXPECT_TRUE(contactNodes.clickRow(1));
    EXPECT_TRUE(contactNodes.clickRow(2)); // "/BSD/Files" stands elsewhere
    contactMode.choose(automatic);
    EXPECT_FALSE(contactNodes.clickRow(2));
    contactMode.choose(localOnly);
    EXPECT_FALSE(contactNodes.clickRow(1));
}

TEST_F(Panes, negativeRow_maySelectNothing) {
    EXPECT_TRUE(nodes.clickRow(-1));
    EXPECT_TRUE(contactNodes.clickRow(-1));
    mode.choose(automatic);
    contactMode.choose(automatic);
    EXPECT_TRUE(nodes.clickRow(-1));
    EXPECT_FALSE(contactNodes.clickRow(-1));
}

TEST_F(Panes, authenticationHead_isAsLongAsTheLocalListWhateverIsThere) {
    program.setPolicy(search, attribute::customSearchPath, {"/LDAP/one", "/LDAP/two", "/LDAP/three"});
    controller.buildDSSearchPaneData();
    EXPECT_FALSE(nodes.clickRow(0));
    EXPECT_FALSE(nodes.clickRow(1));
    EXPECT_TRUE(nodes.clickRow(2));
    EXPECT_EQ(colour(nodes, 1), TextColor::gray);
}

TEST_F(Panes, deleteButton_ofAuthenticationLooksAtTheRow) {
    EXPECT_FALSE(program.interface.deleteNode.isEnabled());
    EXPECT_TRUE(nodes.clickRow(3));
    EXPECT_TRUE(program.interface.deleteNode.isEnabled());
    EXPECT_TRUE(nodes.clickRow(2)); // the first one behind the head
    EXPECT_TRUE(program.interface.deleteNode.isEnabled());
    nodes.selectRow(1, false); // by the program: inside the head
    EXPECT_FALSE(program.interface.deleteNode.isEnabled());
    nodes.deselectAll();
    EXPECT_FALSE(program.interface.deleteNode.isEnabled());
}

TEST_F(Panes, deleteButton_ofAuthenticationIsDisabledAfterTheCustomList) {
    program.setPolicy(search, attribute::customSearchPath, {"/Local/Accounts", "/BSD/Files"});
    controller.buildDSSearchPaneData();
    mode.choose(automatic);
    nodes.selectRow(2, false); // by the program: the automatic list is the longer one
    EXPECT_FALSE(program.interface.deleteNode.isEnabled());
    controller.deleteNodeAction(program.interface.deleteNode);
    EXPECT_TRUE(program.toolkit.alerts().empty());
}

TEST_F(Panes, deleteButton_ofContactsTakesAnyRow) {
    contactNodes.selectRow(0, false);
    EXPECT_TRUE(program.interface.deleteNodeContact.isEnabled());
    contactNodes.deselectAll();
    EXPECT_FALSE(program.interface.deleteNodeContact.isEnabled());
}

TEST_F(Panes, deleteButtons_areDisabledByASelectionChangeWhileLocked) {
    lock();
    program.interface.deleteNode.setEnabled(true);
    program.interface.deleteNodeContact.setEnabled(true);
    nodes.selectRow(2, false);
    contactNodes.selectRow(2, false);
    EXPECT_FALSE(program.interface.deleteNode.isEnabled());
    EXPECT_FALSE(program.interface.deleteNodeContact.isEnabled());
}

TEST_F(Panes, choosingAMode_deselectsReloadsAdjustsAndMarks) {
    EXPECT_TRUE(nodes.clickRow(2));
    program.journal.clear();
    mode.choose(automatic);
    EXPECT_EQ(program.journal.entries(),
              (Names{"selectNode.deselect 2", "deleteNode.disable", "selectNode.reloadData", "addNode.hide",
                     "deleteNode.hide", "dragMessage.hide", "applyButton.enable"}));
    EXPECT_TRUE(program.interface.window.isDocumentEdited());
    EXPECT_TRUE(search.calls.empty()); // written by save alone
}

TEST_F(Panes, choosingTheModeAlreadyChosen_changesNothing) {
    program.journal.clear();
    mode.choose(custom);
    EXPECT_TRUE(program.journal.entries().empty());
    EXPECT_FALSE(program.interface.window.isDocumentEdited());
}

TEST_F(Panes, popUpWithoutAChoice_changesNothing) {
    mode.selectItemAtIndex(-1);
    program.journal.clear();
    controller.selectSearchPolicyAction();
    EXPECT_TRUE(program.journal.entries().empty());
}

TEST_F(Panes, editingControls_showInCustomModeOnly) {
    EXPECT_FALSE(program.interface.addNode.isHidden());
    contactMode.choose(localOnly);
    EXPECT_TRUE(program.interface.addNodeContact.isHidden());
    EXPECT_TRUE(program.interface.deleteNodeContact.isHidden());
    EXPECT_TRUE(program.interface.dragMessageContact.isHidden());
    EXPECT_FALSE(program.interface.addNode.isHidden()); // the other policy's stay
    contactMode.choose(custom);
    EXPECT_FALSE(program.interface.addNodeContact.isHidden());
}

TEST_F(Panes, tables_takeOneDragTypeAndSeveralRows) {
    EXPECT_TRUE(program.journal.contains("selectNode.registerForDraggedType DirNodeNamePasteboardType"));
    EXPECT_TRUE(
        program.journal.contains("selectNodeContact.registerForDraggedType DirNodeNamePasteboardType"));
    EXPECT_TRUE(program.journal.contains("selectNode.allowMultiple"));
    EXPECT_TRUE(program.journal.contains("selectNodeContact.allowMultiple"));
}
