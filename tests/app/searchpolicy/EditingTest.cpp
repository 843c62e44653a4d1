#include <gtest/gtest.h>

#include "fakes/FakeProgram.h"

using namespace corvane;
namespace attribute = halden::attribute;
using Names = std::vector<std::string>;
using toolkit::DragOperation;
using toolkit::DropOperation;

namespace {

/// Custom mode on both policies: two local nodes, then six directories. The contacts list has one local node
/// in its own place and one elsewhere.
struct Editing : testing::Test {
    Editing() {
        program.setPolicy(search, attribute::customSearchPath,
                          {"/Local/Accounts", "/BSD/Files", "/L/2", "/L/3", "/L/4", "/L/5", "/L/6"});
        program.setPolicy(contacts, attribute::customSearchPath,
                          {"/Local/Accounts", "/L/1", "/BSD/Files", "/L/3", "/L/4", "/L/5"});
        program.launchUnlocked();
        controller.loadCurrentTabIfNeeded("2");
        controller.loadCurrentTabIfNeeded("3");
        program.framework.session->names = {"/Local/Accounts", "/BSD/Files", "/L/new", "/Search",
                                            "/Contacts"};
    }
    [[nodiscard]] Names list() { return nodes.texts("NodeName"); }
    [[nodiscard]] Names contactList() { return contactNodes.texts("NodeName"); }
    [[nodiscard]] bool edited() { return program.interface.window.isDocumentEdited(); }
    [[nodiscard]] static std::size_t calls444(const fakes::FakeNodeState& node) {
        return static_cast<std::size_t>(
            std::ranges::count_if(node.calls, [](const auto& call) { return call.code == 444; }));
    }
    void choosePanelRow(int row) {
        program.interface.panelNodes.selectRow(row, false);
        program.interface.panelAdd.click();
    }

    fakes::FakeProgram program;
    app::MainController& controller = program.controller();
    fakes::FakeNodeState& search = program.framework.session->search();
    fakes::FakeNodeState& contacts = program.framework.session->contacts();
    fakes::FakeTableView& nodes = program.interface.selectNode;
    fakes::FakeTableView& contactNodes = program.interface.selectNodeContact;
    fakes::FakeButton& add = program.interface.addNode;
    fakes::FakeButton& addContact = program.interface.addNodeContact;
    fakes::FakeButton& remove = program.interface.deleteNode;
    fakes::FakeButton& removeContact = program.interface.deleteNodeContact;
};

} // namespace

TEST_F(Editing, addWithoutASelection_appends) {
    add.click();
    EXPECT_TRUE(program.interface.window.hasAttachedSheet());
    choosePanelRow(0);
    EXPECT_EQ(list().back(), "/L/new");
    EXPECT_FALSE(program.interface.window.hasAttachedSheet());
    EXPECT_FALSE(program.interface.panel.isVisible());
    EXPECT_TRUE(edited());
}

TEST_F(Editing, addWithALaterRowSelected_insertsJustAfterIt) {
    EXPECT_TRUE(nodes.clickRow(3));
    add.click();
    choosePanelRow(0);
    EXPECT_EQ(list().at(4), "/L/new");
}

TEST_F(Editing, addWithAHeadRowSelected_insertsJustAfterTheHead) {
    contactNodes.selectRow(0, false);
    addContact.click();
    choosePanelRow(0);
    EXPECT_EQ(contactList().at(2), "/L/new");
    EXPECT_EQ(contactList().size(), 7U);
    EXPECT_EQ(list().size(), 7U); // the other policy's list is untouched
}

TEST_F(Editing, cancelledPanel_leavesTheListMarkedForWritingButNotTheWindow) {
    add.click();
    program.interface.panelDone.click();
    EXPECT_FALSE(edited());
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_EQ(calls444(search), 1U);
    EXPECT_EQ(calls444(contacts), 0U);
}

TEST_F(Editing, panelOpenedFromContacts_marksTheContactsList) {
    addContact.click();
    program.interface.panelDone.click();
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_EQ(calls444(search), 0U);
    EXPECT_EQ(calls444(contacts), 1U);
}

TEST_F(Editing, delete_asksInASheetAndDeletesOnConfirmation) {
    program.platform.strings.marks = true;
    EXPECT_TRUE(nodes.clickRow(3));
    remove.click();
    ASSERT_EQ(program.toolkit.alerts().size(), 1U);
    const auto& sheet = program.toolkit.alerts()[0];
    EXPECT_EQ(sheet.message, "«Delete directory domain?»");
    EXPECT_EQ(sheet.information, "«Please confirm deletion.»");
    EXPECT_EQ(sheet.buttons, (Names{"«OK»", "«Cancel»"}));
    EXPECT_TRUE(sheet.asSheet);
    EXPECT_EQ(list().size(), 7U);
    program.toolkit.answerSheet(1);
    EXPECT_EQ(list(), (Names{"/Local/Accounts", "/BSD/Files", "/L/2", "/L/4", "/L/5", "/L/6"}));
    EXPECT_TRUE(edited());
    EXPECT_EQ(nodes.selectedRow(), -1);
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_EQ(calls444(search), 1U);
}

TEST_F(Editing, delete_readsOutWhichRowsWouldGo) {
    nodes.selectRow(3, false);
    nodes.selectRow(5, true);
    remove.click();
    EXPECT_EQ(program.toolkit.alerts().at(0).spoken, "Please confirm deletion: /L/3, /L/5");
}

TEST_F(Editing, deleteKey_asksWhatTheButtonAsks) {
    nodes.selectRow(3, false);
    nodes.pressDelete();
    ASSERT_EQ(program.toolkit.alerts().size(), 1U);
    EXPECT_EQ(program.toolkit.alerts()[0].message, "Delete directory domain?");
    program.toolkit.answerSheet(1);
    EXPECT_EQ(std::ranges::count(list(), "/L/3"), 0);
    contactNodes.selectRow(1, false);
    contactNodes.pressDelete();
    EXPECT_EQ(program.toolkit.alerts().size(), 2U);
}

TEST_F(Editing, deleteKeyWhereTheButtonCantBePressed_doesNothing) {
    nodes.pressDelete(); // nothing is selected
    contactNodes.pressDelete();
    nodes.selectRow(3, false);
    program.interface.selectSearchPolicy.choose(0); // the button is hidden
    nodes.pressDelete();
    program.interface.selectSearchPolicy.choose(2);
    program.interface.authorizationView.click(); // prompts for the mode, and is cancelled
    nodes.pressDelete();
    for (const auto& alert : program.toolkit.alerts())
        EXPECT_NE(alert.message, "Delete directory domain?");
}

TEST_F(Editing, deleteNotConfirmed_changesNothing) {
    EXPECT_TRUE(nodes.clickRow(3));
    remove.click();
    program.toolkit.answerSheet(2);
    EXPECT_EQ(list().size(), 7U);
    EXPECT_FALSE(edited());
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_EQ(calls444(search), 0U);
    EXPECT_EQ(nodes.selectedRow(), 3);
}

TEST_F(Editing, deleteOfThreeRows_takesOneConfirmation) {
    EXPECT_TRUE(nodes.clickRow(2));
    EXPECT_TRUE(nodes.clickRow(4, true));
    EXPECT_TRUE(nodes.clickRow(6, true));
    remove.click();
    program.toolkit.answerSheet(1);
    EXPECT_EQ(list(), (Names{"/Local/Accounts", "/BSD/Files", "/L/3", "/L/5"}));
    EXPECT_EQ(program.toolkit.alerts().size(), 1U);
}

TEST_F(Editing, deleteInsideTheHeadOrWithoutASelection_doesNothing) {
    nodes.selectRow(1, false);
    controller.deleteNodeAction(remove);
    nodes.deselectAll();
    controller.deleteNodeAction(remove);
    EXPECT_TRUE(program.toolkit.alerts().empty());
}

TEST_F(Editing, deleteOfTheFirstRowAfterTheHead_asks) {
    EXPECT_TRUE(nodes.clickRow(2));
    remove.click();
    ASSERT_EQ(program.toolkit.alerts().size(), 1U);
    program.toolkit.answerSheet(1);
    EXPECT_EQ(list(), (Names{"/Local/Accounts", "/BSD/Files", "/L/3", "/L/4", "/L/5", "/L/6"}));
}

TEST_F(Editing, contactsDelete_protectsALocalNodeInItsOwnPlaceOnly) {
    contactNodes.selectRow(0, false);
    removeContact.click();
    EXPECT_TRUE(program.toolkit.alerts().empty());
    contactNodes.selectRow(1, false); // inside the length of the local list, but another node
    removeContact.click();
    ASSERT_EQ(program.toolkit.alerts().size(), 1U);
    program.toolkit.answerSheet(1);
    EXPECT_EQ(contactList(), (Names{"/Local/Accounts", "/BSD/Files", "/L/3", "/L/4", "/L/5"}));
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_EQ(calls444(contacts), 1U);
}

TEST_F(Editing, contactsDeleteWithoutASelection_raisesAndShowsNoSheet) {
    EXPECT_THROW(controller.deleteNodeContactAction(removeContact), util::RangeException);
    EXPECT_TRUE(program.toolkit.alerts().empty());
}

TEST_F(Editing, dragDown_leavesTheRowOneAboveTheDrop) {
    EXPECT_TRUE(nodes.dragRows({2}, nodes, 5));
    EXPECT_EQ(list(), (Names{"/Local/Accounts", "/BSD/Files", "/L/3", "/L/4", "/L/2", "/L/5", "/L/6"}));
    EXPECT_EQ(nodes.selectedRow(), 4);
    EXPECT_TRUE(edited());
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_EQ(calls444(search), 1U);
}

TEST_F(Editing, dragUp_leavesTheRowAtTheDrop) {
    EXPECT_TRUE(nodes.dragRows({5}, nodes, 2));
    EXPECT_EQ(list(), (Names{"/Local/Accounts", "/BSD/Files", "/L/5", "/L/2", "/L/3", "/L/4", "/L/6"}));
    EXPECT_EQ(nodes.selectedRow(), 2);
}

TEST_F(Editing, dragAfterTheLastRow_movesItThere) {
    EXPECT_TRUE(nodes.dragRows({2}, nodes, 7));
    EXPECT_EQ(list().back(), "/L/2");
    EXPECT_EQ(nodes.selectedRow(), 6);
}

TEST_F(Editing, dragOntoItsOwnPlace_changesNoOrder) {
    const auto before = list();
    EXPECT_TRUE(nodes.dragRows({3}, nodes, 3));
    EXPECT_EQ(list(), before);
    EXPECT_EQ(nodes.selectedRow(), 3);
    EXPECT_TRUE(nodes.dragRows({3}, nodes, 4));
    EXPECT_EQ(list(), before);
    EXPECT_EQ(nodes.selectedRow(), 3);
}

TEST_F(Editing, dropOnContacts_movesTheAuthenticationTablesSelection) {
    EXPECT_TRUE(contactNodes.dragRows({1}, contactNodes, 4));
    EXPECT_EQ(contactList(), (Names{"/Local/Accounts", "/BSD/Files", "/L/3", "/L/1", "/L/4", "/L/5"}));
    EXPECT_EQ(nodes.selectedRow(), 3);
    EXPECT_EQ(contactNodes.selectedRow(), -1);
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_EQ(calls444(contacts), 1U);
    EXPECT_EQ(calls444(search), 0U);
}

TEST_F(Editing, drop_setsTheServicesMarkNotThePolicies) {
    EXPECT_TRUE(nodes.dragRows({2}, nodes, 5));
    controller.setPluginModified(false);
    EXPECT_FALSE(edited());
}

TEST_F(Editing, drop_selectsMarksAndReloadsInThisOrder) {
    program.journal.clear();
    EXPECT_TRUE(nodes.dragRows({2}, nodes, 5));
    EXPECT_EQ(program.journal.only({"selectNode.select 4", "applyButton.enable", "selectNode.reloadData"}),
              (Names{"selectNode.select 4", "applyButton.enable", "selectNode.reloadData"}));
}

TEST_F(Editing, headAndDropsIntoIt_areRefused) {
    EXPECT_FALSE(nodes.dragRows({1}, nodes, 5));
    EXPECT_FALSE(nodes.dragRows({4}, nodes, 0));
    EXPECT_FALSE(nodes.dragRows({4}, nodes, 1));
    EXPECT_TRUE(nodes.dragRows({4}, nodes, 2));
}

TEST_F(Editing, contactsHaveNoHeadForDragging) {
    EXPECT_TRUE(contactNodes.dragRows({0}, contactNodes, 3));
    EXPECT_TRUE(contactNodes.dragRows({3}, contactNodes, 0));
}

TEST_F(Editing, refusedDrags_lockedSeveralRowsOrAutomatic) {
    EXPECT_FALSE(nodes.dragRows({2, 3}, nodes, 5));
    EXPECT_FALSE(nodes.dragRows({}, nodes, 5));
    program.interface.selectSearchPolicy.choose(0);
    program.interface.selectContactPolicy.choose(0);
    EXPECT_FALSE(nodes.dragRows({2}, nodes, 3));
    EXPECT_FALSE(contactNodes.dragRows({2}, contactNodes, 1));
    program.interface.selectSearchPolicy.choose(2);
    controller.setUnlocked(false);
    EXPECT_FALSE(nodes.dragRows({2}, nodes, 5));
    EXPECT_FALSE(contactNodes.dragRows({2}, contactNodes, 1));
}

TEST_F(Editing, dropsFromElsewhereOntoARowOrNowhere_areRefused) {
    EXPECT_FALSE(nodes.dragRows({2}, contactNodes, 3));
    EXPECT_FALSE(contactNodes.dragRows({2}, nodes, 3));
    EXPECT_FALSE(nodes.dragRows({2}, nodes, 5, DropOperation::on));
    EXPECT_FALSE(nodes.dragRows({2}, nodes, -1));
    EXPECT_FALSE(contactNodes.dragRows({2}, contactNodes, -1));
    fakes::FakePasteboard pasteboard;
    EXPECT_EQ(nodes.dragHandler()->validateDrop(nodes, {nullptr, pasteboard}, 4, DropOperation::above),
              DragOperation::none);
}

TEST_F(Editing, dropBetweenRows_isAMoveWhateverTheMode) {
    fakes::FakePasteboard pasteboard;
    const auto answer = [&](fakes::FakeTableView& table, DropOperation operation) {
        return static_cast<int>(table.dragHandler()->validateDrop(table, {&table, pasteboard}, 2, operation));
    };
    EXPECT_EQ(answer(nodes, DropOperation::above), 16);
    EXPECT_EQ(answer(nodes, DropOperation::on), 0);
    program.interface.selectSearchPolicy.choose(0);
    program.interface.selectContactPolicy.choose(0);
    EXPECT_EQ(answer(nodes, DropOperation::above), 16) << "no drag begins there";
    EXPECT_EQ(answer(contactNodes, DropOperation::above), 16);
}

TEST_F(Editing, draggedName_comesFromTheCustomListWhateverIsOnScreen) {
    program.interface.selectContactPolicy.choose(1); // Local: row 1 shows "/BSD/Files"
    fakes::FakePasteboard pasteboard;
    EXPECT_TRUE(contactNodes.dragHandler()->writeRows(contactNodes, {1}, pasteboard));
    EXPECT_EQ(pasteboard.types(), Names{"DirNodeNamePasteboardType"});
    EXPECT_EQ(pasteboard.stringForType("DirNodeNamePasteboardType"), "/L/1");
}

TEST_F(Editing, dropWithoutTheType_isRefusedAndMarksNothing) {
    fakes::FakePasteboard pasteboard;
    EXPECT_FALSE(nodes.dragHandler()->acceptDrop(nodes, {&nodes, pasteboard}, 4, DropOperation::above));
    EXPECT_FALSE(edited());
}

TEST_F(Editing, contactsDragOfARowThatIsntThere_raises) {
    fakes::FakePasteboard pasteboard;
    auto& handler = *contactNodes.dragHandler();
    EXPECT_THROW((void)handler.writeRows(contactNodes, {6}, pasteboard), util::RangeException);
    EXPECT_FALSE(nodes.dragHandler()->writeRows(nodes, {7}, pasteboard));
    EXPECT_TRUE(pasteboard.types().empty());
}

TEST_F(Editing, nameThatIsThereTwice_movesTheFirstOfThem) {
    program.setPolicy(search, attribute::customSearchPath,
                      {"/Local/Accounts", "/BSD/Files", "/L/twice", "/L/3", "/L/twice"});
    controller.buildDSSearchPaneData();
    EXPECT_TRUE(nodes.dragRows({4}, nodes, 4));
    EXPECT_EQ(list(), (Names{"/Local/Accounts", "/BSD/Files", "/L/3", "/L/twice", "/L/twice"}));
    EXPECT_EQ(nodes.selectedRow(), 3);
}

TEST_F(Editing, dropOfANameThatIsntThere_isSimplyInserted) {
    fakes::FakePasteboard pasteboard;
    pasteboard.declareTypes({"DirNodeNamePasteboardType"});
    pasteboard.setString("/L/gone", "DirNodeNamePasteboardType");
    EXPECT_TRUE(nodes.dragHandler()->acceptDrop(nodes, {&nodes, pasteboard}, 3, DropOperation::above));
    EXPECT_EQ(list().at(3), "/L/gone");
    EXPECT_EQ(list().size(), 8U);
    EXPECT_EQ(nodes.selectedRow(), 3);
}
